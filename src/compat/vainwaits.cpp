#include "compat/vainwaits.h"

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

VainWaits& VainWaits::all()
{
    static auto* const waits = new VainWaits; // kept: a static would outlive the application
    return *waits;
}

void VainWaits::add(QWidget* window, QWidget* front)
{
    forget(nullptr); // windows that are gone
    Standing standing;
    standing.window = window;
    standing.front = front;
    standing.active = QApplication::activeWindow();
    standings.push_back(standing);
    window->installEventFilter(this);
}

bool VainWaits::contain(const QWidget* window, const QWidget* front) const
{
    const QWidget* active = QApplication::activeWindow();
    return std::any_of(standings.begin(), standings.end(), [=](const Standing& standing) {
        return standing.window == window && standing.front == front && standing.active == active;
    });
}

void VainWaits::forget(const QObject* window)
{
    const auto isOfWindow = [window](const Standing& standing) { return standing.window == window; };
    standings.erase(std::remove_if(standings.begin(), standings.end(), isOfWindow), standings.end());
}

bool VainWaits::eventFilter(QObject* watched, QEvent* event)
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
