#pragma once

#include "locate/items.h"

class QAbstractItemView;

namespace locate {

// The rows that are in sight in the view, with the columns that are not hidden.
Items rowsInSight(QAbstractItemView* view);

} // namespace locate
