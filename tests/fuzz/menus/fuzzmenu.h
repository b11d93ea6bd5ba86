#pragma once

#include "menuitem.h"

#include <QtCore/QStringList>

#include <memory>

class QMainWindow;
class QMenu;
class QWidget;

// A menu and a menu bar with the same items. Each action has the number of its line as its object name.
class FuzzMenu
{
public:
    explicit FuzzMenu(const std::vector<MenuItem>& items);
    ~FuzzMenu();

    QMenu* menu() const;
    QWidget* menuBar() const;
    // The line numbers of the items that were triggered, in that order.
    QStringList triggered() const { return triggeredItems; }

private:
    void fill(QWidget* menuOrBar, const std::vector<MenuItem>& items);

    std::unique_ptr<QMainWindow> window;
    std::unique_ptr<QMenu> popup;
    QStringList triggeredItems;
};
