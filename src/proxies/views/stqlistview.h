#pragma once

#include "proxies/views/itemviewproxy.h"

class QListView;

// List views. Items are rows under the view's root, named by the text in the view's model column, or by their
// 0-based number. By text only visible rows are found, the first one of several; by number all.
class STQListView : public views::ItemViewProxy
{
public:
    // A text or an int: makes that item current with the arrow keys, then types the character in `option`, a
    // text. The character is not typed when the first Up already reached the row.
    void activate(const QVariant& value, const QVariant& option) override;
    // Looks for the item that activate() would.
    void lookForItem(const QVariant& value) override;
    // A bool gives the current item that check state with the space key; a text replaces its text in its
    // editor.
    void enter(const QVariant& value) override;
    // Goes to the current item's centre; see ItemMouseCommand.
    void mouseAction(const QVariant& command) override;
    // "rowCount", "itemList", "currentItemRect", and by an item's text "itemIsEnabled" and so on.
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;

protected:
    QModelIndex itemIndex(const QVariant& item) override;

private:
    QListView* listView();
    // The item with the text. Raises "activate, QListView unknown item ...".
    QModelIndex findItem(const QString& text);
    void requireItemType(const QVariant& value);
    int rowOf(const QVariant& value);
    // Whether the walk had to go further than the Up key with which it begins.
    bool walkTo(int row);
    bool needsCheckStateChange(const QModelIndex& item, bool checked);
};
