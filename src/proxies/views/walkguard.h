#pragma once

#include "proxies/views/cycleguard.h"

#include <QtCore/QObject>

class QAbstractItemModel;

namespace views {

// Detects that a walk through items has no end: it runs in a circle, or makes no progress. That is so when it has
// passed its goal, as below a hidden row, or when rows are inserted as fast as it passes them.
class WalkGuard : public QObject
{
    Q_OBJECT

public:
    // The model may be null.
    explicit WalkGuard(const QAbstractItemModel* model);

    // To be called after each step, with the item that the walk has reached, and whether the step can have brought it
    // nearer to its goal. Returns whether the walk has turned out to be endless.
    bool visitAndDetectEndlessWalk(const QModelIndex& item, bool isNearer);

private Q_SLOTS:
    void countRows(const QModelIndex& parent, int first, int last);

private:
    CycleGuard circle;
    // Progress within the current period. Rows can be inserted in a burst, as when a folder is read: only several periods
    // without progress, one after the other, make the walk endless.
    long long periodBegin;
    qint64 gained = 0;
    int idlePeriods = 0;
};

} // namespace views
