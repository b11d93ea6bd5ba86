#include "naivemenus.h"

#include "fuzzing.h"

#include <QAction>
#include <QMenu>

namespace naive {

namespace {

QString itemText(const QAction* action)
{
    if (action->isSeparator())
        return QString();
    QString text = action->text();
    const auto mnemonic = text.indexOf(QLatin1Char('&'));
    if (mnemonic >= 0)
        text.remove(mnemonic, 1);
    return text.simplified();
}

QList<QAction*> countable(const QList<QAction*>& actions)
{
    QList<QAction*> items;
    for (QAction* action : actions) {
        if (action->isVisible() && !action->isSeparator())
            items.append(action);
    }
    return items;
}

QString boolText(bool value)
{
    return QLatin1String(value ? "true" : "false");
}

QList<QAction*> below(const QAction* item)
{
    return item->menu()->actions();
}

// The element that the agent's messages name: the item's whole text where it takes several elements.
QString element(const QAction* item, const QString& first)
{
    return item && !first.startsWith(QLatin1String("Item ")) ? itemText(item) : first;
}

void appendItems(QStringList& list, const QAction* action, const QString& path)
{
    if (!action->menu()) {
        list.append(path);
        return;
    }
    int number = 1;
    const QList<QAction*> items = countable(below(action));
    for (const QAction* item : items) {
        const QString text = itemText(item);
        const QString name = text.isEmpty() ? QString::fromLatin1("Item %1").arg(number) : text;
        appendItems(list, item, path + QLatin1Char('/') + name);
        ++number;
    }
}

} // namespace

QAction* takeMenuItem(const QList<QAction*>& actions, QStringList& path)
{
    const QList<QAction*> items = countable(actions);
    const QString first = path.first();
    if (first.startsWith(QLatin1String("Item "))) {
        bool ok = false;
        const int index = first.mid(5).toInt(&ok, 10);
        path.removeFirst();
        return ok ? items.value(index) : nullptr;
    }
    // An item whose text is the first element comes before those whose texts are several.
    for (const bool joined : {false, true}) {
        for (QAction* item : items) {
            const int length = joined ? 1 + static_cast<int>(itemText(item).count(QLatin1Char('/'))) : 1;
            if (path.size() < length || QStringList(path.mid(0, length)).join(QLatin1String("/")) != itemText(item))
                continue;
            path = path.mid(length);
            return item;
        }
    }
    path.removeFirst();
    return nullptr;
}

QStringList menuItemList(const QList<QAction*>& actions)
{
    QStringList list;
    for (const QAction* action : actions)
        appendItems(list, action, itemText(action));
    return list;
}

QString menuPathDisabled(const QList<QAction*>& actions, QStringList path)
{
    const QAction* item = takeMenuItem(actions, path);
    while (!path.isEmpty() && item && item->menu()) {
        item = takeMenuItem(below(item), path);
        if (item && !item->isEnabled() && !path.isEmpty())
            item = nullptr; // not looked into
    }
    return item && path.isEmpty() ? boolText(!item->isEnabled()) : QLatin1String("Could not reach last item of path");
}

QString barPathDisabled(const QList<QAction*>& actions, QStringList path)
{
    QList<QAction*> level = actions;
    const QAction* item = nullptr;
    bool top = true;
    for (;;) {
        const QString first = path.first();
        item = takeMenuItem(level, path);
        if (!item)
            return QLatin1String("Could not find ") + fuzzing::shown(first);
        if (path.isEmpty())
            return boolText(!item->isEnabled());
        if (!top && !item->isEnabled())
            return fuzzing::shown(element(item, first)) + QLatin1String(" is disabled");
        if (!item->menu())
            return QLatin1String("Could not find ") + fuzzing::shown(path.first());
        level = below(item);
        top = false;
    }
}

QString barPathChecked(const QList<QAction*>& actions, QStringList path)
{
    const QAction* item = takeMenuItem(actions, path);
    while (!path.isEmpty() && item && item->menu()) {
        if (!item->isEnabled())
            return QLatin1String("Item is disabled");
        item = takeMenuItem(below(item), path);
    }
    if (!path.isEmpty() || !item)
        return QLatin1String("Invalid item");
    return item->isCheckable() ? boolText(item->isChecked()) : QLatin1String("Item is not checkable");
}

QString chosenItem(const QList<QAction*>& actions, QStringList path)
{
    QList<QAction*> level = actions;
    for (;;) {
        const QAction* item = takeMenuItem(level, path);
        if (!item)
            return QLatin1String("Invalid item");
        if (!item->isEnabled())
            return QLatin1String("Item is disabled");
        if (path.isEmpty())
            return item->menu() ? QString() : item->objectName(); // a submenu only opens
        if (!item->menu())
            return QLatin1String("Invalid item");
        level = below(item);
    }
}

} // namespace naive
