// Widgets that are to be found by what a user or a developer knows of them; see tests/protocol/test_locators.py. Their
// object names tell the tests which one was found.

#include "testhost.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTextEdit>
#include <QToolBox>
#include <QToolButton>

namespace fields {

class SpecialEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit SpecialEdit(QWidget* parent)
        : QLineEdit(parent)
    {
    }
};

} // namespace fields

namespace {

// A widget whose property ends the widgets that a test names, as an application's own code may.
class DeadlyWidget : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int deadly READ deadly)

public:
    using QWidget::QWidget;

    int deadly() const
    {
        if (isArmed)
            delete window()->findChild<QWidget*>(QLatin1String("victim"));
        return 1;
    }

    bool isArmed = false;
};

template <class Widget>
Widget* named(Widget* widget, const char* name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

// Without a frame, which the window manager would add when the tests have begun.
QWidget* addWindow(const char* title, const QRect& place)
{
    auto* window = new QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint);
    window->setWindowTitle(QLatin1String(title));
    window->setGeometry(place);
    return window;
}

QPushButton* addButton(QWidget* parent, const char* name, const QString& text)
{
    auto* button = named(new QPushButton(text, parent), name);
    if (parent->layout())
        parent->layout()->addWidget(button);
    return button;
}

QLabel* label(const char* text)
{
    return new QLabel(QString::fromUtf8(text));
}

QLayout* gridRows()
{
    auto* grid = new QGridLayout;
    grid->addWidget(label("Width:"), 0, 0);
    grid->addWidget(named(new QSpinBox, "widthBox"), 0, 1);
    grid->addWidget(label("Height:"), 0, 3);
    grid->addWidget(named(new QSpinBox, "heightBox"), 0, 4);
    grid->addWidget(named(new QPushButton(QLatin1String("Fit")), "fitButton"), 0, 5);
    grid->addWidget(named(new QCheckBox(QLatin1String("Locked")), "lockedBox"), 1, 0);
    return grid;
}

QLayout* boxRow()
{
    auto* row = new QHBoxLayout;
    row->addWidget(label("Colour"));
    row->addSpacing(4);
    row->addWidget(named(new QComboBox, "colourBox"));
    row->addWidget(label("Ready"));
    row->addStretch();
    row->addWidget(named(new QPushButton(QLatin1String("Help")), "helpButton"));
    return row;
}

QLayout* pathField()
{
    auto* row = new QHBoxLayout;
    row->addWidget(named(new QLineEdit, "pathEdit"));
    row->addWidget(named(new QPushButton(QLatin1String("Browse...")), "browseButton"));
    return row;
}

QWidget* containedField()
{
    auto* container = named(new QWidget, "container");
    auto* row = new QVBoxLayout(container);
    row->addWidget(named(new fields::SpecialEdit(container), "ownerEdit"));
    return container;
}

void buildForm()
{
    auto* window = addWindow("Form", QRect(20, 40, 420, 520));
    auto* form = new QFormLayout(window);
    form->addRow(QLatin1String("&Name:"), named(new QLineEdit, "nameEdit"));
    form->addRow(QLatin1String("Path:"), pathField());
    form->addRow(QLatin1String("Owner:"), containedField());
    form->addRow(QString::fromUtf8("Größe\nin €:"), named(new QSpinBox, "sizeBox"));
    form->addRow(QLatin1String("State:"), named(new QLabel(QLatin1String("AT&T & more")), "stateLabel"));
    form->addRow(gridRows());
    form->addRow(boxRow());
    auto* notes = named(new QGroupBox(QLatin1String("&Notes")), "notesGroup");
    (new QVBoxLayout(notes))->addWidget(named(new QTextEdit, "notesEdit"));
    form->addRow(notes);
    auto* farLabel = label("&Far away:");
    farLabel->setParent(window);
    farLabel->setBuddy(window->findChild<QWidget*>(QLatin1String("notesEdit")));
    window->show();
}

QToolButton* addToolButton(QWidget* parent, const char* name, const char* actionName, const char* text)
{
    auto* action = new QAction(QLatin1String(text), parent);
    action->setObjectName(QLatin1String(actionName));
    auto* button = named(new QToolButton(parent), name);
    button->setDefaultAction(action);
    parent->layout()->addWidget(button);
    return button;
}

