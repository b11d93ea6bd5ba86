#include "proxy/hiddenkeys.h"

#include "compat/widgettexts.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace proxy {

HiddenKeys::HiddenKeys()
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool HiddenKeys::eventFilter(QObject* receiver, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && receiver->isWidgetType())
        isSeen = isSeen || compat::hidesText(static_cast<const QWidget*>(receiver));
    return false;
}

} // namespace proxy
