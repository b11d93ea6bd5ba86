#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>

namespace LmSquishProxy {

class CSquishProxy;

// Deletes the script objects that still live when the application quits.
class CInternalSquishProxyCleanup : public QObject
{
    Q_OBJECT

public:
    // The only one, created at the first call. It lives until the process ends.
    static CInternalSquishProxyCleanup& instance();

    // While a clean-up is in progress the list stays as it is.
    void add(CSquishProxy* proxy);
    void remove(CSquishProxy* proxy);

public Q_SLOTS:
    void doCleanup();

private:
    CInternalSquishProxyCleanup() = default;

    QList<QPointer<CSquishProxy>> proxies; // the clean-up itself may make the application delete some of them
    bool cleaningUp = false;
};

} // namespace LmSquishProxy
