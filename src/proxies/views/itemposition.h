#pragma once

#include <QtCore/QString>

class QAbstractItemView;
class QHeaderView;

namespace views {

struct ItemAddress;

// The centre of an item or of a header section relative to the view's size, as a text "x;y", for example
// "0.5;0.25". Empty for an item out of sight, and for every row header section: scripts compare with that.
// Raises an error when the view does not have the header.
QString itemPosition(const QAbstractItemView& view, const ItemAddress& address);

// The header of the view that names its columns (Qt::Horizontal) or rows. Raises an error when it does not have that.
QHeaderView* requiredHeader(const QAbstractItemView& view, Qt::Orientation orientation);

} // namespace views
