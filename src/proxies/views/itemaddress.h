#pragma once

#include <QtCore/QModelIndex>
#include <QtCore/QString>

namespace views {

// How tests address items and header sections of any model.

// The index to which a model index path leads: steps "row;column" joined by "/", each a number from 1 or a
// header's text; without a column it is the first. Empty for the root. Raises an error for a path that leads
// nowhere.
QModelIndex indexAtPath(const QAbstractItemModel& model, const QString& path);

// An item, or one section of a header: then the index is invalid, and one of row and column is the section,
// the other -1.
struct ItemAddress
{
    QModelIndex index;
    int row;
    int column;

    bool isColumnHeader() const { return !index.isValid() && row == -1 && column != -1; }
    bool isRowHeader() const { return !index.isValid() && row != -1 && column == -1; }
};

// Whether a text is a header address, "V:" and a row, or "H:", "h:" or "v:" and a column, as a number from 1
// or a text; if so sets the address. Raises "Invalid row: ..." or "Invalid column: ..." for a section that is
// not there.
bool readHeaderAddress(const QAbstractItemModel& model, const QString& text, ItemAddress& address);

} // namespace views
