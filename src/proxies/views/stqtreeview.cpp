#include "proxies/views/stqtreeview.h"

#include "compat/variant.h"
#include "proxies/views/itemproperties.h"
#include "proxies/views/itemtext.h"
#include "proxies/views/sections.h"
#include "proxies/views/treeitempath.h"
#include "proxies/views/treeproperties.h"
#include "proxy/textparts.h"

#include <QTreeView>

namespace {

const char missingPathMessage[] = "Missing item path";
const char invalidPathMessage[] = "Invalid item path";
const char hiddenMessage[] = "item \"%s\" is hidden";
const char notSelectableViewMessage[] = "list view is not selectable";
const char singleSelectionMessage[] = "selection of more than one item is not possible in single selection mode";
const char syntaxMessage[] = "Syntax Error, format \"%%d:%%s\" expected";
const char columnRangeMessage[] = "Invalid column %d is out of range [0, %d]";
const char notEditableMessage[] = "Item at column %d is not editable";

// The fourth letter is the replacement character: that is what tests compare with, as is "list view".
QString noFocusMessage()
{
    return QLatin1String("Oops, can") + QChar(QChar::ReplacementCharacter)
        + QLatin1String("t set the focus to the list view");
}

// How often a user presses space at an item in that state.
struct SpacePresses
{
    int state;
    int toCheck;
    int toUncheck;
};

const SpacePresses spacePresses[] = {
    {Qt::Unchecked, 1, 0},
    {Qt::PartiallyChecked, 1, 2},
    {Qt::Checked, 0, 1},
};

int pressesFor(int state, bool checked)
{
    for (const SpacePresses& presses : spacePresses) {
        if (presses.state == state)
            return checked ? presses.toCheck : presses.toUncheck;
    }
    return 0;
}

} // namespace

void STQTreeView::activate(const QVariant& value, const QVariant& option)
{
    const bool severalItems = compat::typeOf(value) == QMetaType::QStringList;
    if (!severalItems && compat::typeOf(value) != QMetaType::QString)
        typeError("string, string list");
    const QString key = terminatingKey(option);
    ensureFocus();
    requireSelectionMode(severalItems);
    if (treeView()->selectionMode() == QAbstractItemView::MultiSelection)
        clearSelectionByKeys();
    if (severalItems)
        return selectItems(value.toStringList());
    navigateTo(visibleItem(value.toString()));
    typeTerminatingKey(key);
}

// A list of items is not looked for before the walk: selecting one of them can make the application add the others.
void STQTreeView::lookForItem(const QVariant& value)
{
    requireSelectionMode(false);
    if (compat::typeOf(value) == QMetaType::QString)
        requireReachable(visibleItem(value.toString()));
}

void STQTreeView::ensureFocus()
{
    keepKeysInView();
    if (!treeView()->hasFocus())
        takeFocusByKey(noFocusMessage());
}

void STQTreeView::requireSelectionMode(bool severalItems)
{
    const QAbstractItemView::SelectionMode mode = treeView()->selectionMode();
    if (mode == QAbstractItemView::NoSelection)
        proxy::raiseError(notSelectableViewMessage);
    if (mode == QAbstractItemView::SingleSelection && severalItems)
        proxy::raiseError(singleSelectionMessage);
}

void STQTreeView::clearSelectionByKeys()
{
    QList<QPersistentModelIndex> selected;
    if (const QItemSelectionModel* selection = treeView()->selectionModel()) {
        const QModelIndexList indexes = selection->selectedIndexes();
        for (const QModelIndex& index : indexes)
            selected.append(index);
    }
    for (const QPersistentModelIndex& index : selected) {
        // Space on a row's first cell clears the row's other cells too: pressed again, it would select the
        // row anew.
        if (!views::isSelected(*treeView(), index))
            continue;
        navigateTo(index);
        keyClick(Qt::Key_Space, Qt::NoModifier);
    }
}

