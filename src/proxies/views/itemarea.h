#pragma once

#include "proxy/stwidgetproxy.h"

#include <QtCore/QModelIndex>

class QAbstractItemView;

namespace views {

// Where an item or a header's section is, once the view is scrolled to it, which opens the items above it in a tree.
// `name` is how messages call it. They raise an error where it is gone by then, is hidden, or stays out of sight.
STWidgetProxy::ItemArea itemArea(QAbstractItemView* view, const QModelIndex& index, const QString& name);
STWidgetProxy::ItemArea sectionArea(
    QAbstractItemView* view, Qt::Orientation orientation, int section, const QString& name);

// Text and states of an item; none of an invalid index.
STWidgetProxy::ItemState itemState(QAbstractItemView* view, const QModelIndex& index);
// The same of a header's section. Raises an error where the view has no such header.
STWidgetProxy::ItemState sectionState(QAbstractItemView* view, Qt::Orientation orientation, int section);

} // namespace views
