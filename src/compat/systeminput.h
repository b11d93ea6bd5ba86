#pragma once

#include <QtCore/QEvent>
#include <QtCore/QString>

#include <utility>

class QPoint;
class QWidget;

// Input that Qt handles as if the windowing system had sent it, which takes more than posting an event: see each function.
namespace compat {

// The widget that a key would reach if the window had the focus: the keyboard's grabber, else the focus widget of the
// open popup, or of the window where none is open, or that popup or window itself.
QWidget* keyReceiver(QWidget* window);

// Has Qt handle a key event as if it came from the keyboard, while the window is the one that has the focus: shortcuts are
// looked for, and default buttons, menus and event filters have their part in it. `modifiers` are those before the event.
// The Menu key asks for a context menu, too. No input method sees the event. Runs the application's code.
void sendKeyEvent(QWidget* window, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString& text);

// Sends the target the event of a mouse wheel at a point in global coordinates. Qt passes it on to the target's parents
// until one accepts it. `angle` is in eighths of a degree, 120 for a step, and positive upwards or to the left. Runs
// the application's code.
void sendWheelEvent(QWidget* target, const QPoint& globalPosition, Qt::Orientation orientation, int angle,
    Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers);

// Whether the agent has made this event, for a widget that a user's input would reach. Qt counts as a user's only what the
// windowing system sends.
bool isOwnInput(const QEvent* event);

void rememberOwnInput(const QEvent* event);
void forgetOwnInput(const QEvent* event);

// An input event of the agent, registered for isOwnInput() as long as it lives. Qt deletes posted events, also those
// that it never delivers.
template <class Event>
class OwnInput : public Event
{
public:
    template <class... Arguments>
    explicit OwnInput(Arguments&&... arguments)
        : Event(std::forward<Arguments>(arguments)...)
    {
        rememberOwnInput(this);
    }
    ~OwnInput() override { forgetOwnInput(this); }
    Q_DISABLE_COPY(OwnInput)
};

// The Qt::Key with that name in the portable texts of QKeySequence, upper and lower case alike; 0 when there is none.
int keyNamed(const QString& name);

} // namespace compat
