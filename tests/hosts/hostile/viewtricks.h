#pragma once

#include "stage.h"

class QAbstractItemView;

// Tricks that any application can play on an item view and its model: change, replace, reset, drop, destroy it, and the same for its
// selection model, editors and sections. (Not: destroy the selection model, without which views cannot paint.)
void addViewTricks(Stage& stage, QAbstractItemView* view, int depth);

// Gives a view a new hostile model, owned by the view.
void setHostileModel(Stage& stage, QAbstractItemView* view, int depth);
// Destroys the model of a view, where Qt stands that.
void destroyModelOf(QAbstractItemView* view);
