#pragma once

#include "proxy/stwidgetproxy.h"

#include <functional>

class QAction;
class QMenu;

// Base of menus and menu bars: choosing an item by its path with the keyboard, as a user does.
class STMenuProxy : public STWidgetProxy
{
public:
    // The state of the entry at a path, looked for in the menus as they are: one that is filled as it opens has no entries before.
    ItemState itemState(const QVariant& item) override;

protected:
    // The path of a call activate(value, option), as its elements. Raises the type error unless the value is
    // a string and the option, the check state that the item shall get, a bool or nothing.
    QStringList checkedPath(const QVariant& value, const QVariant& option);

    // The path of a property query with the argument. Raises the type error unless that is a string.
    QStringList checkedPath(const QVariant& argument);

    // Walks the path from an open menu and triggers its last item with the last input of the operation:
    // the application reacts when the command is over. When the item cannot be reached, or has the wanted
    // check state already, closes what the walk opened and calls `close`; an item that cannot be reached is
    // an error then.
    void chooseItem(
        QMenu* menu, const QStringList& path, const QVariant& checkState, const std::function<void()>& close);

    // Raises the error of that walk for an entry that is missing or disabled, as far as that shows while the menus are
    // closed: the application may fill or change a menu only when it opens.
    static void lookForEntry(const QMenu* menu, QStringList path);

    void pressEscape();

    // Opens the menus on the way to the last item of a path by clicks, beginning at a visible menu, and returns where
    // the item is. If there is no such item, presses Escape for each of them, and for the `openMenus` that were opened
    // before.
    ItemArea showInMenu(QMenu* menu, const QStringList& path, int openMenus);
    // Waits until the menu that a click opens is visible. Raises an error if it does not open.
    static void awaitMenu(const QPointer<QMenu>& menu, const QString& item);

private:
    ItemArea walkByMouse(QPointer<QMenu> menu, QStringList path, int& openMenus);
    QRect scrollToEntry(const QPointer<QMenu>& menu, const QPointer<QAction>& item);
    void walk(const QPointer<QMenu>& menu, QStringList path, const QVariant& checkState);
    void highlight(const QPointer<QMenu>& menu, const QPointer<QAction>& item);
    void trigger(const QAction* item, const QVariant& checkState);
};
