#include "agent/snapshots.h"

#include "agent/locatedwidget.h"
#include "agent/request.h"
#include "locate/snapshot.h"
#include "proxy/sterror.h"

namespace agent {

QByteArray takeSnapshot(const Request& request, STApplicationProxy&)
{
    const Access access = locatedWidget(anyWindow(windowName(request)), request);
    if (!access.widget)
        return access.refusal;
    const QByteArray json = locate::snapshot(access.widget);
    if (json.isEmpty())
        proxy::raiseError(proxy::deadWidgetMessage);
    return "0,j:" + json;
}

} // namespace agent
