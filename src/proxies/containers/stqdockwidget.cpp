#include "proxies/containers/stqdockwidget.h"

#include "compat/children.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QTabBar>

namespace {

// A tab bar and one of its tabs; no bar when there is no such tab.
struct Tab
{
    QTabBar* bar;
    QRect rect;
};

// The first tab with a title among the bars that the main window itself has for its dock widgets. Tab bars
// deeper inside, such as those of tab widgets, are none of them. While all but one of the dock widgets of a
// bar are hidden, Qt keeps the bar, with the one tab, outside the window: there is nothing to click then.
Tab dockTab(const QMainWindow* window, const QString& title)
{
    const QList<QTabBar*> bars = compat::findChildren<QTabBar>(window);
    for (QTabBar* bar : bars) {
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

// The tab that brings a dock widget to the front; no bar where it shares its place with none.
Tab tabOf(QDockWidget* dock)
{
    const auto* window = qobject_cast<const QMainWindow*>(dock->parent());
    if (!window || window->tabifiedDockWidgets(dock).isEmpty())
        return {nullptr, QRect()};
    return dockTab(window, dock->windowTitle());
}

} // namespace

void STQDockWidget::activate(const QVariant& value, const QVariant&)
{
    if (value.isValid())
        typeError("none");
    const Tab tab = tabOf(dockWidget());
    if (tab.bar)
        clickCenter(tab.bar, tab.rect);
}

STWidgetProxy::MousePlace STQDockWidget::activationPlace()
{
    const Tab tab = tabOf(dockWidget());
    return tab.bar ? MousePlace{tab.bar, tab.rect.center()} : STWidgetProxy::activationPlace();
}

QDockWidget* STQDockWidget::dockWidget()
{
    return static_cast<QDockWidget*>(checkedWidget("QDockWidget"));
}
