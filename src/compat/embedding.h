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

// The embedded widget that gets the mouse at a point of the screen within the view's viewport; null when something else
// does, or when the widget is not the viewport of a graphics view.
QWidget* embeddedWidgetAt(const QWidget* viewport, const QPoint& globalPosition);

// Scrolls the view to a rectangle of the embedded widget, and returns that in coordinates of the viewport. Runs the
// application's code.
QRect scrollViewTo(QGraphicsView* view, const QWidget* widget, const QRect& rect);

// The open popup that gets the keys instead of the widget: QApplication::activePopupWidget(), or a popup that is
// embedded in the same view, which Qt does not count among the popups.
QWidget* popupInFrontOf(const QWidget* widget);

// Whether keys reach the widget. QWidget::hasFocus() is also true for a widget whose focus proxy has the focus, and for
// embedded widgets whose view does not have it.
bool hasKeyboardFocus(const QWidget* widget);

} // namespace compat
