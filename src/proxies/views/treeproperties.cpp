#include "proxies/views/treeproperties.h"

#include "proxies/views/itemtext.h"
#include "proxies/views/treeitempath.h"

#include <QHeaderView>
#include <QTreeWidget>

namespace {

using Subject = ItemViewProperty::Subject;

const QTreeView& tree(const QAbstractItemView& view)
{
    return static_cast<const QTreeView&>(view);
}

QVariant columnTextList(const QAbstractItemView& view, const QModelIndex&)
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

QVariant currentPath(const QAbstractItemView& view, const QModelIndex&)
{
    return itemPathOf(tree(view), view.currentIndex());
}

QVariant columnCount(const QAbstractItemView& view, const QModelIndex&)
{
    return view.inherits("QTreeWidget") ? static_cast<const QTreeWidget&>(view).columnCount()
                                        : columnCountUnderRoot(view);
}

QVariant topLevelItemCount(const QAbstractItemView& view, const QModelIndex&)
{
    // A tree widget whose model the application has deleted does not stand the question.
    return view.model() && view.inherits("QTreeWidget") ? static_cast<const QTreeWidget&>(view).topLevelItemCount()
                                                        : rowCountUnderRoot(view);
}

QVariant pathList(const QAbstractItemView& view, const QModelIndex&)
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

const ItemViewProperty rows[] = {
    {"columnTextList", Subject::View, columnTextList},
    {"currentPath", Subject::View, currentPath},
    {"columnCount", Subject::View, columnCount},
    {"topLevelItemCount", Subject::View, topLevelItemCount},
    {"pathList", Subject::View, pathList},
    {"itemPath", Subject::Item, itemPath},
    {"itemIsEnabled", Subject::Item, itemIsEnabled},
    {"itemIsSelectable", Subject::Item, itemIsSelectable},
    {"itemIsSelected", Subject::Item, itemIsSelected},
    {"itemIsCheckable", Subject::Item, itemIsCheckable},
    {"itemIsChecked", Subject::Item, itemIsChecked},
    {"itemIsEnabled", Subject::Item, itemIsEnabled}, // twice in the list of names, which is intended
    {"itemIsExpandable", Subject::Item, itemIsExpandable},
    {"itemIsOpen", Subject::Item, itemIsOpen},
    {"itemTextList", Subject::Item, itemTextList},
};

} // namespace

const ItemViewProperties treeProperties(rows);
