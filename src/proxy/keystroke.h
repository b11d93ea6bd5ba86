#pragma once

#include <QtCore/QString>

#include <vector>

namespace proxy {

// One key as it is pressed, with the modifiers that are held.
struct KeyStroke
{
    int key = 0; // a Qt::Key; 0 for a character that no key is known of
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    QString text; // without the modifiers, "a" for Qt::Key_A; empty for keys that have none

    // The text that a keyboard gives: "A" with Shift, the control character with Ctrl.
    QString textWith(Qt::KeyboardModifiers held) const;
};

// A key that is a modifier.
struct ModifierKey
{
    const char* name;
    Qt::KeyboardModifier modifier;
    int key; // 0: the modifier has no key, it marks a part of the keyboard
};

// In the order in which a user presses them. "Num" are the keys of the keypad.
extern const ModifierKey modifierKeys[5];

// The modifier that the key is, Qt::NoModifier when it is none.
Qt::KeyboardModifiers modifierOf(int key);

// One to four strokes as QKeySequence's portable text has them, such as "Ctrl+K, Ctrl+C"; a modifier can stand alone, as
// in "Shift". Raises `Unknown key "X"`, and an error for more strokes.
std::vector<KeyStroke> keyStrokes(const QString& keys);

// The stroke that types what is at a position of a text, which is moved behind it: a character, also one of two code
// units, or a line break, also one of "\r\n".
KeyStroke takeKeyStroke(const QString& text, int& position);

} // namespace proxy
