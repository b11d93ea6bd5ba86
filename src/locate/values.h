#pragma once

class QWidget;

namespace locate {

class JsonObject;

// Adds what the widget holds as "value": the number of a slider, a spin box or a progress bar, the text of an entry field,
// the choice of a combo box. A password is told as "***". Nothing for widgets that hold nothing. Of a long text, only the
// beginning is read.
void addValue(JsonObject& object, const QWidget* widget);

} // namespace locate
