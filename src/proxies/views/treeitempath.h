#pragma once

#include <QtCore/QModelIndex>
#include <QtCore/QStringList>

class QTreeView;

namespace views {

// Tree item paths: the row texts from a top-level item of the view down to an item, joined by "/".

// The texts of the columns that the view shows, joined by ":". Empty texts at the beginning add nothing, not even a ":":
// "" and "x" give "x", but "x" and "" give "x:".
QString treeRowText(const QTreeView& view, int row, const QModelIndex& parent);

// Whether a path's segment names a row: part by part between ":" the same text. It may name only the first
// columns.
bool segmentMatches(const QString& segment, const QString& rowText);

// The path of an item, "" for the invalid index.
QString itemPathOf(const QTreeView& view, const QModelIndex& index);

// The first item, in the order of rows, to which the path leads; invalid when there is none. Several rows may
// fit a segment: the first under which the rest of the path leads somewhere counts. Hidden rows are looked
// at, too.
QModelIndex findItem(const QTreeView& view, const QString& path);

// The paths of all items, parents before their children, whether expanded or not; hidden ones are left out
// together with what is below them.
QStringList treeItemPaths(const QTreeView& view);

} // namespace views
