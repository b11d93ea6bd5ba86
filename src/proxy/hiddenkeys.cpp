#include "proxy/hiddenkeys.h"

#include "compat/widgettexts.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace proxy {

namespace {

bool areSeen = false;

} // namespace

bool isHiddenKey(const QObject* receiver, const QEvent* event)
{
    return event->type() == QEvent::KeyPress && receiver->isWidgetType()
        && compat::hidesText(static_cast<const QWidget*>(receiver));
}

HiddenKeys::HiddenKeys()
{
    areSeen = false;
    QCoreApplication::instance()->installEventFilter(this);
}

bool HiddenKeys::wereSeen()
{
    return areSeen;
}

bool HiddenKeys::eventFilter(QObject* receiver, QEvent* event)
{
    areSeen = areSeen || isHiddenKey(receiver, event);
    return false;
}

} // namespace proxy
