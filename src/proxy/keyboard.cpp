#include "proxy/keyboard.h"

namespace proxy {

namespace {

// Shared by all requests: a modifier pressed in one is held in the next.
Qt::KeyboardModifiers heldModifiers = Qt::NoModifier;

void append(KeyEvents& events, QEvent::Type type, const KeyStroke& stroke, Qt::KeyboardModifiers held)
{
    const Qt::KeyboardModifiers part = stroke.modifiers & Qt::KeypadModifier;
    events.push_back({type, stroke.key, held | part, stroke.textWith(held)});
}

// Presses the modifiers that are not held yet, and the key.
void appendPress(KeyEvents& events, const KeyStroke& stroke, Qt::KeyboardModifiers& held)
{
    for (const ModifierKey& row : modifierKeys) {
        if (!row.key || !(stroke.modifiers & row.modifier) || held & row.modifier)
            continue;
        events.push_back({QEvent::KeyPress, row.key, held, QString()});
        held |= row.modifier;
    }
    append(events, QEvent::KeyPress, stroke, held);
    held |= modifierOf(stroke.key);
}

// Releases the key, and those of its modifiers that are held, but not `kept`.
void appendRelease(KeyEvents& events, const KeyStroke& stroke, Qt::KeyboardModifiers& held, Qt::KeyboardModifiers kept)
{
    append(events, QEvent::KeyRelease, stroke, held);
    held &= ~(modifierOf(stroke.key) & ~kept);
    for (std::size_t i = sizeof(modifierKeys) / sizeof(modifierKeys[0]); i-- > 0;) {
        const ModifierKey& row = modifierKeys[i];
        if (!row.key || !(stroke.modifiers & held & ~kept & row.modifier))
            continue;
        events.push_back({QEvent::KeyRelease, row.key, held, QString()});
        held &= ~Qt::KeyboardModifiers(row.modifier);
    }
}

} // namespace

KeyEvents Keyboard::click(const KeyStroke& stroke)
{
    KeyEvents events;
    Qt::KeyboardModifiers held = heldModifiers;
    appendPress(events, stroke, held);
    appendRelease(events, stroke, held, heldModifiers);
    return events;
}

KeyEvents Keyboard::press(const KeyStroke& stroke)
{
    KeyEvents events;
    appendPress(events, stroke, heldModifiers);
    return events;
}

KeyEvents Keyboard::release(const KeyStroke& stroke)
{
    KeyEvents events;
    appendRelease(events, stroke, heldModifiers, Qt::NoModifier);
    return events;
}

KeyEvents Keyboard::type(const KeyStroke& stroke)
{
    KeyEvents events;
    append(events, QEvent::KeyPress, stroke, stroke.modifiers | heldModifiers);
    append(events, QEvent::KeyRelease, stroke, stroke.modifiers | heldModifiers);
    return events;
}

} // namespace proxy
