#include "proxies/views/stqabstractitemview.h"

#include "compat/variant.h"
#include "proxies/views/itemaddress.h"
#include "proxies/views/itemarea.h"
#include "proxies/views/itemposition.h"
#include "proxies/views/itemproperties.h"

#include <QTreeView>
#include <QtCore/QPersistentModelIndex>

namespace {

const char invalidWidgetMessage[] = "Invalid Widget";
const char notTreeMessage[] = "Not a QTreeView";

struct SelectionCommand
{
    const char* text;
    QItemSelectionModel::SelectionFlag flags;
};

const SelectionCommand selectionCommands[] = {
    {"Select", QItemSelectionModel::Select},
    {"Deselect", QItemSelectionModel::Deselect},
    {"Toggle", QItemSelectionModel::Toggle},
    {"ClearAndSelect", QItemSelectionModel::ClearAndSelect},
    {"Clear", QItemSelectionModel::Clear},
};
const char scrollToCommand[] = "ScrollTo";

// The flags of a command; an unknown one selects nothing.
QItemSelectionModel::SelectionFlags selectionFlags(const QString& command)
{
    for (const SelectionCommand& row : selectionCommands) {
        if (command == QLatin1String(row.text))
            return row.flags;
    }
    return QItemSelectionModel::NoUpdate;
}

QItemSelectionModel::SelectionFlags behaviorFlags(QAbstractItemView::SelectionBehavior behavior)
{
    switch (behavior) {
    case QAbstractItemView::SelectRows:
        return QItemSelectionModel::Rows;
    case QAbstractItemView::SelectColumns:
        return QItemSelectionModel::Columns;
    case QAbstractItemView::SelectItems:
        break;
    }
    return QItemSelectionModel::NoUpdate;
}

QVariant columnCount(const QAbstractItemView& view, const views::ItemAddress& address)
{
    return view.model()->columnCount(address.index);
}

QVariant rowCount(const QAbstractItemView& view, const views::ItemAddress& address)
{
    return view.model()->rowCount(address.index);
}

QVariant itemIsSelected(const QAbstractItemView& view, const views::ItemAddress& address)
{
    return views::isSelected(view, address.index);
}

QVariant itemIsExpanded(const QAbstractItemView& view, const views::ItemAddress& address)
{
    const auto* tree = qobject_cast<const QTreeView*>(&view);
    if (!tree)
        proxy::raiseError(notTreeMessage);
    return tree->isExpanded(address.index);
}

QVariant itemData(const QAbstractItemView& view, const views::ItemAddress& address)
{
    if (address.index.isValid())
        return address.index.data(Qt::DisplayRole);
    if (address.isColumnHeader())
        return view.model()->headerData(address.column, Qt::Horizontal, Qt::DisplayRole);
    if (address.isRowHeader())
        return view.model()->headerData(address.row, Qt::Vertical, Qt::DisplayRole);
    return QVariant();
}

const proxy::PseudoProperty<const QAbstractItemView&, const views::ItemAddress&> properties[] = {
    {"columnCount", columnCount},
    {"rowCount", rowCount},
    {"itemIsSelected", itemIsSelected},
    {"itemIsExpanded", itemIsExpanded},
    {"itemData", itemData},
    {"itemPosition",
        [](const QAbstractItemView& view, const views::ItemAddress& address) -> QVariant {
            return itemPosition(view, address);
        }},
};

} // namespace

void STQAbstractItemView::activate(const QVariant& path, const QVariant& command)
{
    QAbstractItemView* view = modelledView();
    const QPersistentModelIndex index(resolveItemPath(compat::textOf(path)));
    view->scrollTo(index, QAbstractItemView::EnsureVisible);
    const QString text = compat::textOf(command);
    if (text == QLatin1String(scrollToCommand))
        return;
    view = modelledView(); // scrolling runs code of the application
    if (QItemSelectionModel* selection = view->selectionModel())
        selection->select(index, selectionFlags(text) | behaviorFlags(view->selectionBehavior()));
}

void STQAbstractItemView::lookForItem(const QVariant& path)
{
    resolveItemPath(compat::textOf(path));
}

STWidgetProxy::ItemArea STQAbstractItemView::showItem(const QVariant& item)
{
    const QString text = compat::textOf(item);
    const views::ItemAddress address = addressOf(text);
    if (address.isColumnHeader())
        return views::showSection(modelledView(), Qt::Horizontal, address.column, text);
    if (address.isRowHeader())
        return views::showSection(modelledView(), Qt::Vertical, address.row, text);
    return views::showItem(modelledView(), address.index, text);
}

STWidgetProxy::ItemState STQAbstractItemView::itemState(const QVariant& item)
{
    const views::ItemAddress address = addressOf(compat::textOf(item));
    if (address.isColumnHeader())
        return views::sectionState(modelledView(), Qt::Horizontal, address.column);
    if (address.isRowHeader())
        return views::sectionState(modelledView(), Qt::Vertical, address.row);
    return views::itemState(modelledView(), address.index);
}

QStringList STQAbstractItemView::pseudoPropertyNames()
{
    return proxy::namesOf(properties);
}

QVariant STQAbstractItemView::pseudoProperty(const char* name, const QVariant& argument)
{
    const QAbstractItemView* view = modelledView();
    // Read before the name is looked at: a bad argument is an error for every name.
    const views::ItemAddress address = addressOf(compat::textOf(argument));
    return proxy::valueOf(properties, name, *view, address);
}

QAbstractItemView* STQAbstractItemView::modelledView()
{
    auto* view = qobject_cast<QAbstractItemView*>(checkedWidget(nullptr));
    if (!view || !view->model())
        proxy::raiseError(invalidWidgetMessage);
    return view;
}

views::ItemAddress STQAbstractItemView::addressOf(const QString& text)
{
    views::ItemAddress address = {QModelIndex(), -1, -1};
    if (views::readHeaderAddress(*modelledView()->model(), text, address))
        return address;
    const QModelIndex index = resolveItemPath(text);
    return {index, index.row(), index.column()};
}

QModelIndex STQAbstractItemView::resolveItemPath(const QString& path)
{
    return views::indexAtPath(*modelledView()->model(), path);
}
