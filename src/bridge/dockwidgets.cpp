#include "bridge/dockwidgets.h"

#include <QDockWidget>
#include <QMainWindow>

namespace LmSquishProxy {

namespace {

QRect globalRect(const QWidget* widget)
{
    return QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size());
}

} // namespace

bool isActiveDockWidget(const QWidget* widget)
{
    const auto* dock = qobject_cast<const QDockWidget*>(widget);
    if (!dock || !dock->isActiveWindow())
        return false;
    if (dock->isFloating())
        return true;
    const auto* mainWindow = qobject_cast<const QMainWindow*>(dock->parentWidget());
    return mainWindow && !globalRect(dock).intersected(globalRect(mainWindow)).isEmpty();
}

QWidget* activeSiblingDockWidget(QWidget* widget)
{
    auto* dock = qobject_cast<QDockWidget*>(widget);
    const auto* mainWindow = dock ? qobject_cast<const QMainWindow*>(dock->parentWidget()) : nullptr;
    if (!mainWindow)
        return nullptr;
    const QList<QDockWidget*> siblings = mainWindow->tabifiedDockWidgets(dock);
    for (QDockWidget* sibling : siblings) {
        if (isActiveDockWidget(sibling))
            return sibling;
    }
    return nullptr;
}

} // namespace LmSquishProxy
