// Windows that cannot become active, or cannot come to the front; see tests/protocol/test_fronts.py.

#include "testhost.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDockWidget>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>

namespace {

// Qt::WindowDoesNotAcceptFocus, which Qt 4 does not have: there, the attribute does it.
const auto doesNotAcceptFocus = static_cast<Qt::WindowType>(0x00200000);

QPushButton* addButton(TestHost& host, QWidget* parent, const char* name, const QRect& place)
{
    auto* button = new QPushButton(QLatin1String(name), parent);
    button->setObjectName(QLatin1String(name));
    button->setGeometry(place);
    host.journalSignal(button, SIGNAL(clicked()), QLatin1String("clicked"));
    return button;
}

QWidget* addWindow(const char* name, const char* title, const QRect& place)
{
    auto* window = new QWidget;
    window->setObjectName(QLatin1String(name));
    window->setWindowTitle(QLatin1String(title));
    window->setGeometry(place);
    return window;
}

void buildMain(TestHost& host)
{
    auto* window = new QMainWindow;
    window->setObjectName(QLatin1String("main"));
    window->setWindowTitle(QLatin1String("Main"));
    window->setGeometry(60, 60, 400, 300);
    auto* central = new QWidget;
    window->setCentralWidget(central);
    addButton(host, central, "open", QRect(20, 20, 100, 40));
    addButton(host, central, "covered", QRect(20, 200, 100, 40));

    auto* dock = new QDockWidget(QLatin1String("Dock"), window);
    dock->setObjectName(QLatin1String("dock"));
    auto* content = new QWidget;
    content->setObjectName(QLatin1String("content"));
    host.journalInput(content);
    dock->setWidget(content);
    window->addDockWidget(Qt::RightDockWidgetArea, dock);
    // Floating once the main window is on the screen, as a user has it: then the window manager keeps it above that.
    const auto floatDock = [dock] {
        dock->setFloating(true);
        dock->setGeometry(60, 230, 200, 120);
    };
    host.onRequest(QLatin1String("floatDock"), floatDock);
    host.onRequest(QLatin1String("floatHiddenDock"), [dock, floatDock] {
        dock->hide();
        floatDock();
        dock->show();
    });

    // Another window of the application, which the main one can be raised above.
    auto* cover = addWindow("cover", "Cover", QRect(50, 50, 200, 120));
    cover->setAttribute(Qt::WA_ShowWithoutActivating);
    host.onRequest(QLatin1String("coverMain"), [cover] {
        cover->hide();
        cover->show();
        cover->raise();
    });
    window->show();
}

void buildRefusing(TestHost& host, const char* name, const char* title, Qt::WindowFlags flags)
{
    auto* window = addWindow(name, title, QRect(500, 60, 300, 200));
    window->setAttribute(Qt::WA_X11DoNotAcceptFocus);
    window->setWindowFlags(Qt::Window | flags);
    addButton(host, window, "press", QRect(20, 20, 100, 40));
    auto* edit = new QLineEdit(window);
    edit->setObjectName(QLatin1String("edit"));
    edit->setGeometry(20, 100, 200, 40);
    host.journalInput(edit);
    host.onRequest(QLatin1String("show-") + QLatin1String(name), [window] { window->show(); });
}

// The widget that the scene embeds, with all kinds of children.
QWidget* embeddedWidget(TestHost& host)
{
    auto* embedded = addWindow("embedded", "Embedded", QRect(0, 0, 200, 140));
    addButton(host, embedded, "inner", QRect(20, 10, 100, 40));
    auto* field = new QLineEdit(embedded);
    field->setObjectName(QLatin1String("innerField"));
    field->setGeometry(20, 60, 150, 30);
    auto* choice = new QComboBox(embedded);
    choice->setObjectName(QLatin1String("innerChoice"));
    choice->addItems(QStringList() << QLatin1String("Tea") << QLatin1String("Coffee") << QLatin1String("Water"));
    choice->setGeometry(20, 100, 150, 30);
    // The windowing system tells of the cursor, which is over the open list, when it likes.
    host.onRequest(QLatin1String("tellOfMouseLate"), [&host, choice] {
        host.onSignal(choice, SIGNAL(highlighted(int)), [choice] {
            QAbstractItemView* const list = choice->view();
            const QPoint place = list->visualRect(list->model()->index(choice->count() - 1, 0)).center();
            QApplication::postEvent(list->viewport(),
                new QMouseEvent(QEvent::MouseMove, place, list->viewport()->mapToGlobal(place), Qt::NoButton,
                    Qt::NoButton, Qt::NoModifier));
        });
    });
    host.onRequest(QLatin1String("tellOfNoMouse"), [choice] {
        choice->view()->setAttribute(Qt::WA_TransparentForMouseEvents);
        choice->view()->viewport()->setAttribute(Qt::WA_TransparentForMouseEvents);
    });
    auto* spin = new QSpinBox(embedded);
    spin->setObjectName(QLatin1String("innerSpin"));
    spin->setGeometry(130, 10, 60, 40);
    return embedded;
}

void buildScene(TestHost& host)
{
    auto* dialog = new QDialog; // a window of its own: with an embedded parent it would be embedded, too
    dialog->setObjectName(QLatin1String("question"));
    dialog->setWindowTitle(QLatin1String("Question"));
    dialog->setGeometry(200, 500, 200, 100);
    dialog->setModal(true);
    addButton(host, dialog, "answer", QRect(20, 20, 100, 40));
    host.onRequest(QLatin1String("openQuestion"), [dialog] { dialog->show(); });
    host.onRequest(QLatin1String("closeQuestion"), [dialog] { dialog->hide(); });
    auto* scene = new QGraphicsScene;
    QWidget* const embedded = embeddedWidget(host);
    QGraphicsProxyWidget* const item = scene->addWidget(embedded);
    auto* note = new QLabel(QLatin1String("A note"));
    note->setObjectName(QLatin1String("note"));
    QGraphicsProxyWidget* const cover = scene->addWidget(note);
    cover->setGeometry(QRectF(0, 0, 150, 60));
    cover->hide();
    host.onRequest(QLatin1String("coverInner"), [cover] { cover->show(); });
    host.onRequest(QLatin1String("uncoverInner"), [cover] { cover->hide(); });
    host.onRequest(QLatin1String("moveInner"), [item] { item->setPos(1000, 1000); });
    auto* stage = addWindow("stage", "Scene", QRect(500, 400, 300, 240));
    auto* view = new QGraphicsView(scene, stage);
    scene->setParent(view);
    view->setObjectName(QLatin1String("scene"));
    view->setGeometry(0, 0, 300, 200);
    auto* outerField = new QLineEdit(stage);
    outerField->setObjectName(QLatin1String("outerField"));
    outerField->setGeometry(0, 205, 300, 30);
    const QPointer<QWidget> inner(embedded->findChild<QPushButton*>(QLatin1String("inner")));
    host.onRequest(QLatin1String("loseInner"), [&host, view, inner] {
        host.onSignal(view->horizontalScrollBar(), SIGNAL(valueChanged(int)), [inner] { delete inner.data(); });
    });
    host.onRequest(QLatin1String("showScene"), [stage] { stage->show(); });
}

// A window with a hole where the centre of its button is: nothing brings that to the front.
void buildHoled(TestHost& host)
{
    auto* window = addWindow("holed", "Holed", QRect(860, 400, 300, 200));
    const QRect place(100, 80, 100, 40);
    addButton(host, window, "lost", place);
    host.onRequest(QLatin1String("showHoled"), [window, place] {
        window->setMask(QRegion(window->rect()).subtracted(QRegion(place)));
        window->show();
    });
    host.onRequest(QLatin1String("hideHoled"), [window] { window->hide(); });
    host.onRequest(QLatin1String("mendHoled"), [window] { window->clearMask(); });
}

void build(TestHost& host)
{
    buildMain(host);
    buildRefusing(host, "refusing", "Refusing", doesNotAcceptFocus);
    buildRefusing(host, "reluctant", "Reluctant", Qt::WindowFlags());
    buildScene(host);
    buildHoled(host);
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
