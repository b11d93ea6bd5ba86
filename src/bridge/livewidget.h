#pragma once

class QWidget;

namespace LmSquishProxy {

// The widget, or null if it is not one of the application's widgets any more: scripts keep pointers over many
// calls, and the application deletes its widgets when it likes.
QWidget* liveWidget(QWidget* widget);

} // namespace LmSquishProxy
