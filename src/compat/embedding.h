#pragma once

#include <QtCore/QPoint>
#include <QtCore/QRect>

class QGraphicsView;
class QWidget;

// Widgets that a graphics view shows as parts of its scene: the windowing system and, for many purposes, Qt know the view
// only.
namespace compat {

// The view that shows the widget, the first one if there are several; null when the widget is not embedded.
QGraphicsView* viewAround(const QWidget* widget);

// QWidget::mapToGlobal(), with Qt 4 too for embedded widgets.
QPoint mapToGlobal(const QWidget* widget, const QPoint& point);

// The embedded widget that gets the mouse at a point of the view's viewport; null when something else does, or when the
// widget is not the viewport of a graphics view.
QWidget* embeddedWidgetAt(const QWidget* viewport, const QPoint& point);

// A rectangle of the embedded widget in coordinates of its view's viewport, to which the view is scrolled. That runs the
// application's code.
QRect scrollViewTo(QGraphicsView* view, const QWidget* widget, const QRect& rect);

// The open popup that has the keys while it is there: QApplication::activePopupWidget(), or one that the widget's view
// embeds, too, which Qt does not count among the popups.
QWidget* popupBefore(const QWidget* widget);

// Whether keys reach the widget. Not QWidget::hasFocus(), which holds for all those that hand their focus on to the one
// that has it, too, and for embedded widgets whose view does not have the focus.
bool hasKeys(const QWidget* widget);

} // namespace compat
