#pragma once

#include <QtCore/QRect>

class QWidget;

namespace fields {

// The part of a spin box, or of a date or time edit, that holds its text, in the widget's coordinates.
QRect spinBoxEditField(const QWidget* spinBox);

} // namespace fields
