#include "proxies/menus/stmenuproxy.h"

#include "compat/variant.h"
#include "compat/waiting.h"
#include "proxies/menus/menuitems.h"

#include <QAction>
#include <QMenu>

namespace {

const char alreadyCheckedMessage[] = "Item already checked";
const char notOpenedMessage[] = "The menu has not opened";

// Counts the slots that are connected to a signal, by QObject::receivers(), which is protected.
class Receivers : public QObject
{
public:
    static int of(const QObject* sender, const char* signal) { return (sender->*(&Receivers::receivers))(signal); }
};

bool mayChangeWhenItOpens(const QMenu* menu)
{
    return !menu->isVisible() && (menu->actions().isEmpty() || Receivers::of(menu, SIGNAL(aboutToShow())) > 0);
}

// The reason of the error for a missing first entry; empty for an empty path.
QString missingEntry(const QStringList& path)
{
    return path.isEmpty() ? QString() : proxy::missingItem(path.first());
}

// The first entry of the path in the menu. Raises an error when it is missing or disabled.
QAction* usableEntry(const QMenu* menu, QStringList& path)
{
    QAction* item = menus::findMenuItem(menu->actions(), path);
    if (!item)
        proxy::raiseNotYet(missingEntry(path), menus::invalidItemMessage);
    if (!item->isEnabled())
        proxy::raiseNotYet(proxy::disabledItem(path.first()), menus::disabledItemMessage);
    return item;
}

// The submenu in which the rest of the path continues. Raises an error when the item has none.
QMenu* submenuOf(const QAction* item, const QStringList& path)
{
    QMenu* submenu = item->menu();
    if (!submenu)
        proxy::raiseNotYet(missingEntry(path), menus::invalidItemMessage);
    return submenu;
}

} // namespace

QStringList STMenuProxy::checkedPath(const QVariant& value, const QVariant& option)
{
    if (compat::typeOf(value) != QMetaType::QString)
        typeError("string");
    if (option.isValid() && compat::typeOf(option) != QMetaType::Bool)
        typeError("bool, none");
    return menus::splitMenuPath(value.toString());
}

QStringList STMenuProxy::checkedPath(const QVariant& argument)
{
    return checkedPath(argument, QVariant());
}

STWidgetProxy::ItemState STMenuProxy::itemState(const QVariant& item)
{
    struct Row
    {
        const char* word;
        bool holds;
    };
    const QStringList path = checkedPath(item);
    const QAction* action = menus::itemAtPath(checkedWidget(nullptr)->actions(), path);
    if (!action)
        proxy::raiseError(menus::invalidItemMessage);
    const Row rows[] = {{"disabled", !action->isEnabled()}, {"checkable", action->isCheckable()},
        {"checked", action->isChecked()}, {"menu", action->menu() != nullptr}};
    ItemState state = {menus::menuItemText(action), QStringList()};
    for (const Row& row : rows) {
        if (row.holds)
            state.states.append(QLatin1String(row.word));
    }
    return state;
}

void STMenuProxy::chooseItem(
    QMenu* menu, const QStringList& path, const QVariant& checkState, const std::function<void()>& close)
{
    try {
        walk(menu, path, checkState);
    } catch (const STError& error) {
        close();
        if (error.message != QLatin1String(alreadyCheckedMessage))
            throw;
    }
}

void STMenuProxy::lookForEntry(const QMenu* menu, QStringList path)
{
    while (!mayChangeWhenItOpens(menu)) {
        const QAction* item = usableEntry(menu, path);
        path.removeFirst();
        if (path.isEmpty())
            return;
        menu = submenuOf(item, path);
    }
}

