#pragma once

class QWidget;

namespace LmSquishProxy {

// Whether the user sees the dock widget in the active window: it floats as that window, or part of it lies over its
// main window. One behind another tab is laid out outside the main window. False for any other widget.
bool isActiveDockWidget(const QWidget* widget);

// The first active one among the dock widgets that share their tabs with this one; null when there is none.
QWidget* activeSiblingDockWidget(QWidget* widget);

} // namespace LmSquishProxy
