#pragma once

#include "proxies/views/itemproperties.h"

// The pseudo-properties of tree views.
extern const ItemViewProperties treeProperties;
