#pragma once

#include <QtCore/QString>

class QWidget;

namespace agent {

// Why the widget cannot have the keyboard focus now, empty when it can: "disabled", "hidden", "behind a popup", or "takes no
// keyboard focus".
QString focusRefusal(const QWidget* widget);

// The reason when a widget does not have the focus after it was given to it.
extern const char focusLostReason[];

// Gives the widget the focus of its window, unless it or something in it has it. False when the application has given the
// focus to another widget at once. Runs the application's code, which may delete the widget.
bool takeFocus(QWidget* widget, Qt::FocusReason reason);

} // namespace agent
