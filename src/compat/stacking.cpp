#include "compat/stacking.h"

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtCore/QRect>

#if QT_VERSION >= 0x050000
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#else
#include <QtGui/QApplication>
#include <QtGui/QWidget>
#endif

namespace compat {

namespace {

// The last answer of the windowing system, and how the window was placed then.
struct WindowAtPoint
{
    QPoint point;
    QPoint pointInWindow;
    QPointer<QWidget> window;
    QRect geometry;
};

WindowAtPoint lastAnswer;

// An event filter of the application: when one of its windows changes, the windowing system is asked again.
class WindowChanges : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const QEvent::Type type = event->type();
        const bool isChange = type == QEvent::Show || type == QEvent::Hide || type == QEvent::Move
            || type == QEvent::Resize || type == QEvent::ZOrderChange || type == QEvent::WindowStateChange;
        if (isChange && watched->isWidgetType() && static_cast<QWidget*>(watched)->isWindow())
            forgetWindows();
        return false;
    }
};

// Qt 4 on Windows has a widget for the desktop, which it finds where there is no window. Nobody can use that.
QWidget* unlessDesktop(QWidget* widget)
{
    return widget && widget->windowType() != Qt::Desktop ? widget : nullptr;
}

} // namespace

QWidget* windowAt(const QPoint& point)
{
    const QWidget* window = lastAnswer.window;
    const bool isKnown
        = window && lastAnswer.point == point && window->isVisible() && window->geometry() == lastAnswer.geometry;
    if (!isKnown) {
        lastAnswer.point = point;
        lastAnswer.window = unlessDesktop(QApplication::topLevelAt(point));
        lastAnswer.geometry = lastAnswer.window ? lastAnswer.window->geometry() : QRect();
        lastAnswer.pointInWindow = lastAnswer.window ? lastAnswer.window->mapFromGlobal(point) : QPoint();
    }
    return lastAnswer.window;
}

bool refusesFocus(const QWidget* window)
{
#if QT_VERSION >= 0x050000
    return window->windowFlags() & Qt::WindowDoesNotAcceptFocus;
#else
    return window->testAttribute(Qt::WA_X11DoNotAcceptFocus);
#endif
}

void activateWindow(QWidget* widget)
{
    QWidget* window = widget->window();
#ifdef Q_OS_WIN
    // A user's click does not activate an open popup either. With the foreground of the popup its owner would lose its
    // own, and Qt closes all popups then.
    if (window->windowType() == Qt::Popup)
        return;
#endif
    if (!window->isActiveWindow())
        forgetWindows();
#if QT_VERSION >= 0x050000
    if (refusesFocus(window))
        return; // Qt would only warn; Qt 4 does activate such a window
#endif
    widget->activateWindow();
}

QWidget* widgetAt(const QPoint& globalPosition)
{
    QWidget* window = windowAt(globalPosition);
    // Below a window that no mouse event reaches there may be another one.
    if (!window || window->testAttribute(Qt::WA_TransparentForMouseEvents))
        return unlessDesktop(QApplication::widgetAt(globalPosition));
    QWidget* child = window->childAt(lastAnswer.pointInWindow);
    return child ? child : window;
}

void forgetWindows()
{
    lastAnswer = WindowAtPoint();
}

void setFocus(QWidget* widget, Qt::FocusReason reason)
{
    WindowChanges changes;
    qApp->installEventFilter(&changes);
    widget->setFocus(reason);
    qApp->removeEventFilter(&changes);
}

} // namespace compat
