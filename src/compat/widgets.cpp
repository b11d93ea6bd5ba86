#include "compat/widgets.h"

#include <QtGui/QMouseEvent>

#if QT_VERSION >= 0x060000
#include <QtGui/QScreen>
#include <QtWidgets/QWidget>
#elif QT_VERSION >= 0x050000
#include <QtWidgets/QApplication>
#include <QtWidgets/QDesktopWidget>
#else
#include <QtGui/QApplication>
#include <QtGui/QDesktopWidget>
#endif

namespace compat {

QMouseEvent* newMouseEvent(QEvent::Type type, const QWidget* target, const QPoint& globalPosition,
    Qt::MouseButton button, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
{
    return new QMouseEvent(type, target->mapFromGlobal(globalPosition), globalPosition, button, buttons, modifiers);
}

QRect availableGeometry(const QWidget* widget)
{
#if QT_VERSION >= 0x060000
    return widget->screen()->availableGeometry();
#else
    return QApplication::desktop()->availableGeometry(widget);
#endif
}

QString keyCodeText(int key)
{
#if QT_VERSION >= 0x050000
    return key == Qt::Key_Space ? QString(QLatin1Char(' ')) : QString();
#else
    Q_UNUSED(key)
    return QString();
#endif
}

const char* socketErrorSignal()
{
#if QT_VERSION >= 0x060000
    return SIGNAL(errorOccurred(QAbstractSocket::SocketError));
#else
    return SIGNAL(error(QAbstractSocket::SocketError));
#endif
}

} // namespace compat
