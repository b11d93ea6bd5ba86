#include "compat/idlesocketfilter.h"

#include "compat/platform.h"

#include <QtCore/QEvent>
#include <QtCore/QSocketNotifier>

namespace compat {

bool IdleSocketFilter::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::SockAct)
        return false;
    const auto* notifier = qobject_cast<QSocketNotifier*>(watched);
    return notifier && notifier->type() == QSocketNotifier::Read && !hasInput(notifier->socket());
}

} // namespace compat