void STMenuProxy::walk(const QPointer<QMenu>& menu, QStringList path, const QVariant& checkState)
{
    if (!menu)
        proxy::raiseError(proxy::deadWidgetMessage);
    const QPointer<QAction> item(usableEntry(menu, path));
    highlight(menu, item);
    path.removeFirst();
    if (path.isEmpty())
        return trigger(item, checkState);
    const QPointer<QMenu> submenu(submenuOf(item, path));
    // Right, whatever the layout direction.
    keyClick(Qt::Key_Right, Qt::NoModifier);
    try {
        walk(submenu, path, checkState);
    } catch (const STError&) {
        pressEscape();
        throw;
    }
}

STWidgetProxy::ItemArea STMenuProxy::showInMenu(QMenu* menu, const QStringList& path, int openMenus)
{
    try {
        return walkByMouse(menu, path, openMenus);
    } catch (const STError&) {
        for (int i = 0; i < openMenus; ++i)
            pressEscape();
        throw;
    }
}

STWidgetProxy::ItemArea STMenuProxy::walkByMouse(QPointer<QMenu> menu, QStringList path, int& openMenus)
{
    for (;;) {
        if (!menu)
            proxy::raiseError(proxy::deadWidgetMessage);
        const QPointer<QAction> item(menus::findMenuItem(menu->actions(), path));
        if (!item)
            proxy::raiseNotYet(missingEntry(path), menus::invalidItemMessage);
        const QString name = path.takeFirst();
        const QRect rect = scrollToEntry(menu, item);
        if (path.isEmpty())
            return {menu.data(), rect, item->isEnabled()};
        if (!item->isEnabled())
            proxy::raiseNotYet(proxy::disabledItem(name), menus::disabledItemMessage);
        const QPointer<QMenu> submenu(item->menu());
        if (!submenu)
            proxy::raiseNotYet(missingEntry(path), menus::invalidItemMessage);
        if (!submenu->isVisible()) {
            clickOnTheWay(menu, rect);
            awaitMenu(submenu, name);
            ++openMenus;
        }
        menu = submenu;
    }
}

QRect STMenuProxy::scrollToEntry(const QPointer<QMenu>& menu, const QPointer<QAction>& item)
{
    if (!menu->rect().contains(menu->actionGeometry(item).center()))
        highlight(menu, item); // a menu that is higher than the screen scrolls to what the keys highlight
    if (!menu)
        proxy::raiseError(proxy::deadWidgetMessage);
    return item ? menu->actionGeometry(item).intersected(menu->rect()) : QRect();
}

void STMenuProxy::awaitMenu(const QPointer<QMenu>& menu, const QString& item)
{
    const int maximumMilliseconds = 1000;
    compat::processEventsUntil([&menu] { return !menu || menu->isVisible(); }, maximumMilliseconds);
    if (!menu)
        proxy::raiseError(proxy::deadWidgetMessage);
    if (!menu->isVisible())
        proxy::raiseNotYet(proxy::hiddenItem(item), notOpenedMessage);
}

void STMenuProxy::highlight(const QPointer<QMenu>& menu, const QPointer<QAction>& item)
{
    // More keys than items, since the application may move the highlight, too. An item that is not highlighted after
    // them is chosen nevertheless.
    const int maximumKeys = 10 * static_cast<int>(menu->actions().size());
    for (int keys = 0; keys < maximumKeys && menu->activeAction() != item; ++keys) {
        keyClick(Qt::Key_Down, Qt::NoModifier);
        if (!menu)
            proxy::raiseError(proxy::deadWidgetMessage);
        if (!item)
            proxy::raiseError(menus::invalidItemMessage);
    }
}

void STMenuProxy::trigger(const QAction* item, const QVariant& checkState)
{
    if (checkState.isValid()) {
        if (!item->isCheckable())
            proxy::raiseError(menus::notCheckableMessage);
        if (item->isChecked() == checkState.toBool())
            proxy::raiseError(alreadyCheckedMessage);
    }
    confirm();
}

void STMenuProxy::pressEscape()
{
    try {
        keyClick(Qt::Key_Escape, Qt::NoModifier);
    } catch (const STError&) {
        // The application has deleted the target: there is nothing left to close. The error that led here is
        // reported.
    }
}
