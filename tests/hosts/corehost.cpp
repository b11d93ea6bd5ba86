// Windows, names, values and dialogs for the tests of the protocol itself; see tests/protocol/test_*.py.

#include "testhost.h"
#include "valuewidget.h"

#include <QAction>
#include <QApplication>
#include <QCommandLinkButton>
#include <QDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QSpinBox>
#include <QSystemTrayIcon>
#include <QTextEdit>
#include <QTimer>
#include <QToolBox>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QFileSystemWatcher>

namespace {

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

template <class Widget>
Widget* named(Widget* widget, const char* name)
{
    widget->setObjectName(text(name));
    return widget;
}

QWidget* addWindow(const char* name, const char* title, const QPoint& position)
{
    auto* window = named(new QWidget, name);
    window->setWindowTitle(text(title));
    window->move(position);
    new QVBoxLayout(window);
    return window;
}

template <class Widget>
Widget* add(QWidget* parent, Widget* widget)
{
    parent->layout()->addWidget(widget);
    return widget;
}

QWidget* addFrame(QWidget* parent, const char* name)
{
    auto* frame = add(parent, named(new QWidget, name));
    new QVBoxLayout(frame);
    return frame;
}

QPushButton* addButton(TestHost& host, QWidget* parent, const char* name)
{
    auto* button = add(parent, named(new QPushButton(text(name)), name));
    host.journalSignal(button, SIGNAL(clicked()), text("clicked"));
    return button;
}

// Classes of an application: their widgets are named like those of Qt's classes.

class DerivedToolButton : public QToolButton
{
    Q_OBJECT
};

class DerivedInputDialog : public QInputDialog
{
    Q_OBJECT
};

// Deletes a window after an event of an object in it, as soon as the event loop runs again.
class Killer : public QObject
{
public:
    Killer(TestHost& testHost, QObject* watched, QEvent::Type type, QWidget* victim)
        : QObject(victim)
        , host(testHost)
        , eventType(type)
        , window(victim)
    {
        watched->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == eventType) {
            auto* timer = new QTimer(window);
            timer->setSingleShot(true);
            QWidget* victim = window;
            host.onSignal(timer, SIGNAL(timeout()), [victim] { delete victim; });
            timer->start(0);
        }
        return false;
    }

private:
    TestHost& host;
    QEvent::Type eventType;
    QWidget* window;
};

// The window that is there from the start: paths, a canvas for mouse commands, buttons that open things.
void buildMain(TestHost& host)
{
    auto* window = named(new QMainWindow, "main");
    window->setWindowTitle(text("Editor"));
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
}

void buildNames(TestHost& host)
{
    host.onRequest(text("showNames"), [&host] {
        auto* window = addWindow("names", "Names", QPoint(500, 30));
        QPushButton* const buttons[] = {new QPushButton(text("&Cancel")), new QPushButton(text("Apply  to all")),
            new QPushButton(text("Don't save")), new QPushButton, new QCommandLinkButton(text("Go on"))};
        for (QPushButton* button : buttons) {
            add(window, button);
            host.onSignal(
                button, SIGNAL(clicked()), [&host, button] { host.journal(text("clicked label ") + button->text()); });
        }
        auto* action = named(new QAction(text("Open"), window), "fileOpen");
        host.journalSignal(action, SIGNAL(triggered()), text("triggered"));
        add(window, new QToolButton)->setDefaultAction(action);
        auto* second = add(window, new QToolButton);
        second->addAction(action);
        second->addAction(new QAction(text("Save"), window));
        auto* derivedAction = named(new QAction(text("Close"), window), "fileClose");
        host.journalSignal(derivedAction, SIGNAL(triggered()), text("triggered"));
        add(window, new DerivedToolButton)->setDefaultAction(derivedAction);
        window->show();
    });
    host.onRequest(text("showUnnamed"), [] {
        auto* single = addWindow("single", "Single", QPoint(800, 30));
        add(single, new QLabel(text("only")));
        single->show();
        auto* several = addWindow("several", "Several", QPoint(800, 200));
        add(several, new QLabel(text("one")));
        add(several, new QLabel(text("two")));
        several->show();
    });
    host.onRequest(text("showReports"), [] {
        addWindow("r1", "Report 1", QPoint(500, 400))->show();
        addWindow("r12", "Report 12", QPoint(700, 400))->show();
        addWindow("hidden", "Report 13", QPoint(900, 400));
        addWindow("untitled", "", QPoint(500, 600))->show();
        addWindow("literal", "Widget:main", QPoint(700, 600))->show();
    });
}

