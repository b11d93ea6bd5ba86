#include "record/shownwindows.h"

#include "locate/references.h"
#include "locate/snapshot.h"
#include "record/eventqueue.h"

#include <QApplication>
#include <QWidget>

namespace record {

void ShownWindows::start()
{
    const QWidgetList topLevels = QApplication::topLevelWidgets();
    for (QWidget* window : topLevels) {
        if (window->isVisible())
            add(window);
    }
    for (auto shown = numbers.constBegin(); shown != numbers.constEnd(); ++shown) {
        QWidget* const window = locate::References::all().widgetOf(shown.value());
        if (!window || window->windowType() == Qt::Popup || first.size() > maximumWindowBytes)
            continue;
        const QByteArray contents = describe(window);
        if (!contents.isEmpty())
            first.append(first.isEmpty() ? "" : ",").append(contents);
    }
}

void ShownWindows::clear()
{
    numbers.clear();
    described.clear();
}

QByteArray ShownWindows::takeFirst()
{
    const QByteArray taken = first;
    first.clear();
    return taken;
}

void ShownWindows::add(const QWidget* window)
{
    numbers.insert(window, locate::References::all().numberOf(window));
}

qint64 ShownWindows::remove(const QObject* window)
{
    const qint64 number = numbers.take(window);
    described.remove(number);
    return number;
}

bool ShownWindows::isDescribed(const QWidget* window) const
{
    return described.contains(locate::References::all().numberOf(window));
}

QByteArray ShownWindows::describe(QWidget* window)
{
    described.insert(locate::References::all().numberOf(window)); // also one that is too large: it would be so again
    const QByteArray contents = locate::snapshotWithoutItems(window);
    return contents.size() <= maximumWindowBytes ? contents : QByteArray();
}

void ShownWindows::forgetDescription(const QWidget* window)
{
    if (!described.isEmpty())
        described.remove(locate::References::all().numberOf(window));
}

} // namespace record
