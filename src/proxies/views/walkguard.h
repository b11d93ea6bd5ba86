#pragma once

#include "proxies/views/cycleguard.h"

#include <QtCore/QObject>

class QAbstractItemModel;

namespace views {

// Notices that a walk through items has no end: it runs in a circle, or makes no progress. It makes none once it has passed
// its goal, as it does where a hidden row keeps it from that, or where rows are inserted as fast as it passes them.
class WalkGuard : public QObject
{
    Q_OBJECT

public:
    // The model may be null.
    explicit WalkGuard(const QAbstractItemModel* model);

    // To be asked after each step: whether the walk, which is at the item now, has turned out to be endless. `isNearer`:
    // whether the step can have brought it nearer to its goal.
    bool isEndless(const QModelIndex& item, bool isNearer);

private Q_SLOTS:
    void countRows(const QModelIndex& parent, int first, int last);

private:
    CycleGuard circle;
    // Progress within the current period. Rows can be inserted in a burst, as when a folder is read: only several periods
    // without progress, one after the other, make the walk endless.
    long long periodBegin;
    qint64 gained = 0;
    int periodsInVain = 0;
};

} // namespace views
