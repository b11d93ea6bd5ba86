#pragma once

#include <QtCore/QString>

class QAction;
class QMenu;
class QWidget;
class TestHost;

// Builds menus that journal what happens to them: "shown MENU", "hidden MENU", the input that they get,
// "triggered ITEM" and "toggled ITEM true".
class MenuBuilder
{
public:
    explicit MenuBuilder(TestHost& testHost)
        : host(testHost)
    {
    }

    // A menu of its own. The widget owns it.
    QMenu* menu(QWidget* owner, const char* name, const char* title = "") const;
    // A menu as the last item of a menu or menu bar. Its action is called like the menu, with "Action" added.
    QMenu* submenu(QWidget* menuOrBar, const char* name, const char* title) const;
    // An item at the end of a menu or menu bar.
    QAction* item(QWidget* menuOrBar, const QString& name, const QString& text) const;
    QAction* item(QWidget* menuOrBar, const char* name, const char* text) const;
    QAction* checkable(QWidget* menu, const char* name, const char* text, bool checked) const;
    QAction* separator(QWidget* menu, const char* text = "") const;

private:
    void watch(QAction* action) const;

    TestHost& host;
};

// Makes "do state" journal "state popup NAME focus NAME modal NAME" with the widgets that have the input now.
void journalInputState(TestHost& host);
