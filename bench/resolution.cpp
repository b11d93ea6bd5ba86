// Finding a widget by its path, in windows of growing size. The floor is one findChildren() for the same object name.

#include "identify/widgetlookup.h"
#include "identify/widgetpath.h"
#include "pairs.h"
#include "samplewindows.h"

#include <QWidget>

namespace {

struct Row
{
    const char* benchmark;
    Sample sample;
    const char* path; // %1: the last number there is, widgetsPerNumber and all
    int widgetsPerNumber;
    LookupError outcome;
};

const Row rows[] = {
    {"find_name", Sample::Named, "button%1", 0, NoError},
    {"find_nothing", Sample::Named, "none", 0, WidgetNotFoundError},
    {"find_parent_path", Sample::Named, "group0/button9", 0, NoError},
    {"find_deep_path", Sample::Nested, "window/chain%1//level8/leaf", 10, NoError},
    {"find_ambiguous", Sample::Nested, "leaf", 10, WidgetAmbiguousError},
    {"find_twins", Sample::Twins, "twin", 0, WidgetAmbiguousError},
    {"find_unnamed", Sample::Unnamed, "unnamed", 0, WidgetNotFoundError},
    {"find_dialog_button", Sample::Unnamed, "ChooseItem%1..._dialog_button", 0, NoError},
    {"find_action_button", Sample::Actions, "action%1_action_button", 0, NoError},
    {"find_dialog_part", Sample::Unnamed, "QLineEdit__widget__", 0, WidgetNotFoundError},
};

int lastNumber(const Row& row, int size)
{
    const int groupSize = 100;
    return row.widgetsPerNumber ? size / row.widgetsPerNumber - 1 : size - size / groupSize - 1;
}

QStringList pathIn(const Row& row, int size)
{
    const QString path = QString::fromLatin1(row.path);
    return splitPath(path.contains(QLatin1String("%1")) ? path.arg(lastNumber(row, size)) : path);
}

Measured makeOurs(const Row& row, int size)
{
    QWidget& window = sampleWindow(row.sample, size);
    const QStringList path = pathIn(row, size);
    const LookupError outcome = row.outcome;
    return [&window, path, outcome] {
        if (findWidget(&window, path).error != outcome)
            qFatal("%s has another outcome", qPrintable(path.join(QLatin1String("/"))));
    };
}

Measured makeFloor(const Row& row, int size)
{
    const QWidget& window = sampleWindow(row.sample, size);
    const QString name = searchName(pathIn(row, size));
    return [&window, name] { benchmark::DoNotOptimize(window.findChildren<QWidget*>(name)); };
}

} // namespace

void registerResolution()
{
    for (const Row& row : rows) {
        registerPair(
            row.benchmark, Clock::Processor, GROWING_SIZES, [&row](int size) { return makeOurs(row, size); },
            [&row](int size) { return makeFloor(row, size); });
    }
}
