// Widgets that a user could not use yet; see tests/protocol/test_located_actions.py.

#include "testhost.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>

#include <functional>
#include <memory>
#include <vector>

namespace {

template <class Widget>
Widget* named(Widget* widget, const char* name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QPushButton* addButton(TestHost& host, QWidget* parent, const char* name, const QRect& place)
{
    auto* button = named(new QPushButton(QLatin1String(name), parent), name);
    button->setGeometry(place);
    host.journalSignal(button, SIGNAL(clicked()), QLatin1String("clicked"));
    return button;
}

// Moves one pixel on in each turn of the event loop until it is told to stop.
void buildMovingButton(TestHost& host, QWidget* parent)
{
    auto* button = addButton(host, parent, "moving", QRect(10, 60, 100, 30));
    auto* timer = named(new QTimer(button), "mover");
    host.onSignal(timer, SIGNAL(timeout()), [button] { button->move((button->x() - 9) % 50 + 10, button->y()); });
    host.onRequest(QLatin1String("move"), [timer] { timer->start(0); });
    host.onRequest(QLatin1String("stop"), [timer] { timer->stop(); });
}

// A button that everything is in the way of: "obstruct" sets it in motion, each "clear" takes the next obstacle away.
void buildObstructedButton(TestHost& host, QWidget* parent)
{
    auto* frame = named(new QFrame(parent), "frame");
    frame->setGeometry(340, 110, 120, 40);
    auto* button = addButton(host, frame, "obstructed", QRect(200, 5, 100, 30));
    button->setEnabled(false);
    button->hide();
    auto* cover = named(new QFrame(frame), "cover");
    cover->setGeometry(frame->rect());
    cover->setAutoFillBackground(true);
    auto* timer = named(new QTimer(button), "obstructedMover");
    host.onSignal(timer, SIGNAL(timeout()), [button] { button->move((button->x() - 199) % 50 + 200, button->y()); });
    const std::vector<std::function<void()>> steps
        = {[button] { button->show(); }, [button] { button->setEnabled(true); }, [timer] { timer->stop(); },
            [button] { button->move(10, 5); }, [cover] { cover->hide(); }};
    const auto next = std::make_shared<std::size_t>(0);
    host.onRequest(QLatin1String("obstruct"), [timer] { timer->start(0); });
    host.onRequest(QLatin1String("clear"), [steps, next] { steps.at((*next)++)(); });
}

// Shows a ghost of itself where it may be dropped, over the button "ready", as soon as it is pressed.
class Grip : public QFrame
{
public:
    explicit Grip(QWidget* parent)
        : QFrame(parent)
        , ghost(named(new QFrame(parent), "ghost"))
    {
        setAutoFillBackground(true);
        ghost->setAutoFillBackground(true);
        ghost->hide();
    }

    QFrame* const ghost;

protected:
    void mousePressEvent(QMouseEvent*) override
    {
        ghost->setGeometry(0, 0, 120, 50);
        ghost->show();
        ghost->raise();
    }
};

void buildGrip(TestHost& host, QWidget* parent)
{
    auto* grip = named(new Grip(parent), "grip");
    grip->setGeometry(340, 60, 30, 30);
    host.journalInput(grip);
    host.journalInput(grip->ghost);
}

void buildChildDialog(TestHost& host, QWidget* parent)
{
    auto* child = named(new QWidget(parent, Qt::Dialog | Qt::FramelessWindowHint), "child");
    child->setWindowTitle(QLatin1String("Child"));
    child->setGeometry(700, 560, 200, 60);
    addButton(host, child, "inChild", QRect(10, 10, 100, 30));
    host.onRequest(QLatin1String("showChild"), [child] { child->show(); });
}

// A button far down in a scroll area, in another one.
QWidget* scrolled(TestHost& host)
{
    auto* inner = named(new QScrollArea, "innerArea");
    auto* content = named(new QWidget, "innerContent");
    content->setFixedSize(200, 1000);
    addButton(host, content, "deep", QRect(20, 940, 100, 30));
    addButton(host, content, "shallow", QRect(20, 10, 100, 30));
    inner->setWidget(content);
    auto* middle = named(new QWidget, "outerContent");
    middle->setFixedSize(260, 800);
    inner->setParent(middle);
    inner->setGeometry(10, 600, 240, 180);
    auto* outer = named(new QScrollArea, "outerArea");
    outer->setWidget(middle);
    return outer;
}

// A frame over the button "covered", which can be moved over a line edit.
void buildOverlay(TestHost& host, QWidget* central)
{
    auto* overlay = named(new QFrame(central), "overlay");
    overlay->setGeometry(220, 0, 120, 50);
    overlay->setAutoFillBackground(true);
    host.journalInput(overlay);
    host.onRequest(QLatin1String("uncover"), [overlay] { overlay->hide(); });
    host.onRequest(QLatin1String("letThrough"), [overlay] { overlay->setAttribute(Qt::WA_TransparentForMouseEvents); });
    auto* line = named(new QLineEdit(central), "line");
    line->setGeometry(120, 60, 100, 30);
    host.onRequest(QLatin1String("coverLine"), [overlay] {
        overlay->move(110, 50);
        overlay->raise();
    });
}

void buildPalette(TestHost& host)
{
    auto* top = named(new QWidget(nullptr, Qt::Window | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint), "palette");
    top->setGeometry(40, 60, 640, 200);
    top->setAttribute(Qt::WA_ShowWithoutActivating);
    host.onRequest(QLatin1String("showPalette"), [top] { top->show(); });
    host.onRequest(QLatin1String("hidePalette"), [top] { top->hide(); });
}

void buildControls(TestHost& host)
{
    auto* window = named(new QMainWindow, "main");
    window->setWindowTitle(QLatin1String("Main"));
    window->setGeometry(40, 60, 640, 480);
    auto* central = new QWidget;
    window->setCentralWidget(central);
    addButton(host, central, "ready", QRect(10, 10, 100, 30));
    addButton(host, central, "disabled", QRect(120, 10, 100, 30))->setEnabled(false);
    addButton(host, central, "covered", QRect(230, 10, 100, 30));
    addButton(host, central, "outside", QRect(900, 10, 100, 30));
    auto* clip = named(new QFrame(central), "clip");
    clip->setGeometry(340, 10, 60, 30);
    addButton(host, clip, "clipped", QRect(100, 0, 100, 30));
    addButton(host, central, "hidden", QRect(410, 10, 100, 30))->hide();
    buildMovingButton(host, central);
    buildObstructedButton(host, central);
    host.onRequest(QLatin1String("enable"),
        [central] { central->findChild<QWidget*>(QLatin1String("disabled"))->setEnabled(true); });
    host.onRequest(QLatin1String("show"), [central] { central->findChild<QWidget*>(QLatin1String("hidden"))->show(); });

    buildOverlay(host, central);
    buildGrip(host, central);
    buildChildDialog(host, window);
    host.onRequest(QLatin1String("deleteOnScroll"), [&host] {
        auto* area = static_cast<QScrollArea*>(host.findWidget(QLatin1String("outerArea")));
        host.onSignal(area->verticalScrollBar(), SIGNAL(valueChanged(int)),
            [&host] { delete host.findWidget(QLatin1String("deep")); });
    });
    auto* area = scrolled(host);
    area->setParent(central);
    area->setGeometry(10, 100, 280, 240);

    buildPalette(host);
    window->show();
}

// Each of them gets an item "Late" on request.
void buildItems(TestHost& host)
{
    auto* window = named(new QMainWindow, "items");
    window->setWindowTitle(QLatin1String("Items"));
    window->setGeometry(700, 60, 500, 480);
    auto* central = new QWidget;
    window->setCentralWidget(central);
    auto* list = named(new QListWidget(central), "list");
    list->setGeometry(10, 10, 150, 100);
    list->addItem(QLatin1String("Early"));
    auto* tree = named(new QTreeWidget(central), "tree");
    tree->setGeometry(170, 10, 150, 100);
    new QTreeWidgetItem(tree, QStringList(QLatin1String("Early")));
    auto* table = named(new QTableWidget(1, 2, central), "table");
    table->setGeometry(330, 10, 150, 100);
    auto* combo = named(new QComboBox(central), "combo");
    combo->setGeometry(10, 130, 150, 30);
    combo->addItem(QLatin1String("Early"));
    auto* tabs = named(new QTabBar(central), "tabs");
    tabs->setGeometry(170, 130, 200, 30);
    tabs->addTab(QLatin1String("Early"));
    window->menuBar()->setObjectName(QLatin1String("bar"));
    auto* menu = window->menuBar()->addMenu(QLatin1String("&File"));
    named(menu->addAction(QLatin1String("Early")), "early");
    host.onRequest(QLatin1String("addLate"), [=, &host] {
        const QString late = QLatin1String("Late");
        list->addItem(late);
        new QTreeWidgetItem(tree, QStringList(late));
        table->setRowCount(2);
        combo->addItem(late);
        tabs->addTab(late);
        host.journalSignal(named(menu->addAction(late), "late"), SIGNAL(triggered()), QLatin1String("triggered"));
    });
    host.onRequest(QLatin1String("showItems"), [window] {
        window->show();
        window->activateWindow();
    });
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, [](TestHost& host) {
        buildItems(host);
        buildControls(host);
    });
}
