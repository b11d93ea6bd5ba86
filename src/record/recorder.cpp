#include "record/recorder.h"

#include "compat/systeminput.h"
#include "compat/widgets.h"
#include "locate/json.h"
#include "locate/references.h"
#include "locate/shown.h"
#include "record/eventkinds.h"
#include "record/eventwriter.h"
#include "record/itemat.h"
#include "record/menuaction.h"
#include "record/mouseplace.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QShortcutEvent>
#include <QWheelEvent>

namespace record {

namespace {

bool isOfUser(const QEvent* event)
{
    return event->spontaneous() || compat::isOwnInput(event);
}

bool isModifier(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Meta
        || key == Qt::Key_AltGr || key == Qt::Key_CapsLock || key == Qt::Key_NumLock || key == Qt::Key_ScrollLock;
}

// Tool tips and splash screens, which come and go by themselves.
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
    windows.start();
    clock.start();
    isRecording = true;
    QCoreApplication::instance()->installEventFilter(this);
}

void Recorder::stop()
{
    if (!isRecording)
        return;
    recordEndOfDrag();
    const QByteArray value = valueOfLast();
    end();
    lastValue = value;
}

void Recorder::end()
{
    if (isRecording && QCoreApplication::instance())
        QCoreApplication::instance()->removeEventFilter(this);
    isRecording = false;
    lastDelivery = Delivery();
    lastUsed = nullptr;
    pressed = nullptr;
    toldValue.clear();
    windows.clear();
}

void Recorder::abandon()
{
    end();
    queue.clear();
    windows.takeFirst();
    lastValue.clear();
}

// The widget that had the last input, and what it holds now.
QByteArray Recorder::valueOfLast() const
{
    const QString choice = choiceIn(lastUsed);
    QByteArray json;
    if (lastUsed) { // the model of a combo box may have deleted it
        locate::JsonObject object(json);
        addHeld(object, lastUsed, choice);
    }
    return json;
}

QByteArray Recorder::take()
{
    recordEndOfDrag();
    const QByteArray value = isRecording ? valueOfLast() : lastValue;
    const bool isNews = !value.isEmpty() && (!queue.isEmpty() || value != toldValue);
    toldValue = value;
    lastValue.clear();
    QByteArray json;
    {
        locate::JsonObject object(json);
        object.add("dropped", queue.dropped());
        object.field("recording") += isRecording ? "true" : "false";
        object.field("events") += queue.take();
        const QByteArray shown = windows.takeFirst();
        if (!shown.isEmpty())
            object.field("windows").append('[').append(shown).append(']');
        if (isNews)
            object.field("last") += value;
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
    if (family == Family::KeyRelease)
        lastDelivery = Delivery(); // what comes next is pressed anew
    else if (family == Family::Shortcut)
        observeShortcut(watched, event);
    else if (family == Family::Window && watched->isWidgetType() && !event->spontaneous())
        observeWindow(watched, event);
    else if (family == Family::Close && watched->isWidgetType() && event->spontaneous())
        recordEvent("close", static_cast<QWidget*>(watched), [](locate::JsonObject&) {});
    else if (family == Family::Structure && watched->isWidgetType())
        observeStructure(watched, event);
    else if (family == Family::Input && watched->isWidgetType())
        observeInput(static_cast<QWidget*>(watched), event);
}

void Recorder::observeInput(QWidget* receiver, QEvent* event)
{
    switch (event->type()) {
    case QEvent::FocusIn:
        recordEvent("focus", targetOf(receiver, QPoint()).widget,
            [event](locate::JsonObject& object) { addFocus(object, *static_cast<QFocusEvent*>(event)); });
        break;
    case QEvent::InputMethod: { // sent by input methods, not by the windowing system
        const auto& input = *static_cast<QInputMethodEvent*>(event);
        if (!input.commitString().isEmpty())
            recordEvent("text", targetOf(receiver, QPoint()).widget, [&](locate::JsonObject& object) {
                addText(object, receiver, input, passwordsAre == Passwords::Recorded);
            });
        break;
    }
    case QEvent::Drop:
        pressed = nullptr;
        observePlace("drop", receiver, compat::positionOf(*static_cast<QDropEvent*>(event)), ItemPlace::Told);
        break;
    case QEvent::ContextMenu: { // that of the mouse follows a press or a release
        const auto& menu = *static_cast<QContextMenuEvent*>(event);
        if (menu.reason() == QContextMenuEvent::Keyboard
            && !rememberAndDetectPropagation({event->type(), receiver, menu.globalPos()}))
            observePlace("context menu", receiver, menu.pos(), ItemPlace::Untold);
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
    if (rememberAndDetectPropagation({event->type(), receiver, place}))
        return;
    const QPoint position = isWheel ? compat::positionOf(wheel) : compat::positionOf(mouse);
    const Target target = targetOf(receiver, position);
    const QPointer<QWidget> guard(receiver);
    const QAction* chosen = nullptr;
    if (const auto* menu = qobject_cast<QMenu*>(receiver))
        chosen = event->type() == QEvent::MouseButtonRelease ? actionChosenBy(mouse, *menu) : nullptr;
    const QByteArray item = isWheel ? QByteArray() : itemAt(askedFor(receiver, target), position);
    if (event->type() == QEvent::MouseButtonPress)
        pressedAt = place;
    const bool isDrag = event->type() == QEvent::MouseButtonRelease
        && (place - pressedAt).manhattanLength() >= QApplication::startDragDistance();
    const QByteArray over = guard && isDrag ? endOfDrag(receiver, place) : QByteArray();
    if (!guard || !isRecording)
        return;
    if (!isWheel) // Qt counts the buttons that the windowing system tells, not those that the agent holds
        pressed = event->type() == QEvent::MouseButtonPress && event->spontaneous() ? target.widget : nullptr;
    recordEvent(
        rowOf(event->type())->kind, target.widget,
        [&](locate::JsonObject& object) {
            if (isWheel)
                addWheel(object, target, wheel);
            else
                addMouse(object, target, mouse);
            if (!over.isEmpty())
                object.field("over") += over;
        },
        item);
    if (chosen)
        recordAction(receiver, chosen);
}

// Drag and drop keeps the release from the widget that was pressed, and where nothing takes what is dragged there is no event
// at all.
void Recorder::recordEndOfDrag()
{
    if (!pressed || QApplication::mouseButtons() != Qt::NoButton)
        return;
    QWidget* const source = pressed;
    pressed = nullptr;
    recordEvent("drag end", source, [](locate::JsonObject&) {});
}

// For events that only have a place: a drop, since drag and drop keeps the release from the widget that was pressed, and a
// context menu that a key opens.
void Recorder::observePlace(const char* kind, QWidget* receiver, const QPoint& position, ItemPlace place)
{
    const Target target = targetOf(receiver, position);
    const QPointer<QWidget> guard(receiver);
    const QByteArray item = itemAt(askedFor(receiver, target), position, place);
    if (guard && isRecording)
        recordEvent(
            kind, target.widget, [&target](locate::JsonObject& object) { addPlace(object, target); }, item);
}

void Recorder::observeKey(QWidget* receiver, QEvent* event)
{
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (isModifier(key.key())
        || rememberAndDetectPropagation({event->type(), receiver, QPoint(key.key(), int(key.modifiers()))}))
        return;
    const Target target = targetOf(receiver, QPoint());
    recordEvent("key", target.widget, [&](locate::JsonObject& object) {
        addKey(object, receiver, key, passwordsAre == Passwords::Recorded);
        if (target.isInList)
            object.field("list") += "true";
    });
    if (const auto* menu = qobject_cast<QMenu*>(receiver)) {
        if (const QAction* chosen = actionChosenBy(key, *menu))
            recordAction(receiver, chosen);
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
    recordEvent("shortcut", targetOf(widget, QPoint()).widget, [&](locate::JsonObject& object) {
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
    if (!window->isWindow()) {
        windows.forgetDescription(window->window());
        return;
    }
    if (isHint(window))
        return;
    if (event->type() == QEvent::Show) {
        windows.add(window);
        recordEvent("shown", window, [window](locate::JsonObject& object) {
            object.add("class", window->metaObject()->className());
            object.addUnlessEmpty("name", window->objectName());
            object.addUnlessEmpty("title", window->windowTitle());
            if (window->isModal())
                object.field("modal") += "true";
        });
        return;
    }
    const qint64 number = windows.remove(window);
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

// Remembers the delivery. True if the last one was the same event for a widget inside this one, which has ignored it.
bool Recorder::rememberAndDetectPropagation(const Delivery& delivery)
{
    const bool isSame
        = lastDelivery.receiver && lastDelivery.type == delivery.type && lastDelivery.position == delivery.position;
    const QWidget* inner = isSame ? lastDelivery.receiver->parentWidget() : nullptr;
    while (inner && inner != delivery.receiver)
        inner = inner->parentWidget();
    lastDelivery = delivery;
    return inner != nullptr;
}

void Recorder::recordAction(QWidget* menu, const QAction* action)
{
    recordEvent(
        "action", menu, [](locate::JsonObject&) {}, menuItem(menu, action));
}

void Recorder::recordEvent(const char* kind, QWidget* widget, const AddFields& addFields, const QByteArray& item)
{
    const bool isInput = isInputKind(kind);
    const QPointer<QWidget> guard(widget);
    const QString choice = isInput && lastUsed && lastUsed != widget ? choiceIn(lastUsed) : QString();
    if (!guard)
        return;
    QByteArray json;
    {
        locate::JsonObject object(json);
        object.add("kind", kind);
        object.add("time", clock.elapsed());
        addWidget(object, widget);
        addFields(object);
        if (!item.isEmpty())
            object.field("item") += item;
        if (isInput)
            addSurroundings(object, widget, choice, isKeyKind(kind));
    }
    if (isInput)
        lastUsed = widget;
    if (queue.append(json))
        windows.forgetDescriptions();
}

// The widget may be gone, or have got other texts, by the time the server takes the event; so may its window, which is
// described only where its last description is out of date, since that takes long in a window of many widgets.
void Recorder::addSurroundings(locate::JsonObject& object, QWidget* widget, const QString& previousChoice, bool isKey)
{
    const bool isSame = lastUsed == widget;
    if (lastUsed && !isSame) {
        locate::JsonObject previous(object.field("previous"));
        addHeld(previous, lastUsed, previousChoice);
    }
    QWidget* const window = widget->window();
    if (window->windowType() == Qt::Popup)
        return;
    if (windows.isDescribed(window)) {
        if (!isSame || !isKey)
            addFacts(object, widget);
        return;
    }
    const QByteArray contents = windows.describe(window);
    if (!contents.isEmpty())
        object.field("tree") += contents;
}

void Recorder::observeStructure(QObject* watched, QEvent* event)
{
    // A child that is being deleted says no more that it is a widget.
    const auto* child = event->type() == QEvent::ChildRemoved ? static_cast<QChildEvent*>(event)->child() : nullptr;
    if (!child || locate::References::all().isKnown(child))
        windows.forgetDescription(static_cast<QWidget*>(watched)->window());
}

} // namespace record
