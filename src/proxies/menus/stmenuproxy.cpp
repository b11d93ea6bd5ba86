#include "proxies/menus/stmenuproxy.h"

#include "compat/variant.h"
#include "proxies/menus/menuitems.h"

#include <QAction>
#include <QMenu>

namespace {

const char invalidItemMessage[] = "Invalid item";
const char disabledMessage[] = "Item is disabled";
const char alreadyCheckedMessage[] = "Item already checked";
const char notCheckableMessage[] = "Item is not checkable";

// Why the entry that comes next may be there later. A path that ends at a menu names none.
QString missingEntry(const QStringList& path)
{
    return path.isEmpty() ? QString() : proxy::missingItem(path.first());
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

void STMenuProxy::walk(const QPointer<QMenu>& menu, QStringList path, const QVariant& checkState)
{
    if (!menu)
        proxy::raiseError(proxy::deadWidgetMessage);
    const QPointer<QAction> item(menus::findMenuItem(menu->actions(), path));
    if (!item)
        proxy::raiseNotYet(missingEntry(path), invalidItemMessage);
    if (!item->isEnabled())
        proxy::raiseNotYet(proxy::disabledItem(path.first()), disabledMessage);
    highlight(menu, item);
    path.removeFirst();
    if (path.isEmpty())
        return trigger(item, checkState);
    const QPointer<QMenu> submenu(item->menu());
    if (!submenu)
        proxy::raiseNotYet(missingEntry(path), invalidItemMessage);
    // Right, whatever the layout direction.
    keyClick(Qt::Key_Right, Qt::NoModifier);
    try {
        walk(submenu, path, checkState);
    } catch (const STError&) {
        pressEscape();
        throw;
    }
}

void STMenuProxy::highlight(const QPointer<QMenu>& menu, const QPointer<QAction>& item)
{
    // Generous, as the application may move the highlight too. An item that keeps refusing it is tried all
    // the same.
    const int maximumKeys = 10 * static_cast<int>(menu->actions().size());
    for (int keys = 0; keys < maximumKeys && menu->activeAction() != item; ++keys) {
        keyClick(Qt::Key_Down, Qt::NoModifier);
        if (!menu)
            proxy::raiseError(proxy::deadWidgetMessage);
        if (!item)
            proxy::raiseError(invalidItemMessage);
    }
}

void STMenuProxy::trigger(const QAction* item, const QVariant& checkState)
{
    if (checkState.isValid()) {
        if (!item->isCheckable())
            proxy::raiseError(notCheckableMessage);
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
        // Its target died of its own: there is nothing left to close. The error that led here is the one to
        // tell.
    }
}
