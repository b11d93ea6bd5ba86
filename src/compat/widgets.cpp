#include "compat/widgets.h"

#include <QtGui/QIcon>
#include <QtGui/QMouseEvent>
#include <QtGui/QPixmap>

#if QT_VERSION >= 0x060000
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
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

QPixmap pixmapOf(const QIcon& icon, const QSize& size)
{
#if QT_VERSION >= 0x060000
    return icon.pixmap(size, 1.0);
#elif QT_VERSION >= 0x050000
    return icon.pixmap(
        QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps) ? size / qApp->devicePixelRatio() : size);
#else
    return icon.pixmap(size);
#endif
}

QRect availableGeometry(const QWidget* widget)
{
#if QT_VERSION >= 0x060000
    // Not the screen of the window, which may be another one than that of its child.
    const QRect place
        = widget->isWindow() ? widget->frameGeometry() : QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size());
    const QScreen* holder = QGuiApplication::primaryScreen();
    int largest = 0;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        const QRect shared = screen->geometry() & place;
        if (shared.width() * shared.height() > largest) {
            largest = shared.width() * shared.height();
            holder = screen;
        }
    }
    return holder ? holder->availableGeometry() : place;
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
