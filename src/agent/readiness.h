#pragma once

#include "proxy/stwidgetproxy.h"

#include <QtCore/QString>

namespace agent {

// Why a user could not use the widget with the mouse at that place, which is in it or in what stands for it; empty when
// they could. In this order: it is visible, enabled, at rest from one turn of the event loop to the next, in sight, and
// the mouse reaches it or what is inside it. Scroll areas around it are scrolled to the point, and then its window is
// prepared as for a command. Raises an error when the application deletes the widget meanwhile.
QString whyNotReady(STWidgetProxy& proxy, const STWidgetProxy::MousePlace& place);

// The first two of these only.
QString whyNotUsable(STWidgetProxy& proxy);

// Scrolls the areas around a widget until a rectangle of it is in sight, or as much of it as there is room for. Empty when
// its centre is in sight then, else the reason. Raises an error when the application deletes the widget meanwhile.
QString bringIntoSight(QWidget* widget, const QRect& rect);
// The part of the rectangle that no widget around this one cuts off.
QRect partInSight(const QWidget* widget, QRect rect);

} // namespace agent
