#pragma once

class QPoint;
class QWidget;

// Waiting for the window manager.
namespace compat {

// On Windows a window is shown and active as soon as it has been asked to be. On X11 the window manager does that some
// time later, and until then mouse clicks miss the window and keys go to another one. These functions process events,
// except those of sockets, until it is done: for half a second at most, and not at all if a wait for the window has
// failed before and nothing about it has changed since.

// Until the widget's window is active, unless it refuses the focus, and in front at the widget's centre. Not if it is
// active already, nor if it cannot be because something modal or a popup is open, or a graphics view has it.
void waitUntilActive(QWidget* widget);

// Until the widget's window is in front at a point. Not if the point is beside the window, or if it stays below what is
// there, as below a floating dock of its own.
void waitUntilInFront(QWidget* widget, const QPoint& globalPosition);

} // namespace compat
