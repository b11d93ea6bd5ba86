#include "proxies/views/treeproperties.h"

#include "proxies/views/itemproperties.h"
#include "proxies/views/itemtext.h"
#include "proxies/views/sections.h"
#include "proxies/views/treeitempath.h"

#include <QHeaderView>
#include <QTreeWidget>

namespace views {

namespace {

const QTreeView& tree(const QAbstractItemView& view)
{
    return static_cast<const QTreeView&>(view);
}

QVariant columnTextList(const QAbstractItemView& view)
{
    const QHeaderView* header = tree(view).header();
    QStringList texts;
    for (int position = 0; view.model() && position < header->count(); ++position) {
        const int section = header->logicalIndex(position);
        if (!header->isSectionHidden(section))
            texts.append(headerText(*view.model(), section, Qt::Horizontal));
    }
    return texts;
}

QVariant currentPath(const QAbstractItemView& view)
{
    return itemPathOf(tree(view), view.currentIndex());
}

QVariant columnCount(const QAbstractItemView& view)
{
    return view.inherits("QTreeWidget") ? static_cast<const QTreeWidget&>(view).columnCount()
                                        : columnCountUnderRoot(view);
}

QVariant topLevelItemCount(const QAbstractItemView& view)
{
    // topLevelItemCount() crashes where the application has deleted the tree widget's model.
    return view.model() && view.inherits("QTreeWidget") ? static_cast<const QTreeWidget&>(view).topLevelItemCount()
                                                        : rowCountUnderRoot(view);
}

QVariant pathList(const QAbstractItemView& view)
{
    return treeItemPaths(tree(view));
}

QVariant itemPath(const QAbstractItemView& view, const QModelIndex& item)
{
    return itemPathOf(tree(view), item);
}

QVariant itemIsExpandable(const QAbstractItemView& view, const QModelIndex& item)
{
    return tree(view).itemsExpandable() && view.model()->rowCount(item) > 0;
}

QVariant itemIsOpen(const QAbstractItemView& view, const QModelIndex& item)
{
    return tree(view).isExpanded(item);
}

QVariant itemTextList(const QAbstractItemView& view, const QModelIndex& item)
{
    QStringList texts;
    for (int column = 0, columns = view.model()->columnCount(item.parent()); column < columns; ++column) {
        if (!tree(view).isColumnHidden(column))
            texts.append(displayText(item.sibling(item.row(), column)));
    }
    return texts;
}

const ViewProperty viewProperties[] = {
    {"columnTextList", columnTextList},
    {"currentPath", currentPath},
    {"columnCount", columnCount},
    {"topLevelItemCount", topLevelItemCount},
    {"pathList", pathList},
};

const ItemProperty itemProperties[] = {
    {"itemPath", itemPath},
    {"itemIsEnabled", itemIsEnabled},
    {"itemIsSelectable", itemIsSelectable},
    {"itemIsSelected", itemIsSelected},
    {"itemIsCheckable", itemIsCheckable},
    {"itemIsChecked", itemIsChecked},
    {"itemIsEnabled", itemIsEnabled}, // listed twice: tests compare the whole list of names
    {"itemIsExpandable", itemIsExpandable},
    {"itemIsOpen", itemIsOpen},
    {"itemTextList", itemTextList},
};

} // namespace

QStringList treePropertyNames()
{
    return proxy::namesOf(viewProperties) + proxy::namesOf(itemProperties);
}

QVariant treeProperty(const char* name, const QTreeView& view, const std::function<QModelIndex()>& findItem)
{
    return propertyValue(viewProperties, itemProperties, name, view, findItem);
}

} // namespace views
