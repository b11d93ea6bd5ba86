#include "proxies/containers/stqdockwidget.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QTabBar>

namespace {

// A tab bar and one of its tabs; no bar when there is no such tab.
struct Tab
{
    const QTabBar* bar;
    QRect rect;
};

// The first tab with a title among the bars that the main window itself has for its dock widgets. Tab bars
// deeper inside, such as those of tab widgets, are none of them. While all but one of the dock widgets of a
// bar are hidden, Qt keeps the bar, with the one tab, outside the window: there is nothing to click then.
Tab dockTab(const QMainWindow* window, const QString& title)
{
    const QList<QTabBar*> bars = window->findChildren<QTabBar*>();
    for (const QTabBar* bar : bars) {
        if (bar->parentWidget() != window || bar->visibleRegion().isEmpty())
            continue;
        for (int i = 0; i < bar->count(); ++i) {
            const QRect rect = bar->tabRect(i);
            if (bar->tabText(i) == title && !rect.isNull())
                return {bar, rect};
        }
    }
    return {nullptr, QRect()};
}

} // namespace

void STQDockWidget::activate(const QVariant& value, const QVariant&)
{
    if (value.isValid())
        typeError("none");
    auto* dock = static_cast<QDockWidget*>(checkedWidget("QDockWidget"));
    const auto* window = qobject_cast<const QMainWindow*>(dock->parent());
    if (!window || window->tabifiedDockWidgets(dock).isEmpty())
        return;
    const Tab tab = dockTab(window, dock->windowTitle());
    if (tab.bar)
        clickCenter(tab.bar, tab.rect);
}
