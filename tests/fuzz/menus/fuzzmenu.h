#pragma once

#include <QtCore/QStringList>

#include <memory>

class QMainWindow;
class QMenu;
class QWidget;

// A menu and a menu bar with the same items. Each line is an item: ">" for each level below the first, then signs in any
// order, and the text. "!" hidden, "#" disabled, "*" checkable, "+" checkable and checked, "-" a separator.
// An item with items below it has them as its submenu. The triggered items are counted.
class FuzzMenu
{
public:
    explicit FuzzMenu(const QStringList& lines);
    ~FuzzMenu();

    QMenu* menu() const;
    QWidget* menuBar() const;
    // The paths, by the order in which they were built, of the items that were triggered.
    QStringList triggered() const { return triggeredItems; }

private:
    void fill(QWidget* menuOrBar, const QStringList& lines, int& next, int depth);

    std::unique_ptr<QMainWindow> window;
    std::unique_ptr<QMenu> popup;
    QStringList triggeredItems;
};