QWidget* buttons(TestHost& host)
{
    auto* box = named(new QWidget, "buttons");
    new QVBoxLayout(box);
    addButton(box, "saveButton", QLatin1String("&Save"));
    addButton(box, "saveAsButton", QLatin1String("Save &as...\tCtrl+S"));
    addButton(box, "researchButton", QLatin1String("R&&D"));
    addButton(box, "euroButton", QString::fromUtf8("Grüße, \"€\""));
    addButton(box, "linesButton", QLatin1String("two\n  lines"))->setToolTip(QLatin1String("<b>What</b> it does"));
    addButton(box, "saveButton2", QLatin1String("Save"))->hide();
    box->layout()->addWidget(named(new QLabel(QLatin1String("<p>Rich &amp; <b>bold</b></p>")), "richLabel"));
    addToolButton(box, "openButton", "actionOpen", "&Open file");
    auto* search = named(new QLineEdit, "searchEdit");
    search->setPlaceholderText(QLatin1String("Search"));
    search->setReadOnly(true);
    search->setProperty("dynamic", QLatin1String("of this one"));
    search->setProperty("accessibleName", QLatin1String("Search field"));
    box->layout()->addWidget(search);
    host.onRequest(
        QLatin1String("deleteOpenButton"), [box] { delete box->findChild<QToolButton*>(QLatin1String("openButton")); });
    return box;
}

QWidget* pages()
{
    auto* tabs = named(new QTabWidget, "tabs");
    for (const char* title : {"First", "Se&cond"}) {
        auto* page = named(new QWidget, title);
        new QVBoxLayout(page);
        addButton(page, title[0] == 'F' ? "sameFirst" : "sameSecond", QLatin1String("Same"));
        tabs->addTab(page, QLatin1String(title));
    }
    return tabs;
}

QWidget* documents()
{
    auto* area = named(new QMdiArea, "area");
    for (const char* title : {"Doc 1", "Doc 2"}) {
        auto* content = new QWidget;
        new QVBoxLayout(content);
        addButton(content, "closeDocument", QLatin1String("Close document"));
        auto* inner = named(area->addSubWindow(content), title);
        inner->setWindowTitle(QLatin1String(title));
    }
    area->tileSubWindows();
    return area;
}

void buildMain(TestHost& host)
{
    auto* window = named(new QMainWindow(nullptr, Qt::FramelessWindowHint), "main");
    window->setWindowTitle(QLatin1String("Main"));
    window->setGeometry(480, 40, 760, 620);
    window->menuBar()->setObjectName(QLatin1String("menus"));
    window->menuBar()->addMenu(QLatin1String("&File"))->setObjectName(QLatin1String("fileMenu"));
    auto* central = new QWidget;
    auto* layout = new QVBoxLayout(central);
    layout->addWidget(pages());
    layout->addWidget(documents());
    auto* box = named(new QToolBox, "box");
    box->addItem(named(new QLabel(QLatin1String("in the box")), "boxPage"), QLatin1String("Drawer"));
    layout->addWidget(box);
    window->setCentralWidget(central);
    auto* dock = named(new QDockWidget(QLatin1String("Layers"), window), "dock");
    dock->setWidget(buttons(host));
    window->addDockWidget(Qt::RightDockWidgetArea, dock);
    auto* dialog = named(new QWidget(window, Qt::Dialog | Qt::FramelessWindowHint), "dialog");
    dialog->setWindowTitle(QLatin1String("Of main"));
    addButton(dialog, "inDialog", QLatin1String("In a dialog"));
    dialog->setGeometry(480, 700, 200, 60);
    dialog->show();
    window->show();
}

void buildDeadly(TestHost& host)
{
    auto* window = named(addWindow("Deadly", QRect(20, 620, 300, 100)), "deadlyWindow");
    auto* killer = named(new DeadlyWidget(window), "killer");
    named(new DeadlyWidget(window), "victim");
    named(new DeadlyWidget(window), "survivor");
    host.onRequest(QLatin1String("arm"), [killer] { killer->isArmed = true; });
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, [](TestHost& host) {
        buildForm();
        buildDeadly(host);
        buildMain(host);
    });
}

#include "locatorhost.moc"
