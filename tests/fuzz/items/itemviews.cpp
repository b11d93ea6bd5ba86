#include "itemviews.h"

#include <QListView>
#include <QTableView>
#include <QTreeView>

namespace {

const int maximumRows = 16;
const int maximumDepth = 5;
const int maximumColumns = 4;

QStringList cellTexts(const QString& line)
{
    return QStringList(line.split(QLatin1Char('|')).mid(0, maximumColumns));
}

// Whether the text begins with the sign, which is taken off then.
bool takeSign(QString& text, QChar sign)
{
    const bool signedOne = text.startsWith(sign);
    if (signedOne)
        text.remove(0, 1);
    return signedOne;
}

} // namespace

ItemViews::ItemViews()
    : treeView(new QTreeView)
    , tableView(new QTableView)
    , listView(new QListView)
{
}

void ItemViews::fill(const QStringList& lines)
{
    auto model = std::make_unique<QStandardItemModel>();
    treeView->setModel(model.get());
    tableView->setModel(model.get());
    listView->setModel(model.get());
    items = std::move(model);
    ancestors = {items->invisibleRootItem()};
    const QStringList rows = lines.mid(2, maximumRows);
    for (const QString& row : rows)
        addRow(row);
    setHeader(Qt::Horizontal, lines.value(0));
    setHeader(Qt::Vertical, lines.value(1));
}

void ItemViews::addRow(const QString& line)
{
    QString rest = line;
    int depth = 0;
    while (takeSign(rest, QLatin1Char('>')))
        ++depth;
    ancestors = ancestors.mid(0, 1 + qMin(depth, maximumDepth));
    const bool hidden = takeSign(rest, QLatin1Char('!'));
    QList<QStandardItem*> cells;
    const QStringList texts = cellTexts(rest);
    for (const QString& text : texts)
        cells.append(new QStandardItem(text));
    QStandardItem* parent = ancestors.last();
    parent->appendRow(cells);
    ancestors.append(cells.first());
    if (!hidden)
        return;
    const int row = parent->rowCount() - 1;
    treeView->setRowHidden(row, items->indexFromItem(parent), true);
    if (parent == items->invisibleRootItem()) {
        tableView->setRowHidden(row, true);
        listView->setRowHidden(row, true);
    }
}

void ItemViews::setHeader(Qt::Orientation orientation, const QString& line)
{
    for (int column = 0; orientation == Qt::Horizontal && column < maximumColumns; ++column) {
        treeView->setColumnHidden(column, false);
        tableView->setColumnHidden(column, false);
    }
    if (line.isEmpty())
        return;
    QStringList texts = cellTexts(line);
    for (int section = 0; section < texts.size(); ++section) {
        const bool hidden = takeSign(texts[section], QLatin1Char('!'));
        if (orientation == Qt::Vertical && section < items->rowCount())
            tableView->setRowHidden(section, hidden || tableView->isRowHidden(section));
        if (orientation == Qt::Horizontal) {
            treeView->setColumnHidden(section, hidden);
            tableView->setColumnHidden(section, hidden);
        }
    }
    if (orientation == Qt::Horizontal)
        items->setHorizontalHeaderLabels(texts);
    else
        items->setVerticalHeaderLabels(QStringList(texts.mid(0, items->rowCount())));
}
