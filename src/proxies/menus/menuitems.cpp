#include "proxies/menus/menuitems.h"

#include "compat/variant.h"
#include "proxy/sterror.h"
#include "proxy/stwidgetproxy.h"

#include <QAction>
#include <QMenu>

namespace menus {

namespace {

const QLatin1Char separator('/');
const QLatin1String indexPrefix("Item ");

QList<QAction*> countableItems(const QList<QAction*>& actions)
{
    QList<QAction*> items;
    for (QAction* action : actions) {
        if (action->isVisible() && !action->isSeparator())
            items.append(action);
    }
    return items;
}

QAction* itemAt(const QList<QAction*>& items, const QString& element)
{
    const int prefixLength = 5;
    bool ok = false;
    const int index = compat::toInt(element.mid(prefixLength), &ok);
    return ok && index >= 0 && index < items.size() ? items.at(index) : nullptr;
}

QAction* itemWithText(const QList<QAction*>& items, const QString& text)
{
    for (QAction* item : items) {
        if (menuItemText(item) == text)
            return item;
    }
    return nullptr;
}

// The item whose text is the path's first elements joined; the path then has that text as its first element.
QAction* itemWithJoinedText(const QList<QAction*>& items, QStringList& path)
{
    for (QAction* item : items) {
        const QString text = menuItemText(item);
        const int further = static_cast<int>(text.count(separator));
        if (path.size() <= further || QStringList(path.mid(0, further + 1)).join(QString(separator)) != text)
            continue;
        path = path.mid(further);
        path.first() = text;
        return item;
    }
    return nullptr;
}

// `open` holds the menus on the way down, so that one which contains itself is not entered again.
void appendEntries(QStringList& list, const QAction* item, const QString& path, QList<const QMenu*> open)
{
    const QMenu* submenu = item->menu();
    if (!submenu || open.contains(submenu)) {
        list.append(path);
        return;
    }
    open.append(submenu);
    int number = 0;
    const QList<QAction*> items = countableItems(submenu->actions());
    for (const QAction* entry : items) {
        ++number;
        const QString text = menuItemText(entry);
        const QString name = text.isEmpty() ? indexPrefix + QString::number(number) : text;
        appendEntries(list, entry, path + separator + name, open);
    }
}

} // namespace

QStringList splitMenuPath(const QString& path)
{
    // Deeper than any menu. A deeper path is kept as one element, which names no item either.
    const int maximumDepth = 1000;
    const QStringList elements = path.count(separator) < maximumDepth ? path.split(separator) : QStringList(path);
    if (elements.isEmpty())
        proxy::raiseError(invalidPathMessage);
    return elements;
}

QString menuItemText(const QAction* item)
{
    return item->isSeparator() ? QString() : STWidgetProxy::stripMnemonic(item->text()).simplified();
}

QAction* findMenuItem(const QList<QAction*>& actions, QStringList& path)
{
    if (path.isEmpty())
        return nullptr;
    const QList<QAction*> items = countableItems(actions);
    if (path.first().startsWith(indexPrefix))
        return itemAt(items, path.first());
    QAction* item = itemWithText(items, path.first());
    return item ? item : itemWithJoinedText(items, path);
}

const QAction* itemAtPath(const QList<QAction*>& actions, QStringList path)
{
    const QAction* item = findMenuItem(actions, path);
    path.removeFirst();
    while (!path.isEmpty() && item) {
        item = item->menu() ? findMenuItem(item->menu()->actions(), path) : nullptr;
        path.removeFirst();
    }
    return item;
}

QStringList menuItemList(const QList<QAction*>& actions)
{
    QStringList list;
    for (const QAction* action : actions)
        appendEntries(list, action, menuItemText(action), QList<const QMenu*>());
    return list;
}

} // namespace menus
