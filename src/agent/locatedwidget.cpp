#include "agent/locatedwidget.h"

#include "agent/request.h"
#include "identify/widgetlookup.h"
#include "identify/widgetpath.h"
#include "proxy/sterror.h"

namespace agent {

WrittenName windowName(const Request& request)
{
    return {request.utf8Text(1), request.section(1)};
}

Access locatedWidget(const Access& window, const Request& request)
{
    const QString locator = request.utf8Text(2);
    if (!window.widget || locator.isEmpty())
        return window;
    const QLatin1String pathKey("path=");
    if (!locator.startsWith(pathKey))
        proxy::raiseError("Invalid locator");
    const identify::WidgetPath path(locator.mid(static_cast<int>(qstrlen(pathKey.latin1()))));
    return oneWidget(identify::findWidget(window.widget, path), request.section(2));
}

} // namespace agent
