#pragma once

#include "proxy/mousecommand.h"

namespace views {

// A mouse command of an item view. It has the five parts of every mouse command, but goes to the current
// item, so that its positions mean nothing; and it knows fewer words.
struct ItemMouseCommand
{
    proxy::MouseCommandType type;
    Qt::MouseButton button;
    Qt::KeyboardModifiers modifiers;
};

// The command of a text "type:button:x:y:modifier" with type "MousePress", "MouseRelease", "MouseClick" or
// "MouseDoubleClick", button "LeftButton" or "RightButton", and modifier "ShiftModifier", "ControlModifier",
// "AltModifier" or nothing. Raises "Invalid string value" unless there are exactly five parts, then "Mouse
// button not supported", "Mouse modifier not supported" or "Invalid mouse command" for the first unknown
// word, in this order.
ItemMouseCommand itemMouseCommand(const QString& text);

} // namespace views
