#pragma once

#include <QtCore/QStringList>

#include <vector>

// An item of a menu, as the input describes it.
struct MenuItem
{
    int line = 0; // of the input, from 0
    QString text;
    bool isHidden = false;
    bool isDisabled = false;
    bool isCheckable = false;
    bool isChecked = false;
    bool isSeparator = false;
    std::vector<MenuItem> items; // of its submenu; without items it has none
};

// The menu of the lines. Each is an item: ">" for each level below the first, then signs in any order, and the text. "!"
// hidden, "#" disabled, "*" checkable, "+" checkable and checked, "-" a separator. An item with items below it has them
// as its submenu.
std::vector<MenuItem> menuOf(const QStringList& lines);
