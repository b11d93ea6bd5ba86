#pragma once

#include "agent/widgetaccess.h"

#include <QtCore/QPoint>
#include <QtCore/QRect>

class STApplicationProxy;

namespace agent {

class Request;

// Extensions on the items of a widget that a locator finds: rows and cells, tabs, the headers of a tool box's
// pages, entries of menus. An item is named by a typed value, as for the activation of the widget.

// The extension +9 with an item in section 6: plays the mouse command in section 4 at the item, in the widget that has it.
// `window` is where sections 1 and 2 are looked for.
QByteArray mouseOnItem(const Access& window, const Request& request, bool isForced, STApplicationProxy& registry);

// Section 4: an item, or nothing. Scrolls to the widget or its item, and replies with the part of it that is visible
// then, as a rectangle on the screen.
QByteArray scrollToLocated(const Request& request, STApplicationProxy& registry);

// Section 4: an item. Replies "0,j:" and an object with its text and states, without acting.
QByteArray readItem(const Request& request, STApplicationProxy& registry);

// The point of a rectangle where a mouse command goes. It is the centre where the command's shares are wrong: the command
// itself refuses those.
QPoint mousePoint(const QRect& rect, const QString& command);

} // namespace agent
