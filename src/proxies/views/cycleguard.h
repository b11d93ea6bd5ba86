#pragma once

#include <QtCore/QPersistentModelIndex>

namespace views {

// Detects that a walk through items runs in a circle, because the application moves the current item on its own. It
// remembers only one item, and takes a new one whenever the number of steps has doubled, so that a circle of any length
// comes back to it.
class CycleGuard
{
public:
    // Notes that the walk has reached an item, and returns whether it was there before.
    bool visitAndDetectCycle(const QModelIndex& item)
    {
        if (remembered.isValid() && remembered == item)
            return true;
        if (++steps == limit) {
            remembered = item;
            steps = 0;
            limit *= 2;
        }
        return false;
    }

private:
    QPersistentModelIndex remembered;
    qint64 steps = 0;
    qint64 limit = 1;
};

} // namespace views
