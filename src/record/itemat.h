#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QPoint>

class QAction;
class QWidget;

namespace record {

// Whether the place within the item is told, too.
enum class ItemPlace { Untold, Told };

// The item at a position of a widget, or for an item view of its viewport, as an object of JSON in ASCII; empty where
// there is none. A model of the application's own runs its code, which may delete the widget.
QByteArray itemAt(QWidget* widget, const QPoint& position, ItemPlace place = ItemPlace::Untold);

// An entry of a menu or a menu bar, with its path from the outermost menu that it is in.
QByteArray menuItem(QWidget* holder, const QAction* action);

} // namespace record
