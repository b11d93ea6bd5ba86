// Views and menus that are not made for the key sequences of the commands, one per "--scenario"; see
// tests/protocol/test_key_sequences.py.

#include "menubuilder.h"
#include "testhost.h"
#include "viewjournal.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProxyStyle>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QTreeView>
#include <QVBoxLayout>
#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>

namespace {

const char windowTitle[] = "Sequences";

// Cells "R1C1" and so on; below the second row, "inner1" and "inner2".
QStandardItemModel* gridModel(QObject* parent)
{
    const int rows = 4;
    const int columns = 3;
    auto* model = new QStandardItemModel(rows, columns, parent);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            model->setData(model->index(row, column), QString::fromLatin1("R%1C%2").arg(row + 1).arg(column + 1));
    }
    for (int i = 1; i <= 2; ++i) {
        model->item(1)->appendRow(QList<QStandardItem*>() << new QStandardItem(QString::fromLatin1("inner%1").arg(i))
                                                          << new QStandardItem(QString::fromLatin1("beside%1").arg(i)));
    }
    return model;
}

// Opens editors at a key, as applications do that have set no edit triggers.
class EditingByItself : public QObject
{
public:
    explicit EditingByItself(QAbstractItemView* watched)
        : QObject(watched)
        , view(watched)
    {
        watched->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        const bool wanted = event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F2;
        if (wanted)
            view->edit(view->currentIndex());
        return wanted;
    }

private:
    QAbstractItemView* view;
};

struct Triggers
{
    const char* name;
    QAbstractItemView::EditTriggers triggers;
};

const Triggers editTriggers[] = {
    {"triggersNone", QAbstractItemView::NoEditTriggers},
    {"triggersDoubleClick", QAbstractItemView::DoubleClicked},
    {"triggersAnyKey", QAbstractItemView::AnyKeyPressed},
    {"triggersCurrentChanged", QAbstractItemView::CurrentChanged},
    {"triggersCurrentChangedAndF2", QAbstractItemView::CurrentChanged | QAbstractItemView::EditKeyPressed},
    {"triggersF2", QAbstractItemView::EditKeyPressed},
};

void addRequests(TestHost& host, QAbstractItemView* view)
{
    QAbstractItemModel* model = view->model();
    for (const Triggers& row : editTriggers)
        host.onRequest(QLatin1String(row.name), [=] { view->setEditTriggers(row.triggers); });
    if (auto* table = qobject_cast<QTableView*>(view))
        host.onRequest(QLatin1String("noTab"), [=] { table->setTabKeyNavigation(false); });
    host.onRequest(QLatin1String("editByItself"), [=] { new EditingByItself(view); });
    host.onRequest(QLatin1String("persistentEditor"), [=] { view->openPersistentEditor(view->currentIndex()); });
    host.onRequest(QLatin1String("lockCurrent"),
        [=] { static_cast<QStandardItemModel*>(model)->itemFromIndex(view->currentIndex())->setEditable(false); });
    host.onRequest(QLatin1String("makeCheckable"), [=] {
        for (int row = 0; row < model->rowCount(); ++row)
            static_cast<QStandardItemModel*>(model)->item(row)->setCheckable(true);
    });
    host.onRequest(QLatin1String("texts"), [=, &host] {
        QStringList texts;
        for (int row = 0; row < model->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < model->columnCount(); ++column)
                cells.append(model->index(row, column).data().toString());
            texts.append(cells.join(QLatin1String(",")));
        }
        host.journal(QLatin1String("texts ") + texts.join(QLatin1String("|")));
    });
    for (int row = 0; row < model->rowCount(); ++row) {
        for (int column = 0; column < model->columnCount(); ++column) {
            const QModelIndex cell = model->index(row, column);
            host.onRequest(QLatin1String("current") + cell.data().toString(), [=] { view->setCurrentIndex(cell); });
        }
    }
}

// A dialog with a view, and with a default button, which Return presses. A user may also paste into it.
void showView(TestHost& host, QAbstractItemView* view)
{
    auto* dialog = new QDialog;
    dialog->setObjectName(QLatin1String("window"));
    dialog->setWindowTitle(QLatin1String(windowTitle));
    host.journalSignal(dialog, SIGNAL(accepted()), QLatin1String("accepted"));
    view->setObjectName(QLatin1String("view"));
    view->setModel(gridModel(dialog));
    auto* button = new QPushButton(QLatin1String("OK"));
    button->setObjectName(QLatin1String("ok"));
    QObject::connect(button, SIGNAL(clicked()), dialog, SLOT(accept()));
    auto* paste = new QAction(QLatin1String("Paste"), dialog);
    paste->setObjectName(QLatin1String("pasteAction"));
    paste->setShortcut(QKeySequence(QKeySequence::Paste));
    dialog->addAction(paste);
    host.journalSignal(paste, SIGNAL(triggered()), QLatin1String("triggered"));
    new QVBoxLayout(dialog);
    dialog->layout()->addWidget(view);
    dialog->layout()->addWidget(button);
    button->setDefault(true);
    journalView(host, view);
    host.journalSignal(view, SIGNAL(activated(QModelIndex)), QLatin1String("activated"));
    addRequests(host, view);
    dialog->setGeometry(60, 60, 500, 400);
    view->setFocus();
    dialog->show();
}

void listScenario(TestHost& host)
{
    auto* list = new QListView;
    showView(host, list);
    host.onRequest(QLatin1String("scrollAway"), [=] {
        list->setGridSize(QSize(100, 400));
        list->scrollToTop();
    });
    host.onRequest(QLatin1String("hideCurrent"), [=] { list->setRowHidden(list->currentIndex().row(), true); });
}

