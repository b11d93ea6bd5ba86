#include "corewindows.h"
#include "testhost.h"
#include "valuewidget.h"

#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>

// The window that is there from the start: paths, a canvas for mouse commands, buttons that open things.
void buildMainWindow(TestHost& host)
{
    auto* window = named(new QMainWindow, "main");
    window->setWindowTitle(latin1("Editor"));
    auto* central = named(new QWidget, "central");
    new QVBoxLayout(central);
    window->setCentralWidget(central);

    const char* const frames[] = {"a", "b"};
    for (const char* name : frames)
        addButton(host, addFrame(central, name), "ok");
    addButton(host, addFrame(addFrame(addFrame(central, "outer"), "middle"), "inner"), "deep");
    addButton(host, central, "twin");
    addButton(host, central, "twin")->hide();
    addButton(host, central, "gone")->hide();
    addButton(host, central, "gone")->hide();
    addButton(host, central, "disabled")->setEnabled(false);
    addButton(host, central, "100%s%n");

    auto* canvas = add(central, named(new ValueWidget, "canvas"));
    canvas->setFixedSize(200, 100);
    host.journalInput(canvas);
    auto* edit = add(central, named(new QLineEdit, "edit"));
    host.journalInput(edit);
    window->move(30, 30);
    window->show();
    edit->setFocus();

    host.onRequest(latin1("shadowClassName"), [canvas] { canvas->setProperty("className", latin1("shadow")); });
    host.onRequest(latin1("moveMainOffScreen"), [window] { window->move(-150, 900); });
    host.onRequest(latin1("minimizeMain"), [window] { window->showMinimized(); });
}
