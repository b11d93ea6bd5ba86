#include "compat/widgets.h"

#include "compat/waiting.h"

#include <QtCore/QPointer>
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

namespace {

// Whether the user could make the window the active one.
bool canBecomeActive(const QWidget* window)
{
    const QWidget* modal = QApplication::activeModalWidget();
    const bool takesFocus = window->windowType() != Qt::ToolTip && window->windowType() != Qt::SplashScreen
        && !(window->windowFlags() & Qt::X11BypassWindowManagerHint);
    return window->isVisible() && takesFocus && (!modal || modal == window) && !QApplication::activePopupWidget();
}

bool isReachable(const QWidget* widget)
{
    const QWidget* window = widget->window();
    if (!window->isActiveWindow())
        return false;
    const QPoint center = widget->mapToGlobal(widget->rect().center());
    return !window->rect().contains(window->mapFromGlobal(center)) || QApplication::topLevelAt(center) == window;
}

} // namespace

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

void waitUntilReachable(QWidget* widget)
{
    if (!canBecomeActive(widget->window()) || isReachable(widget))
        return;
    const QPointer<QWidget> guarded(widget);
    const int maximumMilliseconds = 500;
    processEventsUntil([&] { return !guarded || isReachable(guarded); }, maximumMilliseconds);
    // Qt can lose track of the focus when popups open and close in quick succession: the windowing system has it on the
    // window, so nothing more will come, but Qt has no active window, or a popup that is closed, and no key would reach
    // any widget.
    const QWidget* active = QApplication::activeWindow();
    if (guarded && (!active || !active->isVisible()))
        QApplication::setActiveWindow(guarded->window());
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
