#pragma once

#include "proxy/keystroke.h"
#include "proxy/stinputcontrol.h"

#include <QtCore/QEvent>
#include <QtCore/QPointer>

#include <memory>
#include <vector>

class QWidget;

namespace proxy {

// One key going down or up.
struct KeyEvent
{
    QEvent::Type type;
    int key;
    Qt::KeyboardModifiers modifiers; // before the event
    QString text;
};

using KeyEvents = std::vector<KeyEvent>;

// Sends keys while one widget has the focus. Qt handles the events like real ones, so each reaches the widget that has
// the focus by then: in another window, once a key has opened one. Modifiers that were pressed and not released are
// held, from one request to the next, for all keys. Every failure is an STError.
class Keyboard : private STInputControl
{
public:
    // The widget is in the window that has the focus, and prepared for input.
    explicit Keyboard(QWidget* widget);

    // The modifiers go down, the key goes down and up, the modifiers go up.
    static KeyEvents click(const KeyStroke& stroke);
    // Half of that: what goes down, or what goes up.
    static KeyEvents press(const KeyStroke& stroke);
    static KeyEvents release(const KeyStroke& stroke);
    // The key goes down and up. Its events carry its modifiers, which have no events of their own.
    static KeyEvents type(const KeyStroke& stroke);

    // Has the application handle the events. Raises "Internal error, proxy without widget" where a key would go down and
    // the widget is gone.
    void send(const KeyEvents& events);
    // Only posts them: the application handles them after the request, so that a dialog which it opens then does not
    // delay the reply. Keys that would go down when the widget is gone are dropped.
    void post(const KeyEvents& events);

    // Where the events go.
    struct Target
    {
        QPointer<QWidget> widget;
        QPointer<QWidget> window;
        bool followsFocus; // into other windows

        void send(const KeyEvent& event) const;
    };

private:
    const std::shared_ptr<const Target> target; // with the events that are posted
};

} // namespace proxy
