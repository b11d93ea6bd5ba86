// Tool boxes and a status bar; see tests/protocol/test_tool_boxes.py and tests/protocol/test_status_bars.py.

#include "deleteonrestore.h"
#include "testhost.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QMainWindow>
#include <QStatusBar>
#include <QToolBox>
#include <QVBoxLayout>

#include <initializer_list>

namespace {

QToolBox* add(TestHost& host, QWidget* parent, const char* name, std::initializer_list<const char*> titles)
{
    auto* box = new QToolBox;
    box->setObjectName(QLatin1String(name));
    for (const char* title : titles)
        box->addItem(new QWidget, QLatin1String(title));
    host.journalValue(box, SIGNAL(currentChanged(int)), QLatin1String("current"));
    auto* grid = static_cast<QGridLayout*>(parent->layout());
    const int rows = 5;
    grid->addWidget(box, grid->count() % rows, grid->count() / rows);
    return box;
}

QList<QAbstractButton*> headers(const QToolBox* box)
{
    return box->findChildren<QAbstractButton*>(QLatin1String("qt_toolbox_toolboxbutton"));
}

void build(TestHost& host)
{
    auto* window = new QMainWindow;
    window->setObjectName(QLatin1String("toolBoxes"));
    window->setWindowTitle(QLatin1String("Tool boxes"));
    auto* central = new QWidget;
    new QGridLayout(central);
    window->setCentralWidget(central);

    auto* chapters = add(host, central, "chapters", {"&Start", "Middle", "End && more"});
    for (QAbstractButton* header : headers(chapters))
        host.journalInput(header);
    // The first page of the name is there without its header; the second of that name can be clicked.
    headers(add(host, central, "twice", {"First", "Same", "Same"})).at(1)->hide();
    headers(add(host, central, "secret", {"Shown", "Secret"})).at(1)->hide();
    add(host, central, "partly", {"Open", "Locked"})->setItemEnabled(1, false);
    add(host, central, "same", {"Other", "Page", "Page"});
    add(host, central, "disabled", {"Open", "Other"})->setEnabled(false);
    add(host, central, "hidden", {"Open", "Other"})->hide();
    add(host, central, "empty", {})->setMinimumHeight(20);
    add(host, central, "inner", {"Inner one", "Inner two"});
    auto* doomed = add(host, central, "doomed", {"One", "Two"});

    auto* outer = add(host, central, "outer", {"Outer one", "Outer two"});
    outer->setMinimumHeight(240);
    new QVBoxLayout(outer->widget(0));
    outer->widget(0)->layout()->addWidget(central->findChild<QToolBox*>(QLatin1String("inner")));

    window->statusBar()->setObjectName(QLatin1String("status"));
    host.onRequest(
        QLatin1String("say"), [window] { window->statusBar()->showMessage(QLatin1String("Saved & sound")); });
    host.onRequest(QLatin1String("journalStatus"), [&host, window] { host.journalInput(window->statusBar()); });
    host.onRequest(QLatin1String("clear"), [window] { window->statusBar()->clearMessage(); });
    host.onRequest(QLatin1String("minimizeDoomed"), [window, doomed] {
        (new DeleteOnRestore(doomed))->setParent(window);
        window->showMinimized();
    });
    window->setGeometry(60, 60, 600, 700);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
