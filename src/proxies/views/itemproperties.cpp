#include "proxies/views/itemproperties.h"

#include <QAbstractItemView>

QStringList ItemViewProperties::names() const
{
    QStringList names;
    for (const ItemViewProperty* property = first; property != end; ++property)
        names.append(QLatin1String(property->name));
    return names;
}

const ItemViewProperty* ItemViewProperties::find(const char* name) const
{
    for (const ItemViewProperty* property = first; property != end; ++property) {
        if (qstrcmp(property->name, name) == 0)
            return property;
    }
    return nullptr;
}

QVariant ItemViewProperties::read(
    const char* name, const QAbstractItemView& view, const std::function<QModelIndex()>& findItem) const
{
    const char itemPrefix[] = "item";
    const ItemViewProperty* property = find(name);
    if (property && property->subject == ItemViewProperty::Subject::View)
        return property->read(view, QModelIndex());
    if (qstrncmp(name, itemPrefix, qstrlen(itemPrefix)) != 0)
        return QVariant();
    const QModelIndex item = findItem();
    return property ? property->read(view, item) : QVariant();
}

QVariant itemIsEnabled(const QAbstractItemView&, const QModelIndex& item)
{
    return (item.flags() & Qt::ItemIsEnabled) == Qt::ItemIsEnabled;
}

QVariant itemIsSelectable(const QAbstractItemView&, const QModelIndex& item)
{
    return (item.flags() & Qt::ItemIsSelectable) == Qt::ItemIsSelectable;
}

QVariant itemIsSelected(const QAbstractItemView& view, const QModelIndex& item)
{
    return isSelected(view, item);
}

QVariant itemIsCheckable(const QAbstractItemView&, const QModelIndex& item)
{
    return (item.flags() & Qt::ItemIsUserCheckable) == Qt::ItemIsUserCheckable;
}

QVariant itemIsChecked(const QAbstractItemView&, const QModelIndex& item)
{
    return item.data(Qt::CheckStateRole).toInt() == Qt::Checked;
}

bool isSelected(const QAbstractItemView& view, const QModelIndex& item)
{
    const QItemSelectionModel* selection = view.selectionModel();
    return selection && item.isValid() && selection->isSelected(item);
}

int rowCountUnderRoot(const QAbstractItemView& view)
{
    return view.model() ? view.model()->rowCount(view.rootIndex()) : 0;
}

int columnCountUnderRoot(const QAbstractItemView& view)
{
    return view.model() ? view.model()->columnCount(view.rootIndex()) : 0;
}
