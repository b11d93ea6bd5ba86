#pragma once

#include "stage.h"

// Does one hostile thing, or none, in a handler of the sender. May destroy the sender when the place is a guarded one.
void doHarm(Stage& stage, QObject* sender, Place place);
