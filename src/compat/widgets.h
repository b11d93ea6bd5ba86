#pragma once

#include <QtCore/QEvent>
#include <QtCore/QList>
#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtCore/QString>

class QAbstractItemView;
class QAction;
class QDropEvent;
class QIcon;
class QMouseEvent;
class QPixmap;
class QWheelEvent;
class QWidget;

// Widgets, events and sockets, where Qt's majors spell things differently.
namespace compat {

// A mouse event for the target at a point in global coordinates, with all the positions that a real one has: in the
// target, in its native window, and on the desktop. The caller owns it.
QMouseEvent* newMouseEvent(QEvent::Type type, const QWidget* target, const QPoint& globalPosition,
    Qt::MouseButton button, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers);

// Positions in the widget, and on the screen.
QPoint positionOf(const QMouseEvent& event);
QPoint globalPositionOf(const QMouseEvent& event);
QPoint positionOf(const QDropEvent& event);
QPoint positionOf(const QWheelEvent& event);
QPoint globalPositionOf(const QWheelEvent& event);

// How far the wheel was turned, horizontally and vertically, in eighths of a degree.
QPoint angleOf(const QWheelEvent& event);

// The widgets that the action has been added to.
QList<QWidget*> widgetsOf(const QAction& action);

// Moves the cursor to a point in global coordinates, in which each screen can have a scale of its own. A point beyond all
// screens is taken to the edge of the nearest one.
void setCursorPosition(const QPoint& globalPosition);

// The icon as a pixmap of so many pixels at most, on screens of every density.
QPixmap pixmapOf(const QIcon& icon, const QSize& size);

// The part of the widget's screen that panels leave free, in global coordinates.
QRect availableGeometry(const QWidget* widget);

// The text for a key event that is made from a key code: a space for the space key with Qt 5 and 6, otherwise none.
// Without it, an item view of Qt 5 or 6 would take the space key for a search for the empty text, and move to the next
// item.
QString keyCodeText(int key);

// The rectangle of the check box of a checkable item whose own rectangle this is, in the view's viewport, as Qt's own delegate
// draws it.
QRect checkBoxOfItem(const QAbstractItemView& view, const QRect& item);

// The SIGNAL() text of QAbstractSocket's error signal.
const char* socketErrorSignal();

} // namespace compat
