#pragma once

#include "proxy/stwidgetproxy.h"

#include <QtCore/QString>

namespace agent {

// Prepares the widget for the mouse at a place in it, or in what stands for it, and returns why a user could not use it
// there; empty when they could. Checks in this order that it is visible, enabled and at rest from one turn of the event
// loop to the next, scrolls the areas around it to the point, prepares its window as for a command, and checks that the
// mouse reaches the widget or what is inside it. Raises an error when the application deletes the widget meanwhile.
QString prepareForMouse(STWidgetProxy& proxy, const STWidgetProxy::MousePlace& place);

// Only whether it is visible and enabled: the reason why not, or empty.
QString whyNotUsable(STWidgetProxy& proxy);

// Scrolls the areas around a widget until a rectangle of it is visible, or as much of it as there is room for. Returns
// why its centre is not visible then; empty when it is. Raises an error when the application deletes the widget
// meanwhile.
QString scrollIntoView(QWidget* widget, const QRect& rect);
// The part of the rectangle that no widget around this one cuts off.
QRect visiblePart(const QWidget* widget, QRect rect);

} // namespace agent
