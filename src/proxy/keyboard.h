#pragma once

#include "proxy/keystroke.h"

#include <QtCore/QEvent>
#include <QtCore/QString>

#include <vector>

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

// The events of key strokes. Modifiers that were pressed and not released are held, from one request to the next, for all
// keys.
class Keyboard
{
public:
    // The modifiers go down, the key goes down and up, the modifiers go up.
    static KeyEvents click(const KeyStroke& stroke);
    // Half of that: what goes down, or what goes up.
    static KeyEvents press(const KeyStroke& stroke);
    static KeyEvents release(const KeyStroke& stroke);
    // The key goes down and up. Its events carry its modifiers, which have no events of their own.
    static KeyEvents type(const KeyStroke& stroke);
};

} // namespace proxy
