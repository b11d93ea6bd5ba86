#include "bridge/trayiconsearch.h"

#include "compat/children.h"

#include <QApplication>
#include <QSystemTrayIcon>
#include <QWidget>

namespace LmSquishProxy {

TrayIconMatch findTrayIconByName(const QString& objectName)
{
    // Never null: to findChildren() a null name means "any".
    const QString name = objectName.isNull() ? QString(QLatin1String("")) : objectName;
    QList<QSystemTrayIcon*> icons;
    if (qApp)
        icons += compat::findChildren<QSystemTrayIcon>(qApp, name);
    const QWidgetList topLevels = QApplication::topLevelWidgets();
    for (const QWidget* topLevel : topLevels)
        icons += compat::findChildren<QSystemTrayIcon>(topLevel, name);

    TrayIconMatch match;
    if (icons.size() == 1)
        match.icon = icons.first();
    else
        match.error = icons.isEmpty() ? SearchError::WidgetNotFound : SearchError::WidgetAmbiguous;
    return match;
}

} // namespace LmSquishProxy
