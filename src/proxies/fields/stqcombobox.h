#pragma once

#include "proxies/entryfield.h"

class QComboBox;

// Combo boxes.
class STQComboBox : public proxies::EntryField
{
public:
    // Selects an item with the arrow keys: a string is an item's text, the first that equals it, an integer
    // its index from 0. A combo box that is not editable does so in its list, and confirms with Return.
    // `option` is ignored. Raises an error when there is no such item.
    void activate(const QVariant& value, const QVariant& option) override;
    // The same, but looks after each arrow key where it has led: activate() counts items that the keys skip, and so chooses
    // another one behind them. A list that is open already is used. Raises an error when the keys do not lead to the item;
    // the list is closed then.
    void activateFound(const QVariant& value, const QVariant& option) override;
    // Looks for the item that activate() would, and whether a user could choose it.
    void lookForItem(const QVariant& value) override;
    // A string replaces the text of an editable combo box. Raises an error when it is not editable.
    void enter(const QVariant& value) override;
    // "itemList": the texts of all items.
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;

private:
    QComboBox* comboBox();
    int indexOf(const QVariant& value);
    void clickText();
    void clickForList();
    void move(int current, int index);
    // The row that the list, or without one the box, is at.
    int rowNow(const QWidget* popup);
    bool leaveEditedItem(int index);
    bool walkTo(int index, const QPointer<QWidget>& popup);
};
