#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

class QWidget;

namespace locate {

// One of the things in a widget that are no widgets.
struct Item
{
    QStringList texts; // one for each column; an entry of a menu has its shortcut as the second
    int depth = 0; // in trees: below how many items it is
    QStringList
        states; // "selected", "current", "disabled", "checked", "partly checked", "expanded", "collapsed", "menu"
};

// Adds a state that holds, once.
void addState(QStringList& states, bool holds, const char* state);

// The items of a widget, as the user sees them.
struct Items
{
    QStringList header; // of the columns, in a view that shows it
    std::vector<Item> shown;
    QString value; // the current choice of a combo box
    int leftOut = 0; // how many are not in `shown`: rows out of sight, and those beyond maximumItems
};

// Limits for the items of one widget, and for their columns.
const int maximumItems = 200;
const int maximumColumns = 50;

// Whether the widget is of a kind that has items.
bool holdsItems(const QWidget* widget);

// The rows in sight of an item view, the tabs of a tab bar, the titles of a menu bar, the entries of a menu, the
// choices of a combo box. Where a model is the application's own, its code runs and may delete the widget.
Items itemsOf(QWidget* widget);

} // namespace locate