void buildFrameless(TestHost& host)
{
    host.onRequest(text("showFrameless"), [] {
        auto* window = addWindow("frameless", "Frameless", QPoint(500, 30));
        window->setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        window->resize(200, 100);
        window->show();
        window->activateWindow();
    });
}

void buildViews(TestHost& host)
{
    host.onRequest(text("showViews"), [] {
        auto* window = addWindow("views", "Views, and more", QPoint(500, 30));
        add(window, named(new QSpinBox, "spin"));
        add(window, named(new QTreeView, "tree"));
        add(window, named(new QListWidget, "list"));
        add(window, named(new QTextEdit, "text"));
        auto* box = add(window, named(new QToolBox, "toolbox"));
        box->addItem(new QLabel(text("page")), text("Page"));
        add(window, new QLabel(text("unnamed one")));
        window->show();
    });
}

// A dialog with a button that opens the next dialog, and so on.
void openDialog(TestHost& host, int level)
{
    QDialog dialog;
    dialog.setObjectName(text("dialog") + QString::number(level));
    dialog.setWindowTitle(text("Save changes? ") + QString::number(level));
    new QVBoxLayout(&dialog);
    auto* next = addButton(host, &dialog, "next");
    host.onSignal(next, SIGNAL(clicked()), [&host, level] { openDialog(host, level + 1); });
    auto* accept = addButton(host, &dialog, "accept");
    QObject::connect(accept, SIGNAL(clicked()), &dialog, SLOT(accept()));
    host.journal(text("dialog result %1").arg(dialog.exec()));
}

void buildDialogs(TestHost& host)
{
    host.onRequest(text("openDialog"), [&host] { openDialog(host, 1); });
    host.onRequest(text("openUntitledDialog"), [] {
        auto* dialog = new QDialog;
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setModal(true);
        new QVBoxLayout(dialog);
        add(dialog, named(new QLabel(text("text")), "label"));
        dialog->setFixedSize(300, 200);
        dialog->show();
    });
    host.onRequest(text("openInputDialog"), [&host] {
        auto* dialog = named(new DerivedInputDialog, "input");
        dialog->setWindowTitle(text("Input"));
        dialog->sizeHint(); // makes its layout
        add(dialog, new ValueWidget)->setFixedHeight(20);
        add(dialog, new QPushButton(text("Help")));
        add(dialog, new QToolButton)->setDefaultAction(named(new QAction(text("Find"), dialog), "find"));
        auto* frame = new QWidget(dialog);
        new QVBoxLayout(frame);
        add(frame, new QLineEdit);
        frame->move(0, 200);
        host.onSignal(
            dialog, SIGNAL(accepted()), [&host, dialog] { host.journal(text("input ") + dialog->textValue()); });
        host.onRequest(text("renameOk"), [dialog] { dialog->setOkButtonText(text("Go on")); });
        dialog->open();
    });
    host.onRequest(text("openMenu"), [&host] {
        auto* menu = named(new QMenu, "popup");
        host.journalInput(menu);
        host.journalSignal(menu, SIGNAL(aboutToHide()), text("hidden"));
        menu->addAction(text("First"));
        menu->addAction(text("Second"));
        menu->popup(QPoint(700, 500));
    });
}

// As a dialog within a slot does whose own handlers delete the agent: the loop ends it before the slot returns.
void retireAgentInEventLoop(TestHost& host)
{
    QEventLoop loop;
    QTimer retirement;
    host.onSignal(&retirement, SIGNAL(timeout()), [&host] { host.retireAgent(); });
    retirement.setSingleShot(true);
    retirement.start(0);
    QTimer::singleShot(100, &loop, SLOT(quit()));
    loop.exec();
}

