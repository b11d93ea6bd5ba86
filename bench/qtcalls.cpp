#include "qtcalls.h"

#include "compat/systeminput.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QSystemTrayIcon>

namespace {

// Keeps the compiler from leaving out what is not used.
volatile int sink = 0;

void use(bool value)
{
    sink = sink + value;
}

template <class Widget>
Widget* named(const QWidget* window, const char* name)
{
    return window->findChildren<Widget*>(QString::fromLatin1(name)).value(0);
}

void handleEvents()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
}

void bringToFront(QWidget* window)
{
    window->activateWindow();
    window->raise();
}

// As the agent does to see whether the window has to be moved onto the screen.
void readGeometry(const QWidget* widget)
{
    use(QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size()).isEmpty());
}

// Two places in turn, and others than the agent's: a cursor that is there already is not moved.
QPoint nextPoint(const QWidget* widget)
{
    static bool turn = false;
    turn = !turn;
    return widget->mapToGlobal(widget->rect().center() + QPoint(turn ? 3 : 4, 0));
}

void postMouse(QWidget* target, QEvent::Type type, const QPoint& position, Qt::MouseButtons buttons)
{
    QCoreApplication::postEvent(target,
        new QMouseEvent(type, target->mapFromGlobal(position), position, Qt::LeftButton, buttons, Qt::NoModifier));
}

void listWindows(QWidget*)
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (const QWidget* widget : widgets)
        use(widget->isVisible() && widget->windowTitle().isEmpty());
}

void listTree(QWidget* window)
{
    const QList<QWidget*> widgets = window->findChildren<QWidget*>();
    for (const QWidget* widget : widgets)
        use(widget->isVisible() && widget->metaObject()->className() && widget->objectName().isEmpty());
}

void identify(QWidget*)
{
    use(QApplication::widgetAt(QCursor::pos()) != nullptr);
}

void locate(QWidget* window)
{
    const QWidget* widget = named<QWidget>(window, "button55");
    bringToFront(window);
    QCursor::setPos(nextPoint(widget));
}

// A cursor that is there already is not moved.
void moveCursor(const QPoint& position)
{
    if (QCursor::pos() != position)
        QCursor::setPos(position);
}

// The windowing system does this for a user's press; Qt does not do it for a posted one.
void giveFocus(QWidget* target)
{
    target->activateWindow();
    target->setFocus(Qt::OtherFocusReason);
}

void click(QWidget* window)
{
    const QWidget* button = named<QWidget>(window, "button55");
    bringToFront(window);
    readGeometry(button);
    handleEvents();
    const QPoint point = nextPoint(button);
    moveCursor(point);
    QWidget* target = QApplication::widgetAt(point);
    postMouse(target, QEvent::MouseButtonPress, point, Qt::LeftButton);
    giveFocus(target);
    postMouse(target, QEvent::MouseButtonRelease, point, Qt::NoButton);
}

// To whatever has the focus when all that was before is handled.
void pressKey(int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        handleEvents();
        QWidget* target = QApplication::focusWidget();
        handleEvents();
        QCoreApplication::postEvent(target, new QKeyEvent(type, key, modifiers, text));
        handleEvents();
    }
}

// To whatever is under the cursor: the events that were handled before can have changed it.
QWidget* postMouseAtCursor(QEvent::Type type, Qt::MouseButtons buttons)
{
    const QPoint position = QCursor::pos();
    QWidget* target = QApplication::widgetAt(position);
    handleEvents();
    postMouse(target, type, position, buttons);
    handleEvents();
    return target;
}