void tableScenario(TestHost& host)
{
    showView(host, new QTableView);
}

QTreeView* showTree(TestHost& host)
{
    auto* tree = new QTreeView;
    showView(host, tree);
    host.onRequest(QLatin1String("expandAll"), [=] { tree->expandAll(); });
    host.onRequest(QLatin1String("selectCells"), [=] { tree->setSelectionBehavior(QAbstractItemView::SelectItems); });
    return tree;
}

void treeScenario(TestHost& host)
{
    showTree(host);
}

// Like the styles in which Right scrolls where there is nothing to expand.
class StayingStyle : public QProxyStyle
{
public:
    int styleHint(
        StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* result) const override
    {
        return hint == SH_ItemView_ArrowKeysNavigateIntoChildren ? 0
                                                                 : QProxyStyle::styleHint(hint, option, widget, result);
    }
};

void stayingScenario(TestHost& host)
{
    auto* style = new StayingStyle;
    QTreeView* tree = showTree(host);
    style->setParent(QCoreApplication::instance()); // the tree has parts that outlive its other children
    tree->setStyle(style);
}

void addMenus(TestHost& host, QMenuBar* bar)
{
    const MenuBuilder menus(host);
    bar->setObjectName(QLatin1String("bar"));
    host.journalInput(bar);
    QMenu* file = menus.submenu(bar, "fileMenu", "File");
    menus.item(file, "save", "Save");
    menus.item(file, "locked", "Locked")->setEnabled(false);
    menus.checkable(file, "wrap", "Wrap", true);
    menus.item(menus.submenu(file, "sendMenu", "Send"), "mail", "Mail");
    menus.submenu(bar, "emptyMenu", "Empty");
    QMenu* fleeting = menus.submenu(bar, "fleetingMenu", "Fleeting");
    host.onSignal(menus.item(fleeting, "closer", "Closer"), SIGNAL(hovered()), [=] { fleeting->close(); });
    menus.item(fleeting, "beyond", "Beyond")->setEnabled(false);
    journalInputState(host);
}

void dialogScenario(TestHost& host)
{
    auto* dialog = new QDialog;
    dialog->setObjectName(QLatin1String("window"));
    dialog->setWindowTitle(QLatin1String(windowTitle));
    host.journalSignal(dialog, SIGNAL(rejected()), QLatin1String("rejected"));
    host.journalInput(dialog);
    auto* bar = new QMenuBar;
    auto* layout = new QVBoxLayout(dialog);
    layout->setMenuBar(bar);
    auto* button = new QPushButton(QLatin1String("Some button"));
    button->setObjectName(QLatin1String("button"));
    layout->addWidget(button);
    addMenus(host, bar);
    host.onRequest(QLatin1String("noFocus"), [] {
        if (QWidget* focus = QApplication::focusWidget())
            focus->clearFocus();
    });
    host.onRequest(QLatin1String("disableButton"), [=] { button->setEnabled(false); });
    dialog->setGeometry(60, 60, 500, 300);
    button->setFocus();
    dialog->show();
}

bool isGiven(const char* option)
{
    return QCoreApplication::arguments().contains(QLatin1String(option));
}

QWidget* newCornerWidget(TestHost& host)
{
    if (isGiven("--combo")) {
        auto* combo = new QComboBox;
        combo->addItems(QStringList() << QLatin1String("one") << QLatin1String("two"));
        return combo;
    }
    if (isGiven("--field"))
        return new QLineEdit;
    auto* button = new QPushButton(QLatin1String("Log out"));
    host.journalSignal(button, SIGNAL(clicked()), QLatin1String("clicked"));
    return button;
}

void cornerScenario(TestHost& host)
{
    auto* window = new QMainWindow;
    window->setObjectName(QLatin1String("window"));
    window->setWindowTitle(QLatin1String(windowTitle));
    auto* edit = new QLineEdit;
    edit->setObjectName(QLatin1String("edit"));
    window->setCentralWidget(edit);
    addMenus(host, window->menuBar());
    QWidget* corner = newCornerWidget(host);
    corner->setObjectName(QLatin1String("corner"));
    host.journalInput(corner);
    window->menuBar()->setCornerWidget(corner, isGiven("--left") ? Qt::TopLeftCorner : Qt::TopRightCorner);
    host.onRequest(QLatin1String("hideCorner"), [=] { corner->hide(); });
    host.onRequest(QLatin1String("disableCorner"), [=] { corner->setEnabled(false); });
    host.onRequest(QLatin1String("labelInCorner"), [=] {
        auto* label = new QLabel(QLatin1String("Logo"));
        window->menuBar()->setCornerWidget(label, Qt::TopRightCorner);
        corner->hide();
        label->show();
    });
    window->setGeometry(60, 60, 500, 300);
    edit->setFocus();
    window->show();
}

struct Scenario
{
    const char* name;
    void (*build)(TestHost& host);
};

const Scenario scenarios[] = {
    {"list", listScenario},
    {"table", tableScenario},
    {"tree", treeScenario},
    {"staying", stayingScenario},
    {"dialog", dialogScenario},
    {"corner", cornerScenario},
};

void build(TestHost& host)
{
    QApplication::setQuitOnLastWindowClosed(false); // the tests ask what has happened to the window
    const QStringList arguments = QCoreApplication::arguments();
    const QString wanted = arguments.value(arguments.indexOf(QLatin1String("--scenario")) + 1);
    for (const Scenario& scenario : scenarios) {
        if (wanted == QLatin1String(scenario.name))
            scenario.build(host);
    }
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
