#pragma once

class QPoint;
class QWidget;

namespace proxy {

// Whether a press of the mouse on the widget gives it the keyboard focus.
bool acceptsClickFocus(const QWidget* widget);

// The widget that a graphics view embeds, and that a user's press at a point of the screen gives the focus, the target
// being the view's viewport; null when there is none. Qt gives it the focus only for events of the windowing system.
QWidget* embeddedFocusTaker(const QWidget* target, const QPoint& position);

} // namespace proxy
