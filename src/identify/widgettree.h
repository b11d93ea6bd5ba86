#pragma once

class QTextStream;
class QWidget;

namespace identify {

// Writes the widget and all widgets below it, parents before children. Each is one record: a form feed, the depth,
// " V " or " N " for visible or not, the class name, " : " and the object name in double quotes, as it stands.
void widgetTree(const QWidget* widget, int depth, QTextStream& out);

} // namespace identify
