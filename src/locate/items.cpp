#include "locate/items.h"

#include "locate/shown.h"
#include "locate/values.h"
#include "locate/viewrows.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTabBar>

namespace locate {

namespace {

// The first items of `count`, up to the limit. `itemAt` fills one in; it returns false to end the list, as when the
// widget has been deleted.
template <class ItemAt>
Items itemsUpTo(int count, ItemAt itemAt)
{
    Items items;
    items.leftOut = qMax(0, count - maximumItems);
    for (int i = 0; i < qMin(count, maximumItems); ++i) {
        Item item;
        if (!itemAt(i, item))
            break;
        items.shown.push_back(item);
    }
    return items;
}

Items tabsOf(QWidget* widget)
{
    const auto* bar = static_cast<QTabBar*>(widget);
    return itemsUpTo(bar->count(), [bar](int i, Item& tab) {
        tab.texts.append(shownText(bar->tabText(i), Markup::Mnemonics));
        addState(tab.states, i == bar->currentIndex(), "selected");
        addState(tab.states, !bar->isTabEnabled(i), "disabled");
        return true;
    });
}

Items choicesOf(QWidget* widget)
{
    const QPointer<QComboBox> box(static_cast<QComboBox*>(widget));
    const QString current = box->lineEdit() ? shownOf(*box->lineEdit()) : box->currentText();
    if (!box)
        return Items();
    Items items = itemsUpTo(box->count(), [&box](int i, Item& choice) {
        if (box)
            choice.texts.append(box->itemText(i));
        if (box)
            addState(choice.states, i == box->currentIndex(), "selected");
        return !box.isNull();
    });
    items.value = current;
    return items;
}

Items actionsOf(QWidget* widget)
{
    Items items;
    const QList<QAction*> actions = widget->actions();
    for (const QAction* action : actions) {
        if (!action->isVisible() || action->isSeparator())
            continue;
        if (static_cast<int>(items.shown.size()) == maximumItems) {
            ++items.leftOut;
            continue;
        }
        Item item;
        item.texts.append(shownText(action->text(), Markup::Mnemonics));
        if (!action->shortcut().isEmpty())
            item.texts.append(action->shortcut().toString(QKeySequence::PortableText));
        addState(item.states, !action->isEnabled(), "disabled");
        addState(item.states, action->isChecked(), "checked");
        addState(item.states, action->menu() != nullptr, "menu");
        items.shown.push_back(item);
    }
    return items;
}

Items rowsOf(QWidget* widget)
{
    return rowsInSight(static_cast<QAbstractItemView*>(widget));
}

struct ItemsRow
{
    const char* className;
    Items (*itemsOf)(QWidget* widget);
};

const ItemsRow itemsRows[] = {
    {"QAbstractItemView", rowsOf},
    {"QTabBar", tabsOf},
    {"QComboBox", choicesOf},
    {"QMenuBar", actionsOf},
    {"QMenu", actionsOf},
};

const ItemsRow* rowFor(const QWidget* widget)
{
    for (const ItemsRow& row : itemsRows) {
        if (widget->inherits(row.className))
            return &row;
    }
    return nullptr;
}

} // namespace

void addState(QStringList& states, bool holds, const char* state)
{
    if (holds && !states.contains(QLatin1String(state)))
        states.append(QLatin1String(state));
}

bool holdsItems(const QWidget* widget)
{
    return rowFor(widget) != nullptr;
}

Items itemsOf(QWidget* widget)
{
    const ItemsRow* row = rowFor(widget);
    return row ? row->itemsOf(widget) : Items();
}

} // namespace locate
