#include "proxies/menus/stqmenu.h"

#include "proxies/menus/menuitems.h"

#include <QAction>
#include <QApplication>
#include <QMenu>

namespace {

const char noFocusMessage[] = "No focus";
const char unreachableMessage[] = "Could not reach last item of path";

} // namespace

const proxy::PseudoProperty<STQMenu&, const QVariant&> STQMenu::pseudoProperties[] = {
    {"itemList",
        [](STQMenu& menu, const QVariant&) -> QVariant {
            return menus::menuItemList(menu.checkedWidget("QMenu")->actions());
        }},
    {"pathDisabled",
        [](STQMenu& menu, const QVariant& argument) -> QVariant {
            return menu.pathDisabled(menu.checkedPath(argument));
        }},
};

void STQMenu::activate(const QVariant& value, const QVariant& option)
{
    const QStringList path = checkedPath(value, option);
    if (QApplication::activePopupWidget() != checkedWidget("QMenu"))
        proxy::raiseError(noFocusMessage);
    keyClick(Qt::Key_Down, Qt::NoModifier);
    chooseItem(static_cast<QMenu*>(checkedWidget("QMenu")), path, option, [this] { pressEscape(); });
}

void STQMenu::lookForItem(const QVariant& value)
{
    const auto* menu = static_cast<const QMenu*>(checkedWidget("QMenu"));
    if (menu == QApplication::activePopupWidget())
        lookForEntry(menu, checkedPath(value));
}

STWidgetProxy::ItemArea STQMenu::showItem(const QVariant& item)
{
    const QStringList path = checkedPath(item);
    return showInMenu(static_cast<QMenu*>(checkedWidget("QMenu")), path, 0);
}

QStringList STQMenu::pseudoPropertyNames()
{
    return proxy::namesOf(pseudoProperties);
}

QVariant STQMenu::pseudoProperty(const char* name, const QVariant& argument)
{
    return proxy::valueOf(pseudoProperties, name, *this, argument);
}

bool STQMenu::pathDisabled(QStringList path)
{
    const QAction* item = menus::findMenuItem(checkedWidget("QMenu")->actions(), path);
    path.removeFirst();
    // The walk goes on below a disabled item of the first level, and ends at one on a deeper level: tests rely on both.
    while (!path.isEmpty() && item && item->menu()) {
        item = menus::findMenuItem(item->menu()->actions(), path);
        path.removeFirst();
        if (item && !item->isEnabled())
            break;
    }
    if (!path.isEmpty() || !item)
        proxy::raiseError(unreachableMessage);
    return !item->isEnabled();
}
