#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QPoint>

class QWidget;

namespace record {

// The place where a drag ends that has begun in a widget: the widget at that point of the screen, its place and its item there,
// as an object of JSON in ASCII; empty where no widget of the application is. A model of the application's own runs its code.
QByteArray endOfDrag(QWidget* dragged, const QPoint& globalPosition);

} // namespace record
