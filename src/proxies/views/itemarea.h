#pragma once

#include "proxy/stwidgetproxy.h"

#include <QtCore/QModelIndex>

class QAbstractItemView;

namespace views {

// Scroll the view to an item, or to a header's section, which opens the items above it in a tree, and return where it
// is. `name` is its name in messages. Raise an error if it is gone by then, is hidden, or stays out of sight.
STWidgetProxy::ItemArea showItem(QAbstractItemView* view, const QModelIndex& index, const QString& name);
STWidgetProxy::ItemArea showSection(
    QAbstractItemView* view, Qt::Orientation orientation, int section, const QString& name);

// Text and states of an item; none of an invalid index.
STWidgetProxy::ItemState itemState(QAbstractItemView* view, const QModelIndex& index);
// The same of a header's section. Raises an error where the view has no such header.
STWidgetProxy::ItemState sectionState(QAbstractItemView* view, Qt::Orientation orientation, int section);

} // namespace views
