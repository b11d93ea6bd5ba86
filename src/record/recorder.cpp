#include "record/recorder.h"

#include "compat/systeminput.h"
#include "compat/widgets.h"
#include "locate/json.h"
#include "locate/references.h"
#include "locate/shown.h"
#include "locate/snapshot.h"
#include "record/eventwriter.h"
#include "record/itemat.h"
#include "record/menuaction.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QShortcutEvent>
#include <QWheelEvent>

namespace record {

namespace {

enum class Family { None, Input, Shortcut, Window };

struct KindRow
{
    QEvent::Type type;
    Family family;
    const char* kind;
};

const KindRow kindRows[] = {
    {QEvent::MouseButtonPress, Family::Input, "press"},
    {QEvent::MouseButtonRelease, Family::Input, "release"},
    {QEvent::MouseButtonDblClick, Family::Input, "double click"},
    {QEvent::Wheel, Family::Input, "wheel"},
    {QEvent::KeyPress, Family::Input, "key"},
    {QEvent::InputMethod, Family::Input, "text"},
    {QEvent::FocusIn, Family::Input, "focus"},
    {QEvent::Shortcut, Family::Shortcut, "shortcut"},
    {QEvent::Show, Family::Window, "shown"},
    {QEvent::Hide, Family::Window, "closed"},
};

const KindRow* rowOf(QEvent::Type type)
{
    for (const KindRow& row : kindRows) {
        if (type == row.type)
            return &row;
    }
    return nullptr;
}

bool isOfUser(const QEvent* event)
{
    return event->spontaneous() || compat::isOwnInput(event);
}

bool isModifier(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Meta
        || key == Qt::Key_AltGr || key == Qt::Key_CapsLock || key == Qt::Key_NumLock || key == Qt::Key_ScrollLock;
}

// Little windows that come and go under the mouse.
bool isHint(const QWidget* window)
{
    return window->windowType() == Qt::ToolTip || window->windowType() == Qt::SplashScreen;
}

} // namespace

Recorder& Recorder::instance()
{
    static auto* const recorder = new Recorder; // kept until the process ends: one of its events may be on the stack
    return *recorder;
}

void Recorder::start(Passwords passwords)
{
    abandon();
    passwordsAre = passwords;
    const QWidgetList topLevels = QApplication::topLevelWidgets();
    for (const QWidget* window : topLevels) {
        if (window->isVisible())
            windows.insert(window, locate::References::all().numberOf(window));
    }
    clock.start();
    isRecording = true;
    QCoreApplication::instance()->installEventFilter(this);
}

void Recorder::stop()
{
    if (isRecording && QCoreApplication::instance())
        QCoreApplication::instance()->removeEventFilter(this);
    isRecording = false;
    lastOffer = Offer();
    lastDescribed = nullptr;
    windows.clear();
}

void Recorder::abandon()
{
    stop();
    queue.clear();
}

QByteArray Recorder::take()
{
    QByteArray json;
    {
        locate::JsonObject object(json);
        object.add("dropped", queue.dropped());
        object.field("recording") += isRecording ? "true" : "false";
        object.field("events") += queue.take();
    }
    return json;
}

bool Recorder::eventFilter(QObject* watched, QEvent* event)
{
    if (!rowOf(event->type()))
        return false;
    const QPointer<QObject> guard(watched);
    const bool wasAlive = !guard.isNull();
    try {
        observe(watched, event);
    } catch (...) { // a model of the application's own may throw, and Qt is behind this
    }
    return wasAlive && guard.isNull();
}

void Recorder::observe(QObject* watched, QEvent* event)
{
    const Family family = rowOf(event->type())->family;
    if (family == Family::Shortcut)
        observeShortcut(watched, event);
    else if (family == Family::Window && watched->isWidgetType() && !event->spontaneous())
        observeWindow(watched, event);
    else if (family == Family::Input && watched->isWidgetType())
        observeInput(static_cast<QWidget*>(watched), event);
}

void Recorder::observeInput(QWidget* receiver, QEvent* event)
{
    switch (event->type()) {
    case QEvent::FocusIn:
        tell("focus", targetOf(receiver, QPoint()).widget,
            [event](locate::JsonObject& object) { addFocus(object, *static_cast<QFocusEvent*>(event)); });
        break;
    case QEvent::InputMethod: { // sent by input methods, not by the windowing system
        const auto& input = *static_cast<QInputMethodEvent*>(event);
        if (!input.commitString().isEmpty())
            tell("text", targetOf(receiver, QPoint()).widget,
                [&](locate::JsonObject& object) { addText(object, receiver, input, passwordsAre == Passwords::Told); });
        break;
    }
    case QEvent::KeyPress:
        if (isOfUser(event))
            observeKey(receiver, event);
        break;
    default:
        if (isOfUser(event))
            observeMouse(receiver, event);
    }
}

void Recorder::observeMouse(QWidget* receiver, QEvent* event)
{
    const bool isWheel = event->type() == QEvent::Wheel;
    const auto& mouse = *static_cast<QMouseEvent*>(event);
    const auto& wheel = *static_cast<QWheelEvent*>(event);
    const QPoint place = isWheel ? compat::globalPositionOf(wheel) : compat::globalPositionOf(mouse);
    if (isPassedOn({event->type(), receiver, place}))
        return;
    const QPoint position = isWheel ? compat::positionOf(wheel) : compat::positionOf(mouse);
    const Target target = targetOf(receiver, position);
    const QPointer<QWidget> guard(receiver);
    const QAction* chosen = nullptr;
    if (const auto* menu = qobject_cast<QMenu*>(receiver))
        chosen = event->type() == QEvent::MouseButtonRelease ? actionChosenBy(mouse, *menu) : nullptr;
    // An item view is asked itself, with positions in its viewport, which is the receiver.
    QWidget* const asked = receiver->parentWidget() && target.widget != receiver ? receiver->parentWidget() : receiver;
    const QByteArray item = isWheel ? QByteArray() : itemAt(asked, position);
    if (!guard || !isRecording)
        return;
    tell(
        rowOf(event->type())->kind, target.widget,
        [&](locate::JsonObject& object) {
            if (isWheel)
                addWheel(object, target, wheel);
            else
                addMouse(object, target, mouse);
        },
        item);
    if (chosen)
        tellAction(receiver, chosen);
}

void Recorder::observeKey(QWidget* receiver, QEvent* event)
{
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (isModifier(key.key()) || isPassedOn({event->type(), receiver, QPoint(key.key(), int(key.modifiers()))}))
        return;
    tell("key", targetOf(receiver, QPoint()).widget,
        [&](locate::JsonObject& object) { addKey(object, receiver, key, passwordsAre == Passwords::Told); });
    if (const auto* menu = qobject_cast<QMenu*>(receiver)) {
        if (const QAction* chosen = actionChosenBy(key, *menu))
            tellAction(receiver, chosen);
    }
}

void Recorder::observeShortcut(QObject* receiver, QEvent* event)
{
    const auto& shortcut = *static_cast<QShortcutEvent*>(event);
    QWidget* widget = receiver->isWidgetType() ? static_cast<QWidget*>(receiver) : QApplication::focusWidget();
    widget = widget ? widget : QApplication::activeWindow();
    if (!widget)
        return;
    const auto* action = qobject_cast<const QAction*>(receiver);
    tell("shortcut", targetOf(widget, QPoint()).widget, [&](locate::JsonObject& object) {
        object.addUnlessEmpty("key", shortcut.key().toString(QKeySequence::PortableText));
        if (shortcut.isAmbiguous())
            object.field("ambiguous") += "true";
        if (!action)
            return;
        object.addUnlessEmpty("action", action->objectName());
        object.addUnlessEmpty("text", locate::shownText(action->text(), locate::Markup::Mnemonics));
    });
}

void Recorder::observeWindow(QObject* watched, QEvent* event)
{
    auto* const window = static_cast<QWidget*>(watched);
    if (!window->isWindow() || isHint(window))
        return;
    if (event->type() == QEvent::Show) {
        windows.insert(window, locate::References::all().numberOf(window));
        tell("shown", window, [window](locate::JsonObject& object) {
            object.add("class", window->metaObject()->className());
            object.addUnlessEmpty("name", window->objectName());
            object.addUnlessEmpty("title", window->windowTitle());
            if (window->isModal())
                object.field("modal") += "true";
        });
        return;
    }
    const qint64 number = windows.take(window);
    if (!number)
        return;
    QByteArray json;
    {
        locate::JsonObject object(json);
        object.add("kind", "closed");
        object.add("time", clock.elapsed());
        object.add("ref", number);
        object.add("window", number);
    }
    queue.append(json);
}

// Whether the last event of a user was the same one, for a widget inside that has ignored it.
bool Recorder::isPassedOn(const Offer& offer)
{
    const bool isSame = lastOffer.receiver && lastOffer.type == offer.type && lastOffer.position == offer.position;
    const QWidget* inner = isSame ? lastOffer.receiver->parentWidget() : nullptr;
    while (inner && inner != offer.receiver)
        inner = inner->parentWidget();
    lastOffer = offer;
    return inner != nullptr;
}

void Recorder::tellAction(QWidget* menu, const QAction* action)
{
    tell(
        "action", menu, [](locate::JsonObject&) {}, menuItem(menu, action));
}

void Recorder::tell(const char* kind, QWidget* widget, const AddFields& addFields, const QByteArray& item)
{
    QByteArray json;
    bool tellsWindow = false;
    {
        locate::JsonObject object(json);
        object.add("kind", kind);
        object.add("time", clock.elapsed());
        addWidget(object, widget);
        addFields(object);
        if (!item.isEmpty())
            object.field("item") += item;
        tellsWindow = addWindow(object, widget, kind);
    }
    if (tellsWindow)
        lastDescribed = widget;
    if (queue.append(json))
        lastDescribed = nullptr;
}

// Adds what is in the window now, where that is worth it: before each press, and where keys or the wheel come to another
// widget. A server may ask when the window is closed already.
bool Recorder::addWindow(locate::JsonObject& object, QWidget* widget, const char* kind)
{
    const QByteArray name(kind);
    const bool isInput = name == "press" || name == "double click"
        || ((name == "wheel" || name == "key" || name == "text" || name == "shortcut") && widget != lastDescribed);
    if (!isInput || widget->window()->windowType() == Qt::Popup)
        return false;
    const QByteArray contents = locate::snapshotWithoutItems(widget->window());
    if (contents.isEmpty() || contents.size() > mostBytesOfWindow)
        return false;
    object.field("tree") += contents;
    return true;
}

} // namespace record
