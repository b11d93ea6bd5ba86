#pragma once

#include "proxy/mousecommand.h"

namespace proxies {

// A mouse command for widgets that react at one point only. It has no position and no modifier.
struct ClickCommand
{
    proxy::MouseCommandType type;
    Qt::MouseButton button;
};

// The command of a text "type:button" with type "MousePress", "MouseRelease", "MouseClick" or "MouseDoubleClick" and
// button "LeftButton" or "RightButton", followed by exactly `ending`. Raises "Invalid string value" for any other.
ClickCommand clickCommand(const QString& text, const char* ending);

} // namespace proxies
