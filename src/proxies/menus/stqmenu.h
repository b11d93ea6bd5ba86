#pragma once

#include "proxies/menus/stmenuproxy.h"
#include "proxy/pseudoproperties.h"

// Pop-up menus.
class STQMenu : public STMenuProxy
{
public:
    // The path of an item of the menu, which must be the active popup: chooses it with the keyboard. With a
    // bool option only if the item is not in that check state yet.
    void activate(const QVariant& value, const QVariant& option) override;
    // Looks for the item that activate() would.
    void lookForItem(const QVariant& value) override;
    // The item at a path, in a menu that is open.
    ItemArea showItem(const QVariant& item) override;
    // "itemList": the paths of all items. "pathDisabled": whether the item at a path, the argument, is
    // disabled. Neither needs the menu to be open.
    QStringList pseudoPropertyNames() override;
    QVariant pseudoProperty(const char* name, const QVariant& argument) override;

private:
    static const proxy::PseudoProperty<STQMenu&, const QVariant&> pseudoProperties[2];

    bool pathDisabled(QStringList path);
};
