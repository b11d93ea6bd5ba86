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
    // Looks for the item that activate() would.
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
};
