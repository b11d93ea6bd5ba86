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

void CInternalSquishProxyCleanup::add(CSquishProxy* proxy)
{
    // Each time: a process may have one application object after the other.
    connect(qApp, SIGNAL(aboutToQuit()), this, SLOT(doCleanup()), Qt::UniqueConnection);
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
