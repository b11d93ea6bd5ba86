#pragma once

#include "stage.h"

class QAbstractItemView;

// What any application can do to an item view and its model: change, replace, reset, drop, destroy it, its selection
// model, its editors, its header sections.
void addViewTricks(Stage& stage, QAbstractItemView* view, int depth);

// Gives a view a new hostile model, owned by the view.
void setHostileModel(Stage& stage, QAbstractItemView* view, int depth);
