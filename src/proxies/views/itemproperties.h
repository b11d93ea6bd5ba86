#pragma once

#include "proxy/pseudoproperties.h"

#include <QtCore/QModelIndex>

#include <cstddef>
#include <functional>

class QAbstractItemView;

namespace views {

// A pseudo-property of an item view, and one of an item that the query's argument names.
using ViewProperty = proxy::PseudoProperty<const QAbstractItemView&>;
using ItemProperty = proxy::PseudoProperty<const QAbstractItemView&, const QModelIndex&>;

// Whether the name begins with "item": then the argument is checked even when there is no such property.
bool isItemName(const char* name);

// The value of a property of the view or of an item, invalid for an unknown name. `findItem` looks up the item that the
// argument names and raises its errors. It is called, before the name is looked up, for every name that begins with
// "item" and is no property of the view, also for an unknown one.
template <std::size_t viewRows, std::size_t itemRows>
QVariant propertyValue(const ViewProperty (&ofView)[viewRows], const ItemProperty (&ofItem)[itemRows], const char* name,
    const QAbstractItemView& view, const std::function<QModelIndex()>& findItem)
{
    if (proxy::rowOf(ofView, name))
        return proxy::valueOf(ofView, name, view);
    return isItemName(name) ? proxy::valueOf(ofItem, name, view, findItem()) : QVariant();
}

// Properties of an item in list and tree views, all of them bools.
QVariant itemIsEnabled(const QAbstractItemView& view, const QModelIndex& item);
QVariant itemIsSelectable(const QAbstractItemView& view, const QModelIndex& item);
QVariant itemIsSelected(const QAbstractItemView& view, const QModelIndex& item);
QVariant itemIsCheckable(const QAbstractItemView& view, const QModelIndex& item);
QVariant itemIsChecked(const QAbstractItemView& view, const QModelIndex& item);

// Whether the view's selection model counts the item as selected.
bool isSelected(const QAbstractItemView& view, const QModelIndex& item);

} // namespace views
