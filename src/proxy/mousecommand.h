#pragma once

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QString>

namespace proxy {

// The words of the mouse command "type:button:x:y:modifier". Every function raises an STError for a text that it
// does not know; words are exact and case-sensitive.

enum class MouseCommandType { Press, Release, Click, DoubleClick, Move };

// "MousePress", "MouseRelease", "MouseClick", "MouseDoubleClick", "MouseMove" or empty for a move.
MouseCommandType mouseCommandType(const QString& word);

// "LeftButton", "RightButton", "MidButton", "NoButton" or empty for none.
Qt::MouseButton mouseButton(const QString& word);

// "ShiftModifier", "ControlModifier", "AltModifier", "NoModifier" or empty for none.
Qt::KeyboardModifiers keyboardModifier(const QString& word);

// The point of a rectangle at the shares x and y, texts of numbers from 0.0 to 1.0, of its width and height. One
// missing share is 0.5; when both are, the point is the rectangle's centre. Errors call them by their places in the
// command, y being the one behind x.
QPoint pointAtShares(const QRect& rect, const QString& x, const QString& y, int placeOfX = 3);

// The steps of a wheel, an integer in this place of a command; none are 0. Raises an error for other texts, and beyond
// 1000 steps in either direction.
int wheelSteps(const QString& text, int place);

} // namespace proxy
