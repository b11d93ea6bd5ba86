#include "compat/reachable.h"

#include "compat/failedwaits.h"
#include "compat/stacking.h"
#include "compat/waiting.h"

#include <QtCore/QPointer>
#include <QtCore/QtGlobal>

#if QT_VERSION >= 0x050000
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#else
#include <QtGui/QApplication>
#include <QtGui/QDesktopWidget>
#endif

namespace compat {

namespace {

bool isOnScreen(const QPoint& point)
{
#if QT_VERSION >= 0x050000
    return QGuiApplication::screenAt(point) != nullptr;
#else
    return QApplication::desktop()->screenGeometry(point).contains(point);
#endif
}

bool letsInputThrough(const QWidget* window)
{
#if QT_VERSION >= 0x050000
    return window->windowFlags() & Qt::WindowTransparentForInput;
#else
    Q_UNUSED(window)
    return false;
#endif
}

// Whether the windowing system was told that one window belongs above the other.
bool isTransientFor(const QWidget* window, const QWidget* other)
{
#if QT_VERSION >= 0x050000
    const QWindow* handle = window->windowHandle();
    while (handle && handle != other->windowHandle())
        handle = handle->transientParent();
    return handle != nullptr;
#else
    while (window && window != other) {
        const Qt::WindowType type = window->windowType();
        const bool isTransient = type == Qt::Dialog || type == Qt::Sheet || type == Qt::Tool || type == Qt::SplashScreen
            || type == Qt::ToolTip || type == Qt::Drawer || type == Qt::Popup;
        const QWidget* parent = window->parentWidget();
        window = isTransient && parent ? parent->window() : nullptr;
    }
    return window != nullptr;
#endif
}

bool isUnmanaged(const QWidget* window)
{
    return window->windowType() == Qt::ToolTip || window->windowType() == Qt::Popup
        || window->windowFlags() & Qt::X11BypassWindowManagerHint;
}

// Whether raising the window would not bring it above the other one.
bool staysBelow(const QWidget* window, const QWidget* other)
{
    const Qt::WindowFlags added = other->windowFlags() & ~window->windowFlags();
    const Qt::WindowFlags missing = window->windowFlags() & ~other->windowFlags();
    return isUnmanaged(other) || added & Qt::WindowStaysOnTopHint || missing & Qt::WindowStaysOnBottomHint
        || isTransientFor(other, window);
}

// Whether the window can come to the front at all: it is shown as a window of the screen, and neither a modal widget
// nor a popup of the application blocks it.
bool canComeToFront(const QWidget* window)
{
    const bool isShown = window->isVisible() && !window->graphicsProxyWidget()
        && !window->testAttribute(Qt::WA_DontShowOnScreen) && !letsInputThrough(window);
    const QWidget* modal = QApplication::activeModalWidget();
    return isShown && !isUnmanaged(window) && (!modal || modal == window) && !QApplication::activePopupWidget();
}

bool canBecomeActive(const QWidget* window)
{
    return window->windowType() != Qt::SplashScreen && !refusesFocus(window);
}

// The application's window at a point of the screen; `window` itself where the point is beside it or off the screen.
// Positions are compared with the window's geometry, since with Qt 4 each mapToGlobal() is a round trip to the X server.
QWidget* windowInFront(QWidget* window, const QPoint& point)
{
    return window->geometry().contains(point) && isOnScreen(point) ? windowAt(point) : window;
}

enum class Goal { Active, InFront };

bool isReached(Goal goal, QWidget* window, const QPoint& point)
{
    if (goal == Goal::Active && !window->isActiveWindow() && canBecomeActive(window))
        return false;
    const QWidget* front = windowInFront(window, point);
    return front == window || (front && staysBelow(window, front));
}

// The point is asked for each time: the window manager may place the window meanwhile.
template <class Point>
void waitFor(Goal goal, QWidget* widget, Point point)
{
    const QPointer<QWidget> guarded(widget);
    const auto isOver
        = [&] { return !guarded || !canComeToFront(guarded->window()) || isReached(goal, guarded->window(), point()); };
    FailedWaits& failedWaits = FailedWaits::all();
    if (isOver() || failedWaits.contain(widget->window(), windowInFront(widget->window(), point())))
        return;
    const int maximumMilliseconds = 500;
    processEventsUntil(isOver, maximumMilliseconds);
    if (isOver())
        return;
    // Qt can lose track of the focus when popups open and close in quick succession: the windowing system has it on the
    // window, so nothing more will come, but Qt has no active window, or a popup that is closed, and no key would reach
    // any widget.
    const QWidget* active = QApplication::activeWindow();
    if (canBecomeActive(guarded->window()) && (!active || !active->isVisible()))
        QApplication::setActiveWindow(guarded->window());
    if (guarded)
        failedWaits.add(guarded->window(), windowInFront(guarded->window(), point()));
}

} // namespace

void waitUntilActive(QWidget* widget)
{
    if (!widget->isActiveWindow())
        waitFor(Goal::Active, widget, [widget] { return widget->mapToGlobal(widget->rect().center()); });
}

void waitUntilInFront(QWidget* widget, const QPoint& globalPosition)
{
    waitFor(Goal::InFront, widget, [&globalPosition] { return globalPosition; });
}

} // namespace compat
