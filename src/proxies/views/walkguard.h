#pragma once

#include "proxies/views/cycleguard.h"

#include <QtCore/QObject>

#include <ctime>

class QAbstractItemModel;

namespace views {

// Notices that a walk through items has no end: that it runs in a circle, or that it gains nothing. That is so once it has
// passed the item that it goes to, which a hidden row can keep it from, or where the model has more rows come in than the
// walk leaves behind.
class WalkGuard : public QObject
{
    Q_OBJECT

public:
    // The model may be null.
    explicit WalkGuard(const QAbstractItemModel* model);

    // To be asked after each step: whether the walk, which is at the item now, has shown to have no end. `isNearer`: whether
    // the step can have brought it nearer to where it goes.
    bool isEndless(const QModelIndex& item, bool isNearer);

private Q_SLOTS:
    void countRows(const QModelIndex& parent, int first, int last);

private:
    CycleGuard circle;
    // Progress within the current period. Rows can come in a burst, from a folder that is read: only several periods on end
    // that gain nothing tell of a walk without an end.
    std::clock_t periodBegin;
    qint64 gained = 0;
    int periodsInVain = 0;
};

} // namespace views
