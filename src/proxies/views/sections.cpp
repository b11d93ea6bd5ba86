#include "proxies/views/sections.h"

#include <QAbstractItemView>

namespace views {

int sectionCount(const QAbstractItemModel& model, Qt::Orientation header, const QModelIndex& parent)
{
    return header == Qt::Vertical ? model.rowCount(parent) : model.columnCount(parent);
}

int sectionCountUnderRoot(const QAbstractItemView& view, Qt::Orientation header)
{
    return view.model() ? sectionCount(*view.model(), header, view.rootIndex()) : 0;
}

int rowCountUnderRoot(const QAbstractItemView& view)
{
    return sectionCountUnderRoot(view, Qt::Vertical);
}

int columnCountUnderRoot(const QAbstractItemView& view)
{
    return sectionCountUnderRoot(view, Qt::Horizontal);
}

} // namespace views
