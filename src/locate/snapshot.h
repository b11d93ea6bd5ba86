#pragma once

#include <QtCore/QByteArray>

class QWidget;

namespace locate {

// The widget and the visible ones below it in its window, as one JSON object in ASCII: the fields of WidgetDescriber,
// the value and the items that a widget holds, and its "children". Where an item view has a model of the application's
// own, its code runs; widgets that it deletes are left out.
QByteArray snapshot(QWidget* widget);

// The same without the items. None of the application's code runs.
QByteArray snapshotWithoutItems(QWidget* widget);

} // namespace locate
