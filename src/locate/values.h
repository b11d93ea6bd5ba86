#pragma once

#include <QtCore/QString>

class QLineEdit;
class QWidget;

namespace locate {

class JsonObject;

using ValueWriter = void (*)(JsonObject& object, const QWidget* widget);

// The text of a line edit as it is told: "***" where the edit hides what is typed.
QString shownOf(const QLineEdit& line);

// The function that adds the "value" of a widget of this class to the object: the number of a slider, a spin box or a
// progress bar, the text of an entry field. A password is "***"; of a long text, only the beginning is read. Null for
// widgets that hold nothing, and for combo boxes, whose models can be of the application's own.
ValueWriter valueWriterFor(const QWidget* widget);

} // namespace locate
