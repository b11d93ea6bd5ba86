#pragma once

#include "proxies/itemproperties.h"

// The pseudo-properties of tree views.
extern const ItemViewProperties treeProperties;
