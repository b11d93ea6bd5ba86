#pragma once

#include <QPointer>

class QGridLayout;
class QMainWindow;
class QWidget;

// An application with every kind of widget that the agent serves, shown, and with what real applications do to a driver:
// widgets that die of an event, models that change while one walks through them, dialogs by exec(), menus that are built
// when they open. Deleting the object deletes every window, those too that the application opened since.
class RichHost
{
public:
    RichHost();
    ~RichHost();
    RichHost(const RichHost&) = delete;
    RichHost& operator=(const RichHost&) = delete;

    // How often the button "probe" was clicked.
    int probeClicks() const { return clicks; }

private:
    void addButtons();
    void addFields();
    void addContainers();
    void addLists();
    void addTrees();
    void addTables();
    void addMenus();
    void addDialogButtons();
    void addMortals();
    template <class Widget>
    Widget* add(const char* name);

    QMainWindow* window;
    QGridLayout* grid;
    int clicks = 0;
    int places = 0;
};
