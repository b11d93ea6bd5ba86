#pragma once

class QStandardItemModel;

/// Fills \a model with three levels: continents, countries and farms; the farms can be checked.
void fillRegions(QStandardItemModel& model);