// A click into the field, its text deleted, one character typed.
void enterText(QWidget* window)
{
    const auto* line = named<QLineEdit>(window, "line");
    bringToFront(window);
    readGeometry(line);
    handleEvents();
    const QPoint point = nextPoint(line);
    handleEvents();
    moveCursor(point);
    use(QApplication::widgetAt(point) != nullptr);
    handleEvents();
    giveFocus(postMouseAtCursor(QEvent::MouseButtonPress, Qt::LeftButton));
    postMouseAtCursor(QEvent::MouseButtonRelease, Qt::NoButton);
    pressKey(Qt::Key_Home, Qt::NoModifier, QString());
    pressKey(Qt::Key_End, Qt::ShiftModifier, QString());
    pressKey(Qt::Key_Backspace, Qt::NoModifier, QString());
    pressKey(Qt::Key_A, Qt::NoModifier, QString::fromLatin1("a"));
}

void typeLetter(QWidget* window)
{
    bringToFront(window);
    readGeometry(window);
    handleEvents();
    pressKey(Qt::Key_A, Qt::NoModifier, QString::fromLatin1("a"));
}

void readText(QWidget* window)
{
    use(named<QWidget>(window, "button55")->property("text").toString().isEmpty());
}

void readTitle(QWidget* window)
{
    use(window->windowTitle().isEmpty());
}

void moveMouse(QWidget* window)
{
    const QWidget* widget = named<QWidget>(window, "line");
    const QPoint point = nextPoint(widget);
    // Twice: for the command, and for its move, since the position of a mouse command is parsed in between.
    for (int turn = 0; turn < 2; ++turn) {
        bringToFront(window);
        readGeometry(widget);
        handleEvents();
    }
    handleEvents();
    moveCursor(point);
    use(QApplication::widgetAt(point) != nullptr);
    handleEvents();
}

void moveWindow(QWidget* window)
{
    static int turn = 0;
    bringToFront(window);
    turn = 1 - turn;
    window->move(30 + turn, 20);
}

void resizeWindow(QWidget* window)
{
    static int turn = 0;
    bringToFront(window);
    turn = 1 - turn;
    window->resize(910 + turn, 500);
}

void locateIcon(QWidget*)
{
    const QList<QSystemTrayIcon*> icons = qApp->findChildren<QSystemTrayIcon*>(QString::fromLatin1("icon"));
    use(!icons.isEmpty() && icons.first()->geometry().isEmpty());
}

void turnWheel(QWidget* window)
{
    moveMouse(window);
    auto* line = named<QLineEdit>(window, "line");
    compat::sendWheelEvent(
        line, line->mapToGlobal(line->rect().center()), Qt::Vertical, 120, Qt::NoButton, Qt::NoModifier);
}

void setClipboard(QWidget*)
{
    static int turn = 0;
    turn = 1 - turn;
    QApplication::clipboard()->setText(QString::fromLatin1(turn ? "milk" : "water"));
}

void moveFocus(QWidget* window)
{
    static int turn = 0;
    turn = 1 - turn;
    bringToFront(window);
    readGeometry(window);
    handleEvents();
    named<QLineEdit>(window, turn ? "line" : "other")->setFocus(Qt::TabFocusReason);
}

void nothing(QWidget*) { }

struct Row
{
    const char* command;
    void (*call)(QWidget* window);
};

const Row rows[] = {{"1", listWindows}, {"2", listTree}, {"3", identify}, {"4", locate}, {"5", click}, {"6", enterText},
    {"7", readText}, {"8", readTitle}, {"9", moveMouse}, {"10", moveWindow}, {"11", resizeWindow}, {"12", locateIcon},
    {"+extensions", nothing}, {"+2", listTree}, {"+4", locate}, {"+5", click}, {"+6", enterText}, {"+7", readText},
    {"+9", moveMouse}, {"+scroll", nothing}, {"+item", nothing}, {"+press", typeLetter}, {"+type", typeLetter},
    {"+wheel", turnWheel}, {"+clipboard", setClipboard}, {"+focus", moveFocus}};

} // namespace

bool callQt(const QByteArray& command, QWidget* window)
{
    for (const Row& row : rows) {
        if (command == row.command) {
            row.call(window);
            return true;
        }
    }
    return false;
}
