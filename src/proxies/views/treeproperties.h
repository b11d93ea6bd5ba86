#pragma once

#include <QtCore/QModelIndex>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <functional>

class QTreeView;

namespace views {

// The pseudo-properties of tree views: their names, and the value of one. For `findItem` see itemproperties.h.
QStringList treePropertyNames();
QVariant treeProperty(const char* name, const QTreeView& view, const std::function<QModelIndex()>& findItem);

} // namespace views
