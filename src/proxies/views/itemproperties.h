#pragma once

#include <QtCore/QModelIndex>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <cstddef>
#include <functional>

class QAbstractItemView;

// A pseudo-property of an item view, or of one item that the query's argument names.
struct ItemViewProperty
{
    enum class Subject { View, Item };

    const char* name;
    Subject subject;
    // `item` is invalid for a property of the view.
    QVariant (*read)(const QAbstractItemView& view, const QModelIndex& item);
};

// The pseudo-properties of one kind of view, in the order in which they are listed.
class ItemViewProperties
{
public:
    template <std::size_t size>
    constexpr explicit ItemViewProperties(const ItemViewProperty (&table)[size])
        : first(table)
        , end(table + size)
    {
    }

    QStringList names() const;
    // Null when there is none of that name.
    const ItemViewProperty* find(const char* name) const;
    // The value, invalid for an unknown name. `findItem` looks up the item that the argument names and raises
    // its errors; it is called before the name is looked at for every name that begins with "item", known or
    // not.
    QVariant read(const char* name, const QAbstractItemView& view, const std::function<QModelIndex()>& findItem) const;

private:
    const ItemViewProperty* first;
    const ItemViewProperty* end;
};

// What list and tree views tell of an item, all bools.
QVariant itemIsEnabled(const QAbstractItemView& view, const QModelIndex& item);
QVariant itemIsSelectable(const QAbstractItemView& view, const QModelIndex& item);
QVariant itemIsSelected(const QAbstractItemView& view, const QModelIndex& item);
QVariant itemIsCheckable(const QAbstractItemView& view, const QModelIndex& item);
QVariant itemIsChecked(const QAbstractItemView& view, const QModelIndex& item);

// Whether the view's selection model counts the item as selected.
bool isSelected(const QAbstractItemView& view, const QModelIndex& item);
// Rows and columns of the view's model under the view's root, 0 without a model.
int rowCountUnderRoot(const QAbstractItemView& view);
int columnCountUnderRoot(const QAbstractItemView& view);
