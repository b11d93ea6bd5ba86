#pragma once

#include "proxies/menus/stmenuproxy.h"
#include "proxy/pseudoproperties.h"

class QAction;
class QMenuBar;

// Menu bars.
class STQMenuBar : public STMenuProxy
{
public:
    // The path of an item, from a title of the bar: opens that menu and chooses the item with the keyboard.
    // With a bool option only if the item is not in that check state yet.
    void activate(const QVariant& value, const QVariant& option) override;
    // Looks for the item that activate() would.
    void lookForItem(const QVariant& value) override;
    // A title, or the item at a path: then the menus on the way are open and stay so.
    ItemArea showItem(const QVariant& item) override;
    // "itemList": the paths of all items. "pathChecked", "pathDisabled": whether the item at a path, the
    // argument, is checked or disabled. No menu is opened for them.
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;

private:
    static const proxy::PseudoProperty<STQMenuBar&, const QVariant&> pseudoProperties[3];

    QMenuBar* menuBar();
    // Raises "Invalid menu path" unless the path begins with a title that opens a menu.
    QAction* requiredTitle(QStringList& path);
    void openMenu(const QPointer<QAction>& title);
    void openByMouse(const QPointer<QAction>& title, const QString& name);
    // Closes the title's menu without choosing, and returns the keyboard to the widget that had it before.
    void closeMenu(const QPointer<QWidget>& bar, const QPointer<QWidget>& focus);
    bool pathChecked(QStringList path);
    bool pathDisabled(QStringList path);
};
