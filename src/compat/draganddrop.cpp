#include "compat/draganddrop.h"

#include <QtCore/QtGlobal>

#if QT_VERSION >= 0x050000
#include <QtCore/QThread>
#include <QtGui/QDrag>
#else
#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QWidget>
#endif

namespace compat {

void cancelDrag()
{
#if QT_VERSION >= 0x050000
    QDrag::cancel();
#else
    // Qt 4's drag manager filters the mouse events of all widgets, also of a hidden one. A release over no window drops
    // nothing.
    QWidget receiver;
    const QPoint nowhere(-1000, -1000);
    QMouseEvent move(
        QEvent::MouseMove, nowhere, nowhere, Qt::NoButton, Qt::MouseButtons(Qt::LeftButton), Qt::NoModifier);
    QCoreApplication::sendEvent(&receiver, &move);
    QMouseEvent release(QEvent::MouseButtonRelease, nowhere, nowhere, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&receiver, &release);
#endif
}

int dragMark()
{
#if QT_VERSION >= 0x050000
    return QThread::currentThread()->loopLevel();
#else
    return QWidget::mouseGrabber() ? 1 : 0; // during a drag the picture of what is dragged has the mouse
#endif
}

void cancelDragSince(int mark)
{
    if (dragMark() > mark)
        cancelDrag();
}

} // namespace compat
