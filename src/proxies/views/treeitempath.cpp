#include "proxies/views/treeitempath.h"

#include "proxies/views/itemtext.h"

#include <QTreeView>

#include <vector>

namespace views {

namespace {

const QLatin1Char columnSeparator(':');
const QLatin1Char levelSeparator('/');

// The progress of the search below one item.
struct SearchedLevel
{
    QModelIndex parent;
    PathSegment segment;
    int rows;
    int nextRow;
};

// The progress of the listing below one item.
struct Level
{
    QModelIndex parent;
    QString prefix;
    int rows;
    int nextRow;
};

} // namespace

QString treeRowText(const QTreeView& view, int row, const QModelIndex& parent)
{
    const QAbstractItemModel& model = *view.model();
    QString text;
    for (int column = 0, columns = model.columnCount(parent); column < columns; ++column) {
        if (view.isColumnHidden(column))
            continue;
        if (!text.isEmpty())
            text += columnSeparator;
        text += displayText(model.index(row, column, parent));
    }
    return text;
}

bool segmentMatches(const QString& segment, const QString& rowText)
{
    // Equal parts are equal texts up to a separator or the end. Not startsWith(), for which nothing starts
    // with "".
    return rowText.left(segment.size()) == segment
        && (rowText.size() == segment.size() || rowText.at(segment.size()) == columnSeparator);
}

QString itemPathOf(const QTreeView& view, const QModelIndex& index)
{
    if (!index.isValid())
        return QString();
    QStringList texts;
    for (QModelIndex item = index; item.isValid() && item != view.rootIndex(); item = item.parent())
        texts.prepend(treeRowText(view, item.row(), item.parent()));
    return texts.join(QString(levelSeparator));
}

QModelIndex findItem(const QTreeView& view, const QString& path)
{
    if (!view.model())
        return QModelIndex();
    const QAbstractItemModel& model = *view.model();
    // Not a recursion: a test decides how deep the path is, and a deep one would overflow the stack.
    std::vector<SearchedLevel> levels{{view.rootIndex(), firstSegment(path), model.rowCount(view.rootIndex()), 0}};
    while (!levels.empty()) {
        SearchedLevel& level = levels.back();
        if (level.nextRow == level.rows) {
            levels.pop_back();
            continue;
        }
        const int row = level.nextRow++;
        const QModelIndex item = model.index(row, 0, level.parent);
        if (!item.isValid() || !segmentMatches(level.segment.text, treeRowText(view, row, level.parent)))
            continue;
        if (level.segment.isLast(path))
            return item;
        if (levels.size() < maximumItemDepth)
            levels.push_back({item, segmentAfter(path, level.segment), model.rowCount(item), 0});
    }
    return QModelIndex();
}

QStringList treeItemPaths(const QTreeView& view)
{
    QStringList paths;
    if (!view.model())
        return paths;
    const QAbstractItemModel& model = *view.model();
    // Not a recursion: a deep tree of the application would overflow the stack.
    std::vector<Level> levels{{view.rootIndex(), QString(), model.rowCount(view.rootIndex()), 0}};
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.nextRow == level.rows) {
            levels.pop_back();
            continue;
        }
        const int row = level.nextRow++;
        const QModelIndex item = model.index(row, 0, level.parent);
        if (!item.isValid() || view.isRowHidden(row, level.parent))
            continue;
        const QString path = level.prefix + treeRowText(view, row, level.parent);
        paths.append(path);
        if (const int rows = model.rowCount(item))
            levels.push_back({item, path + levelSeparator, rows, 0});
    }
    return paths;
}

} // namespace views
