#pragma once

#include <QtCore/QModelIndex>
#include <QtCore/QString>

// What tests name in an application's model, which may be less forgiving than Qt's own.

// The index of a cell, invalid when there is none: the model is not asked for what is out of its range.
QModelIndex cellAt(const QAbstractItemModel* model, int row, int column, const QModelIndex& parent);

// The texts of items and header sections: the display role, as text.

QString displayText(const QModelIndex& index);
QString headerText(const QAbstractItemModel& model, int section, Qt::Orientation orientation);

// The first section from `from` to below `count` whose header text is exactly the given one, -1 for none.
// Vertical headers name rows, horizontal ones columns.
int findHeaderText(
    const QAbstractItemModel& model, Qt::Orientation orientation, const QString& text, int from, int count);
