#pragma once

#include <QtCore/QString>

class QWidget;

namespace agent {

// Why the widget cannot have the keyboard focus now, empty when it can: "disabled", "hidden", "behind a popup", or "takes no
// keyboard focus".
QString focusRefusal(const QWidget* widget);

// Where the focus has not come to, or has not stayed.
extern const char focusLostReason[];

// Gives the widget the focus of its window, unless it or something in it has it. False where the application has it
// otherwise afterwards. Runs the application's code, which may delete the widget.
bool takeFocus(QWidget* widget, Qt::FocusReason reason);

} // namespace agent
