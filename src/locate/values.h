#pragma once

class QWidget;

namespace locate {

class JsonObject;

using ValueWriter = void (*)(JsonObject& object, const QWidget* widget);

// What adds to the object, as "value", what a widget of this class holds: the number of a slider, a spin box or a progress
// bar, the text of an entry field. A password is told as "***"; of a long text, only the beginning is read. Null for widgets
// that hold nothing, and for combo boxes, whose models can be of the application's own.
ValueWriter valueWriterFor(const QWidget* widget);

} // namespace locate
