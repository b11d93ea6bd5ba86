#include "proxies/views/stqlistview.h"

#include "compat/variant.h"
#include "proxies/views/itemproperties.h"
#include "proxies/views/itemtext.h"
#include "proxies/views/sections.h"

#include <QListWidget>

namespace {

const char unknownItemMessage[] = "activate, QListView unknown item %s";
const char invalidIndexMessage[] = "activate, QListView invalid index %d";
const char noFocusMessage[] = "Oops, can not set the focus to the list view";
const char notEditableMessage[] = "Item is not editable";
const char missingItemMessage[] = "Missing item";

QModelIndex itemInRow(const QListView& view, int row)
{
    return view.model()->index(row, view.modelColumn(), view.rootIndex());
}

QVariant rowCount(const QAbstractItemView& view)
{
    return view.inherits("QListWidget") ? static_cast<const QListWidget&>(view).count()
                                        : views::rowCountUnderRoot(view);
}

QVariant itemList(const QAbstractItemView& view)
{
    const auto& list = static_cast<const QListView&>(view);
    QStringList texts;
    for (int row = 0, rows = views::rowCountUnderRoot(list); row < rows; ++row) {
        if (!list.isRowHidden(row))
            texts.append(views::displayText(itemInRow(list, row)));
    }
    return texts;
}

const views::ViewProperty viewProperties[] = {
    {"rowCount", rowCount},
    {"itemList", itemList},
    {"currentItemRect", [](const QAbstractItemView& view) -> QVariant { return views::currentItemRect(view); }},
};

const views::ItemProperty itemProperties[] = {
    {"itemIsEnabled", views::itemIsEnabled},
    {"itemIsSelectable", views::itemIsSelectable},
    {"itemIsSelected", views::itemIsSelected},
    {"itemIsCheckable", views::itemIsCheckable},
    {"itemIsChecked", views::itemIsChecked},
};

} // namespace

void STQListView::activate(const QVariant& value, const QVariant& option)
{
    requireItemType(value);
    const QString key = terminatingKey(option);
    if (walkTo(rowOf(value)))
        typeTerminatingKey(key);
}

void STQListView::lookForItem(const QVariant& value)
{
    requireItemType(value);
    const int row = rowOf(value);
    if (listView()->isRowHidden(row))
        proxy::raiseNotYet(proxy::hiddenItem(compat::textOf(value)), invalidIndexMessage, row);
    requireEnabled(itemInRow(*listView(), row), value);
}

void STQListView::requireItemType(const QVariant& value)
{
    const int type = compat::typeOf(value);
    if (type != QMetaType::QString && type != QMetaType::Int)
        typeError("String, int");
}

int STQListView::rowOf(const QVariant& value)
{
    if (compat::typeOf(value) == QMetaType::QString)
        return findItem(value.toString()).row();
    const int row = value.toInt();
    if (row < 0 || row >= views::rowCountUnderRoot(*listView()))
        proxy::raiseNotYet(proxy::missingItem(row), invalidIndexMessage, row);
    return row;
}

bool STQListView::walkTo(int row)
{
    const views::ItemPlace place(*listView(), row, listView()->modelColumn());
    takeFocusByKey(QLatin1String(noFocusMessage));
    const int current = listView()->currentIndex().row();
    if (current == place.row())
        return false;
    pressUntil(Axis::Rows, place, place.row() > current ? Qt::Key_Down : Qt::Key_Up, Qt::NoModifier);
    return true;
}

void STQListView::enter(const QVariant& value)
{
    const bool checks = compat::typeOf(value) == QMetaType::Bool;
    if (!checks && compat::typeOf(value) != QMetaType::QString)
        typeError("bool string");
    const QModelIndex current = requiredCurrentIndex();
    if (checks && !needsCheckStateChange(current, value.toBool()))
        return;
    if (!checks && !(current.flags() & Qt::ItemIsEditable))
        proxy::raiseError(notEditableMessage);
    walkTo(current.row());
    if (!checks)
        return replaceTextInEditor(value.toString());
    stopProcessingEvents();
    keyClick(Qt::Key_Space, Qt::NoModifier);
}

bool STQListView::needsCheckStateChange(const QModelIndex& item, bool checked)
{
    requireCheckable(item);
    return item.data(Qt::CheckStateRole).toInt() != (checked ? Qt::Checked : Qt::Unchecked);
}

void STQListView::mouseAction(const QVariant& command)
{
    playMouseAtCurrentItem(command, Visibility::Required);
}

QModelIndex STQListView::itemIndex(const QVariant& item)
{
    const int type = compat::typeOf(item);
    if (type != QMetaType::QString && type != QMetaType::Int)
        typeError("String, int");
    return itemInRow(*listView(), rowOf(item));
}

QStringList STQListView::pseudoPropertyNames()
{
    return proxy::namesOf(viewProperties) + proxy::namesOf(itemProperties);
}

QVariant STQListView::pseudoProperty(const char* name, const QVariant& argument)
{
    return views::propertyValue(viewProperties, itemProperties, name, *listView(), [&] {
        if (!argument.isValid())
            typeError("string");
        const QString text = compat::textOf(argument);
        if (text.isEmpty())
            proxy::raiseError(missingItemMessage);
        return findItem(text);
    });
}

QListView* STQListView::listView()
{
    return static_cast<QListView*>(checkedWidget("QListView"));
}

QModelIndex STQListView::findItem(const QString& text)
{
    const QListView* view = listView();
    for (int row = 0, rows = views::rowCountUnderRoot(*view); row < rows; ++row) {
        const QModelIndex item = itemInRow(*view, row);
        if (item.isValid() && views::displayText(item) == text && !view->isRowHidden(row))
            return item;
    }
    proxy::raiseNotYet(proxy::missingItem(text), unknownItemMessage, text);
}