// Buttons whose slots are the end of something.
void buildDeadly(TestHost& host)
{
    host.onRequest(text("showDeadly"), [&host] {
        auto* window = addWindow("deadly", "Deadly", QPoint(500, 30));
        auto* self = addButton(host, window, "deleteSelf");
        host.onSignal(self, SIGNAL(pressed()), [self] { delete self; });
        auto* later = addButton(host, window, "deleteOnClick");
        host.onSignal(later, SIGNAL(clicked()), [later] { delete later; });
        host.onSignal(addButton(host, window, "closeWindow"), SIGNAL(clicked()), [window] { delete window; });
        host.onSignal(addButton(host, window, "closeOnPress"), SIGNAL(pressed()), [window] { delete window; });
        host.onSignal(addButton(host, window, "quit"), SIGNAL(clicked()), [] { QCoreApplication::quit(); });
        host.onSignal(addButton(host, window, "exit"), SIGNAL(clicked()), [] { ::exit(7); });
        host.onSignal(addButton(host, window, "dialog"), SIGNAL(clicked()), [&host] { openDialog(host, 1); });
        host.onSignal(add(window, named(new QLineEdit, "retire")), SIGNAL(textChanged(QString)),
            [&host] { retireAgentInEventLoop(host); });
        auto* mover = add(window, named(new QWidget, "mover"));
        mover->setMinimumSize(100, 50);
        host.onRequest(
            text("dieOnMove"), [&host, window, mover] { new Killer(host, mover, QEvent::MouseMove, window); });
        host.onRequest(
            text("dieOnActivate"), [&host, window] { new Killer(host, window, QEvent::WindowActivate, window); });
        window->show();
    });
}

// A widget that saves into a folder when it is pressed. The application is told of changes in that folder.
class Saver : public QWidget
{
public:
    explicit Saver(const QString& folder)
        : file(folder + text("/saved"))
    {
        setMinimumSize(100, 50);
    }

protected:
    void mousePressEvent(QMouseEvent*) override { QFile(file).open(QIODevice::WriteOnly); }

private:
    QString file;
};

void buildSaver(TestHost& host)
{
    host.onRequest(text("showSaver"), [&host] {
        const QString folder = QFile::decodeName(qgetenv("WATCHED_FOLDER"));
        auto* window = addWindow("saver", "Saver", QPoint(500, 30));
        add(window, named(new Saver(folder), "save"));
        auto* watcher = new QFileSystemWatcher(QStringList(folder), window);
        host.onSignal(watcher, SIGNAL(directoryChanged(QString)), [&host] { host.journal(text("folder changed")); });
        window->show();
    });
}

void buildMisc(TestHost& host)
{
    host.onRequest(text("addTrayIcons"), [] {
        QPixmap pixmap(16, 16);
        pixmap.fill(Qt::red);
        const struct
        {
            const char* name;
            bool visible;
        } icons[] = {{"tray", false}, {"double", true}, {"double", true}, {"shown", true}, {"among", false},
            {"among", true}, {"among", false}};
        for (const auto& icon : icons)
            named(new QSystemTrayIcon(QIcon(pixmap), qApp), icon.name)->setVisible(icon.visible);
    });
    host.onRequest(text("reportTrayIcon"), [&host] {
        const QRect rect = qApp->findChild<QSystemTrayIcon*>(text("shown"))->geometry();
        host.journal(text("tray %1,%2,%3,%4").arg(rect.left()).arg(rect.top()).arg(rect.right()).arg(rect.bottom()));
    });
    host.onRequest(text("cursorToEmptyDesktop"), [] { QCursor::setPos(QPoint(1270, 1010)); });
    host.onRequest(text("cursorToUnnamed"), [&host] {
        QCursor::setPos(host.findWidget(text("several"))->findChild<QLabel*>()->mapToGlobal(QPoint(2, 2)));
    });
    host.onRequest(text("reportCursor"),
        [&host] { host.journal(text("cursor %1,%2").arg(QCursor::pos().x()).arg(QCursor::pos().y())); });
    host.onRequest(text("clearFocus"), [] {
        if (QApplication::focusWidget())
            QApplication::focusWidget()->clearFocus();
    });
    host.onRequest(text("startTicking"), [&host] {
        auto* timer = new QTimer(&host);
        host.onSignal(timer, SIGNAL(timeout()), [&host] { host.journal(text("tick")); });
        timer->start(10);
    });
    host.onRequest(text("startChild"), [&host] {
        auto* child = new QProcess(&host);
        child->start(text("sleep"), QStringList(text("60")));
        child->waitForStarted();
        host.onRequest(text("endChild"), [child] {
            child->kill();
            child->waitForFinished();
        });
    });
    host.onRequest(
        text("shadowClassName"), [&host] { host.find(text("canvas"))->setProperty("className", text("shadow")); });
    host.onRequest(text("moveMainOffScreen"), [&host] { host.findWidget(text("main"))->move(-150, 900); });
    host.onRequest(text("minimizeMain"), [&host] { host.findWidget(text("main"))->showMinimized(); });
}

void build(TestHost& host)
{
    buildMain(host);
    buildNames(host);
    buildFrameless(host);
    buildViews(host);
    buildDialogs(host);
    buildDeadly(host);
    buildSaver(host);
    buildMisc(host);
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}

#include "corehost.moc"
