#pragma once

#include <QtCore/QModelIndex>

class QAbstractItemView;

namespace views {

// A value for rows, which the vertical header names, and one for columns, which the horizontal header names.
template <class Value>
struct PerHeader
{
    Value forRows;
    Value forColumns;

    const Value& operator[](Qt::Orientation header) const { return header == Qt::Vertical ? forRows : forColumns; }
};

// Rows or columns of a model under an item.
int sectionCount(const QAbstractItemModel& model, Qt::Orientation header, const QModelIndex& parent);

// Rows or columns of the view's model under the view's root, 0 without a model.
int sectionCountUnderRoot(const QAbstractItemView& view, Qt::Orientation header);
int rowCountUnderRoot(const QAbstractItemView& view);
int columnCountUnderRoot(const QAbstractItemView& view);

} // namespace views
