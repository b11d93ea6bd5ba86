#pragma once

#include "proxies/views/itemviewproxy.h"

class QTreeView;

// Tree views. Items are named by tree item paths; see treeitempath.h.
class STQTreeView : public views::ItemViewProxy
{
public:
    // A text, one item path: makes the item current with the keyboard, then types the character in `option`,
    // a text. A list of texts selects all these items, as far as the selection mode allows it to keys.
    void activate(const QVariant& value, const QVariant& option) override;
    // Looks for the item that activate() would.
    void lookForItem(const QVariant& value) override;
    // A bool gives the current item that check state with the space key; a text "column:text" (0-based)
    // replaces the text of that column in the current row.
    void enter(const QVariant& value) override;
    // Goes to the current item's centre, visible or not; see ItemMouseCommand.
    void mouseAction(const QVariant& command) override;
    // Properties of the tree, and of an item by its path; "itemIsEnabled" is listed twice.
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;

protected:
    QModelIndex itemIndex(const QVariant& item) override;

private:
    QTreeView* treeView();
    // The item at the path. Raises "Invalid item path" or, for a hidden row or column, "item ... is hidden".
    QModelIndex visibleItem(const QString& path);
    void requireVisible(const QModelIndex& item);

    void ensureFocus();
    // Raises an error when the view's selection mode does not allow to select one item, or several.
    void requireSelectionMode(bool severalItems);
    void clearSelectionByKeys();
    void selectItems(const QStringList& paths);

    // Moves the current item to the target with keys only. Raises "item is not selectable" when they do not
    // lead there.
    void navigateTo(const QModelIndex& index);
    void requireReachable(const QModelIndex& target);
    bool isSettledOn(const QModelIndex& target);
    void walkToTop();
    void walkDownTo(const QPersistentModelIndex& target);
    void stepTowards(const QPersistentModelIndex& target);
    void makeCurrent(const QModelIndex& index);

    void enterCheckState(const QModelIndex& current, bool checked);
    void enterCellText(const QModelIndex& current, const QString& value);
    QModelIndex editableCell(const QString& columnText);
};
