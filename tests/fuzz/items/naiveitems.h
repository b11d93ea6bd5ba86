#pragma once

#include <QtCore/QModelIndex>
#include <QtCore/QStringList>

class QListView;
class QTableView;
class QTreeView;

// The rules of item, cell and header addresses once more, slow and obvious, to compare the agent's own with.
namespace naive {

// The item at an address, or the message of the error.
struct Found
{
    QModelIndex index;
    QString error;
    // The sections of a header address, -1 for none.
    int row = -1;
    int column = -1;
};

QString treePath(const QTreeView& view, const QModelIndex& index);
QStringList treePaths(const QTreeView& view, const QModelIndex& parent, const QString& prefix);
QModelIndex treeItem(const QTreeView& view, const QStringList& segments, const QModelIndex& parent);
QModelIndex listItem(const QListView& view, const QString& text);
Found tableCell(const QTableView& view, const QString& address);
Found tableHeader(const QTableView& view, Qt::Orientation orientation, const QString& number);
Found modelItem(const QAbstractItemModel& model, const QString& path);
// Whether the text is a header address at all.
bool headerSection(const QAbstractItemModel& model, const QString& address, Found& found);

} // namespace naive
