#include "compat/widgets.h"

#include <QtGui/QCursor>
#include <QtGui/QIcon>
#include <QtGui/QMouseEvent>
#include <QtGui/QPixmap>

#if QT_VERSION >= 0x060000
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#elif QT_VERSION >= 0x050000
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDesktopWidget>
#else
#include <QtGui/QApplication>
#include <QtGui/QDesktopWidget>
#endif

namespace compat {

#if QT_VERSION >= 0x050000

namespace {

// The widget whose native window gets the mouse events for the target.
const QWidget* nativeHolder(const QWidget* target)
{
    const QWidget* holder = target->internalWinId() ? target : target->nativeParentWidget();
    return holder ? holder : target->window();
}

int distance(const QRect& rect, const QPoint& point)
{
    const int x = qBound(rect.left(), point.x(), rect.right());
    const int y = qBound(rect.top(), point.y(), rect.bottom());
    return (point - QPoint(x, y)).manhattanLength();
}

// The screen at a point; where there is none, the nearest one. A point just beyond the edge of a screen must not be
// read in the scale of another, which can put it into the middle of a window.
QScreen* screenNear(const QPoint& point)
{
    if (QScreen* screen = QGuiApplication::screenAt(point))
        return screen;
    QScreen* nearest = QGuiApplication::primaryScreen();
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (QScreen* screen : screens) {
        if (distance(screen->geometry(), point) < distance(nearest->geometry(), point))
            nearest = screen;
    }
    return nearest;
}

} // namespace

#endif

QMouseEvent* newMouseEvent(QEvent::Type type, const QWidget* target, const QPoint& globalPosition,
    Qt::MouseButton button, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
{
    const QPoint position = target->mapFromGlobal(globalPosition);
#if QT_VERSION >= 0x050000
    const QPoint windowPosition = nativeHolder(target)->mapFromGlobal(globalPosition);
    return new QMouseEvent(type, position, windowPosition, globalPosition, button, buttons, modifiers);
#else
    return new QMouseEvent(type, position, globalPosition, button, buttons, modifiers);
#endif
}

void setCursorPosition(const QPoint& globalPosition)
{
#if QT_VERSION >= 0x050000
    QCursor::setPos(screenNear(globalPosition), globalPosition);
#else
    QCursor::setPos(globalPosition);
#endif
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
