#pragma once

#include <QString>

class QAbstractItemView;
class QModelIndex;
class QObject;

/// The object name, or the text that stands in for it where there is none.
QString nameOf(const QObject* object);

/// The text of an entry field on one line; of a password, how long it is.
QString textOf(const QObject* field);

/// "off", "partly" or "on" for a Qt::CheckState.
QString stateWord(int checkState);

/// The text of an item: in a table with its row and column (0-based), elsewhere with the texts of the items
/// above it.
QString describe(const QObject* view, const QModelIndex& index);

/// The texts of the selected items from top to bottom, or "nothing".
QString describeSelection(const QAbstractItemView* view);
