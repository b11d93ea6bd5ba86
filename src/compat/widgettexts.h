#pragma once

#include <QtCore/QString>

class QWidget;

namespace compat {

// Placeholder text of a line edit, a text edit or a combo box; empty for other widgets. Qt 4 has it for line
// edits only.
QString placeholderText(const QWidget* widget);

// The name that the application has given the widget for screen readers; empty in a Qt that was built without them.
QString accessibleName(const QWidget* widget);

// Whether the widget shows other characters than those that are typed into it, or none: a line edit whose echo mode is not
// Normal, a combo box with one, or a widget that tells input methods so.
bool hidesText(const QWidget* widget);

} // namespace compat