void STQTreeView::selectItems(const QStringList& paths)
{
    for (int i = 0; i < paths.size(); ++i) {
        const QPersistentModelIndex item(visibleItem(paths.at(i)));
        navigateTo(item);
        const QTreeView* view = treeView();
        if (views::isSelected(*view, item))
            continue;
        const bool adds = i > 0 && view->selectionMode() != QAbstractItemView::MultiSelection;
        keyClick(Qt::Key_Space, adds ? Qt::ControlModifier : Qt::NoModifier);
    }
}

void STQTreeView::enter(const QVariant& value)
{
    const bool checks = compat::typeOf(value) == QMetaType::Bool;
    if (!checks && compat::typeOf(value) != QMetaType::QString)
        typeError("bool string");
    const QModelIndex current = requiredCurrentIndex();
    requireVisible(current);
    if (checks)
        enterCheckState(current, value.toBool());
    else
        enterCellText(current, value.toString());
}

void STQTreeView::enterCheckState(const QModelIndex& current, bool checked)
{
    requireCheckable(current);
    const int presses = pressesFor(current.data(Qt::CheckStateRole).toInt(), checked);
    if (presses == 0)
        return;
    const QPersistentModelIndex item(current);
    ensureFocus();
    navigateTo(item);
    stopProcessingEvents();
    for (int i = 0; i < presses; ++i)
        keyClick(Qt::Key_Space, Qt::NoModifier);
}

void STQTreeView::enterCellText(const QModelIndex& current, const QString& value)
{
    const QPersistentModelIndex item(current);
    ensureFocus();
    navigateTo(item);
    const QChar separator = QLatin1Char(':');
    makeCurrent(editableCell(proxy::firstParts(value, separator, 1).first()));
    openEditor();
    keyClick(Qt::Key_Backspace, Qt::NoModifier);
    const int separatorIndex = static_cast<int>(value.indexOf(separator));
    typeText(separatorIndex < 0 ? QString() : value.mid(separatorIndex + 1));
    commitEditor();
}

QModelIndex STQTreeView::editableCell(const QString& columnText)
{
    bool ok = false;
    const int column = compat::toInt(columnText, &ok);
    if (!ok)
        proxy::raiseError(syntaxMessage);
    const QTreeView* view = treeView();
    const int columns = views::columnCountUnderRoot(*view);
    if (column >= columns)
        proxy::raiseError(columnRangeMessage, column, columns - 1);
    const QModelIndex current = view->currentIndex();
    const QModelIndex cell = views::cellAt(view->model(), current.row(), column, current.parent());
    if (!cell.isValid() || !(cell.flags() & Qt::ItemIsEditable))
        proxy::raiseError(notEditableMessage, column);
    return cell;
}

void STQTreeView::mouseAction(const QVariant& command)
{
    playMouseAtCurrentItem(command, Visibility::Ignored);
}

QModelIndex STQTreeView::itemIndex(const QVariant& item)
{
    if (compat::typeOf(item) != QMetaType::QString)
        typeError("string");
    return visibleItem(item.toString());
}

QStringList STQTreeView::pseudoPropertyNames()
{
    return views::treePropertyNames();
}

QVariant STQTreeView::pseudoProperty(const char* name, const QVariant& argument)
{
    return views::treeProperty(name, *treeView(), [&] {
        if (!argument.isValid())
            proxy::raiseError(missingPathMessage);
        if (compat::typeOf(argument) != QMetaType::QString)
            typeError("string");
        return visibleItem(argument.toString());
    });
}

QTreeView* STQTreeView::treeView()
{
    return static_cast<QTreeView*>(checkedWidget("QTreeView"));
}

QModelIndex STQTreeView::visibleItem(const QString& path)
{
    const QModelIndex item = views::findItem(*treeView(), path);
    if (!item.isValid())
        proxy::raiseNotYet(proxy::missingItem(path), invalidPathMessage);
    requireVisible(item);
    return item;
}

void STQTreeView::requireVisible(const QModelIndex& item)
{
    const QTreeView* view = treeView();
    if (view->isRowHidden(item.row(), item.parent()) || view->isColumnHidden(item.column())) {
        const QString path = views::itemPathOf(*view, item);
        proxy::raiseNotYet(proxy::hiddenItem(path), hiddenMessage, path);
    }
}
