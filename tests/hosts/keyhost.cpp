// Whatever takes keys: editors, shortcuts, menus, dialogs and filters; see tests/protocol/test_press.py, test_type.py and
// test_focus.py.

#include "latin1.h"
#include "testhost.h"
#include "viewjournal.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSpinBox>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QtCore/QPointer>

namespace {

// An editor of its own kind: takes keys by keyPressEvent(), keeps what they type in a property, and wants one key for
// itself that is also a shortcut.
class CustomEditor : public QWidget
{
public:
    CustomEditor()
    {
        setFocusPolicy(Qt::StrongFocus);
        setMinimumSize(200, 20);
        setProperty("typed", QString());
    }

protected:
    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F7)
            event->accept();
        return QWidget::event(event);
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        setProperty("typed", property("typed").toString() + event->text());
    }

    bool focusNextPrevChild(bool) override { return false; }
};

// Keeps one key from what it watches.
class KeyFilter : public QObject
{
public:
    KeyFilter(QObject* watched, int filtered)
        : QObject(watched)
        , key(filtered)
    {
        watched->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        return event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == key;
    }

private:
    const int key;
};

QAction* addAction(TestHost& host, QMenu* menu, const char* name, const char* label, const QKeySequence& shortcut)
{
    auto* action = new QAction(latin1(label), menu);
    action->setObjectName(latin1(name));
    action->setShortcut(shortcut);
    menu->addAction(action);
    host.onSignal(action, SIGNAL(triggered()), [&host, action] {
        host.journal(QString::fromLatin1("triggered %1 modifiers %2")
                         .arg(action->objectName())
                         .arg(int(QApplication::keyboardModifiers())));
    });
    return action;
}

void addShortcut(TestHost& host, QWidget* parent, const char* name, const char* keys)
{
    auto* shortcut = new QShortcut(QKeySequence(latin1(keys)), parent);
    shortcut->setObjectName(latin1(name));
    host.journalSignal(shortcut, SIGNAL(activated()), latin1("activated"));
    host.journalSignal(shortcut, SIGNAL(activatedAmbiguously()), latin1("ambiguous"));
}

template <class Widget>
Widget* add(TestHost& host, QLayout* layout, const char* name, Widget* widget)
{
    widget->setObjectName(latin1(name));
    layout->addWidget(widget);
    host.journalInput(widget);
    return widget;
}

// A dialog that its caller waits for, with a field and a default button.
void askName(TestHost& host)
{
    QDialog dialog;
    dialog.setObjectName(latin1("dialog"));
    dialog.setWindowTitle(latin1("Name"));
    auto* layout = new QVBoxLayout(&dialog);
    add(host, layout, "name", new QLineEdit);
    auto* button = add(host, layout, "accept", new QPushButton(latin1("Accept")));
    button->setDefault(true);
    QObject::connect(button, SIGNAL(clicked()), &dialog, SLOT(accept()));
    auto* cancel = add(host, layout, "cancel", new QPushButton(latin1("&Cancel")));
    QObject::connect(cancel, SIGNAL(clicked()), &dialog, SLOT(reject()));
    const int result = dialog.exec();
    host.journal(
        QString::fromLatin1("dialog %1 '%2'").arg(result).arg(host.find(latin1("name"))->property("text").toString()));
}

void addMenus(TestHost& host, QMainWindow* window)
{
    QMenu* file = window->menuBar()->addMenu(latin1("&File"));
    file->setObjectName(latin1("fileMenu"));
    host.journalSignal(file, SIGNAL(aboutToShow()), latin1("opened"));
    host.journalSignal(file, SIGNAL(aboutToHide()), latin1("closed"));
    host.journalInput(file);
    addAction(host, file, "saveAction", "&Save", QKeySequence(latin1("Ctrl+S")));
    addAction(host, file, "zoomAction", "&Zoom", QKeySequence(latin1("Ctrl++")));
    QAction* open = addAction(host, file, "openAction", "&Open...", QKeySequence(latin1("Ctrl+O")));
    host.onSignal(open, SIGNAL(triggered()), [&host] { askName(host); });
}

void addShortcuts(TestHost& host, QMainWindow* window)
{
    addShortcut(host, window, "comment", "Ctrl+K, Ctrl+C");
    addShortcut(host, window, "first", "Ctrl+D");
    addShortcut(host, window, "second", "Ctrl+D");
    addShortcut(host, window, "comma", "Ctrl+,");
    addShortcut(host, window, "help", "F7");
    addShortcut(host, window, "back", "Ctrl+Shift+Tab");
}

void addFields(TestHost& host, QMainWindow* window)
{
    auto* centre = new QWidget;
    auto* layout = new QVBoxLayout(centre);
    add(host, layout, "plain", new QPlainTextEdit)->setTabChangesFocus(true);
    add(host, layout, "rich", new QTextEdit);
    QWidget* custom = add(host, layout, "custom", new CustomEditor);
    auto* line = add(host, layout, "line", new QLineEdit);
    new KeyFilter(line, Qt::Key_X);
    add(host, layout, "spin", new QSpinBox)->setMaximum(100000);
    auto* combo = add(host, layout, "combo", new QComboBox);
    combo->addItems(QStringList() << latin1("red") << latin1("green") << latin1("blue"));
    auto* button = add(host, layout, "button", new QPushButton(latin1("&Brew")));
    host.journalSignal(button, SIGNAL(clicked()), latin1("clicked"));
    add(host, layout, "mute", new QPushButton(latin1("Mute")))->setFocusPolicy(Qt::NoFocus);
    auto* disabled = add(host, layout, "disabled", new QLineEdit);
    disabled->setEnabled(false);
    auto* giver = add(host, layout, "giver", new QLineEdit);
    new FocusThief(giver, custom);
    auto* victim = add(host, layout, "victim", new QLineEdit);
    const QPointer<QLineEdit> living(victim);
    afterSignal(host, victim, SIGNAL(textChanged(QString)), [living] {
        if (living && living->text().endsWith(QLatin1Char('d')))
            delete living;
    });
    window->setCentralWidget(centre);
    host.onRequest(latin1("focusCustom"), [custom] { custom->setFocus(); });
    centre->setObjectName(latin1("centre"));
    host.onRequest(latin1("focusCentre"), [centre] { centre->setFocus(); });
    host.onRequest(latin1("focusLine"), [line] { line->setFocus(); });
    host.onRequest(latin1("enable"), [disabled] { disabled->setEnabled(true); });
}

void build(TestHost& host)
{
    auto* window = new QMainWindow;
    window->setObjectName(latin1("window"));
    window->setWindowTitle(latin1("Keys \xe4"));
    addFields(host, window);
    addMenus(host, window);
    addShortcuts(host, window);
    host.journalInput(window);
    host.onRequest(latin1("focus"), [&host] {
        const QWidget* focus = QApplication::focusWidget();
        host.journal(latin1("focus ") + (focus ? focus->objectName() : QString()));
    });
    window->setGeometry(60, 60, 420, 560);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
