#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

class QAction;

namespace menus {

// Menu paths: the texts of items, outermost first, joined by "/". Menus and menu bars share these rules and messages.

const char invalidPathMessage[] = "Invalid menu path";
const char invalidItemMessage[] = "Invalid item";
const char disabledItemMessage[] = "Item is disabled";
const char notCheckableMessage[] = "Item is not checkable";

// The path's elements, empty ones kept. Raises "Invalid menu path" when there is none.
QStringList splitMenuPath(const QString& path);

// The text by which a path names an item: without its first "&", its white space simplified; null for a
// separator.
QString menuItemText(const QAction* item);

// The item that the path's first element names among the actions of one menu, null when there is none. Only
// visible actions that are no separators count. "Item n" is the item number n, from 0, whatever the texts. An
// item whose own text contains "/" takes several elements: they become one, the first, so that one element
// always is one item.
QAction* findMenuItem(const QList<QAction*>& actions, QStringList& path);

// The item at the end of a path from those actions, looked for in the menus as they are: null when there is none, or one on
// the way has no submenu.
const QAction* itemAtPath(const QList<QAction*>& actions, QStringList path);

// The paths of all items below the actions. On the first level every action has an entry, hidden ones too,
// and a null one for a separator. Below it, an item without a text is "Item n", n counting from 1, although
// paths count it from 0: scripts compare the list as it is.
QStringList menuItemList(const QList<QAction*>& actions);

} // namespace menus
