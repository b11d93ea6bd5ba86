#pragma once

#include <QtCore/QModelIndex>
#include <QtCore/QString>

namespace views {

// Cells, texts and headers that tests name, read from an application's model, which may be less forgiving than Qt's own.

// The index of a cell, invalid when there is none: the model is not asked for what is out of its range.
QModelIndex cellAt(const QAbstractItemModel* model, int row, int column, const QModelIndex& parent);

// Paths of items lead no deeper than this many levels: more than any application shows, and few enough to be searched
// in reasonable time where a model goes on for ever.
const int maximumItemDepth = 10000;

// One segment of a path of items; segments are joined by "/". They are cut one by one, since most of a path that leads
// nowhere is never looked at.
struct PathSegment
{
    QString text; // of the path's own characters, which have to outlive it
    int end; // where the segment ends in the path

    bool isLast(const QString& path) const { return end == path.size(); }
};
PathSegment firstSegment(const QString& path);
PathSegment segmentAfter(const QString& path, const PathSegment& segment);

// The texts of items and header sections: the display role, as text.

QString displayText(const QModelIndex& index);
QString headerText(const QAbstractItemModel& model, int section, Qt::Orientation orientation);

// The first section from `from` to below `count` whose header text is exactly the given one, -1 for none.
// Vertical headers name rows, horizontal ones columns.
int findHeaderText(
    const QAbstractItemModel& model, Qt::Orientation orientation, const QString& text, int from, int count);

} // namespace views
