// The listing of a window's widgets, as its reply, and their snapshot. The floor is findChildren() and, for each widget, the
// three reads that the listing is made of.

#include "agent/commands.h"
#include "locate/snapshot.h"
#include "pairs.h"
#include "proxy/stapplicationproxy.h"
#include "samplewindows.h"

#include <QWidget>

#include <memory>

namespace {

Measured makeOurs(int size)
{
    sampleWindow(Sample::Named, size);
    const auto registry = std::make_shared<STApplicationProxy>();
    return [registry] {
        const QByteArray reply = agent::executeCommand("2,Sample", *registry);
        if (!reply.startsWith("0,l:"))
            qFatal("%s", reply.constData());
        bytesPerRun = static_cast<int>(reply.size());
    };
}

Measured makeSnapshot(int size)
{
    QWidget& window = sampleWindow(Sample::Fields, size);
    return [&window] {
        const QByteArray json = locate::snapshot(&window);
        if (json.isEmpty())
            qFatal("there is no snapshot");
        bytesPerRun = static_cast<int>(json.size());
    };
}

Measured makeFloor(Sample sample, int size)
{
    const QWidget& window = sampleWindow(sample, size);
    return [&window] {
        const QList<QWidget*> widgets = window.findChildren<QWidget*>();
        for (const QWidget* widget : widgets) {
            benchmark::DoNotOptimize(widget->isVisible());
            benchmark::DoNotOptimize(widget->metaObject()->className());
            benchmark::DoNotOptimize(widget->objectName());
        }
    };
}

} // namespace

void registerTrees()
{
    registerPair("tree", Clock::Processor, {100, 1000, 5000, 10000, 100000}, makeOurs,
        [](int size) { return makeFloor(Sample::Named, size); });
    registerPair("snapshot", Clock::Processor, {100, 1000, 5000}, makeSnapshot,
        [](int size) { return makeFloor(Sample::Fields, size); });
}
