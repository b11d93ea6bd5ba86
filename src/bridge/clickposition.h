#pragma once

#include <QtCore/QPoint>

class QWidget;

namespace LmSquishProxy {

// Where to click to toggle a widget: the centre of what its style makes clickable, in widget coordinates.
// QPoint(-1, -1) when the widget is null or of another class.
QPoint checkBoxClickPosition(const QWidget* checkBox);
QPoint groupBoxClickPosition(const QWidget* groupBox);
QPoint radioButtonClickPosition(const QWidget* radioButton);

} // namespace LmSquishProxy
