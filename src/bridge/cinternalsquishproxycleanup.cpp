#include "bridge/cinternalsquishproxycleanup.h"

#include "bridge/csquishproxy.h"

#include <QtCore/QCoreApplication>

#include <memory>

namespace LmSquishProxy {

CInternalSquishProxyCleanup& CInternalSquishProxyCleanup::instance()
{
    static const std::unique_ptr<CInternalSquishProxyCleanup> cleanup(new CInternalSquishProxyCleanup);
    return *cleanup;
}

CInternalSquishProxyCleanup::CInternalSquishProxyCleanup()
{
    if (qApp)
        connect(qApp, SIGNAL(aboutToQuit()), SLOT(doCleanup()));
}

void CInternalSquishProxyCleanup::add(CSquishProxy* proxy)
{
    if (!cleaningUp)
        proxies.append(proxy);
}

void CInternalSquishProxyCleanup::remove(CSquishProxy* proxy)
{
    if (!cleaningUp)
        proxies.removeAll(proxy);
}

void CInternalSquishProxyCleanup::doCleanup()
{
    if (cleaningUp)
        return;
    cleaningUp = true;
    for (const QPointer<CSquishProxy>& proxy : proxies)
        delete proxy.data();
    proxies.clear();
    cleaningUp = false;
}

} // namespace LmSquishProxy
