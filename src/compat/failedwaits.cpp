#include "compat/failedwaits.h"

#include <QtCore/QEvent>
#include <QtCore/QtGlobal>

#if QT_VERSION >= 0x050000
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#else
#include <QtGui/QApplication>
#include <QtGui/QWidget>
#endif

#include <algorithm>

namespace compat {

FailedWaits& FailedWaits::all()
{
    static auto* const waits = new FailedWaits; // kept: a static would outlive the application
    return *waits;
}

void FailedWaits::add(QWidget* window, QWidget* front)
{
    forget(nullptr); // windows that are gone
    Circumstances circumstances;
    circumstances.window = window;
    circumstances.front = front;
    circumstances.active = QApplication::activeWindow();
    failures.push_back(circumstances);
    window->installEventFilter(this);
}

bool FailedWaits::contain(const QWidget* window, const QWidget* front) const
{
    const QWidget* active = QApplication::activeWindow();
    return std::any_of(failures.begin(), failures.end(), [=](const Circumstances& failure) {
        return failure.window == window && failure.front == front && failure.active == active;
    });
}

void FailedWaits::forget(const QObject* window)
{
    const auto isOfWindow = [window](const Circumstances& failure) { return failure.window == window; };
    failures.erase(std::remove_if(failures.begin(), failures.end(), isOfWindow), failures.end());
}

bool FailedWaits::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::WindowStateChange:
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        forget(watched);
        watched->removeEventFilter(this);
        break;
    default:
        break;
    }
    return false;
}

} // namespace compat
