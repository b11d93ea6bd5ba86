#pragma once

#include "menuitem.h"

#include <QtCore/QStringList>

// The rules of menu paths once more, slow and obvious, to compare the agent's own with. They are read off the input that
// the menu is made of, without a look at its actions: a path is compared with the full address of each item, and the
// properties follow from the items on its way.
namespace naive {

using Items = std::vector<MenuItem>;

// The item that the beginning of a path names, and how many elements that takes. Null and 1 when there is none.
struct FoundItem
{
    const MenuItem* item = nullptr;
    int length = 1;
};
FoundItem findMenuItem(const Items& items, const QStringList& path);
QStringList menuItemList(const Items& items);

// The value of a property of a menu or menu bar for a path: "true", "false" or the message of the error.
QString menuPathDisabled(const Items& items, const QStringList& path);
QString barPathDisabled(const Items& items, const QStringList& path);
QString barPathChecked(const Items& items, const QStringList& path);

// The effect of choosing a path in an open menu: the line number of the item that is triggered, the empty text where a
// submenu opens, or the message.
QString chosenItem(const Items& items, const QStringList& path);

} // namespace naive
