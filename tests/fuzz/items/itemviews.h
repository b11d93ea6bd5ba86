#pragma once

#include <QStandardItemModel>
#include <QtCore/QStringList>

#include <memory>

class QListView;
class QTableView;
class QTreeView;

// A tree, a table and a list view, which live as long as the process and are never shown. Each input gives them a model.
class ItemViews
{
public:
    ItemViews();

    // The first line is the texts of the horizontal header, the second those of the vertical one, separated by "|"; a
    // header without any has numbers. Then one line for each row: ">" for each level below the first, and the texts of
    // its cells, separated by "|". A row or header text that begins with "!" is hidden, without the "!".
    void fill(const QStringList& lines);

    QTreeView* tree() const { return treeView; }
    QTableView* table() const { return tableView; }
    QListView* list() const { return listView; }
    const QStandardItemModel& model() const { return *items; }

private:
    void addRow(const QString& line);
    void setHeader(Qt::Orientation orientation, const QString& line);

    QTreeView* treeView;
    QTableView* tableView;
    QListView* listView;
    std::unique_ptr<QStandardItemModel> items;
    QList<QStandardItem*> ancestors; // of the next row, from the root down
};
