#include "compat/idlesocketfilter.h"

#include "compat/platform.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QSocketNotifier>

namespace compat {

std::unique_ptr<IdleSocketFilter> IdleSocketFilter::installWhereNeeded()
{
    const QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    if (!dispatcher || !dispatcher->inherits("QEventDispatcherGlib"))
        return nullptr;
    auto filter = std::make_unique<IdleSocketFilter>();
    QCoreApplication::instance()->installEventFilter(filter.get());
    return filter;
}

bool IdleSocketFilter::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::SockAct)
        return false;
    const auto* notifier = qobject_cast<QSocketNotifier*>(watched);
    return notifier && notifier->type() == QSocketNotifier::Read && !hasInput(notifier->socket());
}

} // namespace compat
