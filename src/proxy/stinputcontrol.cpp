#include "proxy/stinputcontrol.h"

#include "compat/draganddrop.h"
#include "compat/reachable.h"
#include "compat/stacking.h"
#include "compat/systeminput.h"
#include "compat/waiting.h"
#include "compat/widgets.h"
#include "proxy/clickfocus.h"
#include "proxy/eventkiller.h"
#include "proxy/heldmouse.h"
#include "proxy/postedcall.h"
#include "proxy/sterror.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QCursor>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>

#include <memory>

namespace {

const char hiddenMessage[] = "Error: widget is hidden by another window";

// In eighths of a degree.
const int anglePerStep = 120;

proxy::HeldMouse& heldMouse()
{
    return proxy::HeldMouse::instance();
}

QWidget* keyTarget()
{
    QWidget* popup = QApplication::activePopupWidget();
    if (!popup)
        return QApplication::focusWidget();
    return popup->focusWidget() ? popup->focusWidget() : popup;
}

// While a popup is open it gets all mouse input outside its own children, as with a user's mouse.
QWidget* mouseTarget(const QPoint& position)
{
    QWidget* under = compat::widgetAt(position);
    QWidget* popup = QApplication::activePopupWidget();
    return !popup || (under && under->window() == popup) ? under : popup;
}

QWidget* requiredMouseTarget(const QPoint& position)
{
    QWidget* target = mouseTarget(position);
    if (!target)
        proxy::raiseError(hiddenMessage);
    return target;
}

bool isPartOf(const QWidget* widget, const QWidget* owner)
{
    // Not QWidget::isAncestorOf(), which stops at windows: the list of an editor is one.
    while (widget && widget != owner)
        widget = widget->parentWidget();
    return widget != nullptr;
}

int keyOf(QChar character)
{
    const int code = character.toUpper().unicode();
    return code >= 32 && code <= 126 ? code : 0;
}

} // namespace

void STInputControl::syncEvents()
{
    if (!processEventsEnabled || !QCoreApplication::instance())
        return;
    compat::processEvents();
    compat::processEvents();
}

void STInputControl::postInputEvent(QWidget* target, QEvent* event)
{
    std::unique_ptr<QEvent> owned(event);
    const QPointer<QWidget> guarded(target);
    syncEvents();
    if (!guarded)
        proxy::raiseError(proxy::deadWidgetMessage);
    QCoreApplication::postEvent(target, owned.release());
    syncEvents();
}

void STInputControl::postKeyEvent(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    syncEvents();
    // The window of the widget that the keys are for can lose the focus for a moment, as when a dialog has just closed.
    if (keysAreDedicated && keyOwner && !keyTarget())
        compat::waitUntilActive(keyOwner);
    if (isKeyOwnerGone()) {
        if (type == QEvent::KeyRelease)
            return; // handling the press may have deleted the owner
        proxy::raiseError(proxy::deadWidgetMessage);
    }
    QWidget* target = keyTarget();
    if (target && mayGetKeys(target))
        postInputEvent(target, new compat::OwnInput<QKeyEvent>(type, key, modifiers, text, false, ushort(1)));
}

void STInputControl::dedicateKeysTo(QWidget* owner, KeyScope scope)
{
    keyOwner = owner;
    keyScope = scope;
    keysAreDedicated = true;
}

bool STInputControl::isKeyOwnerGone() const
{
    return keysAreDedicated && (!keyOwner || (keyScope == KeyScope::OpenEditor && !keyOwner->isVisible()));
}

bool STInputControl::mayGetKeys(const QWidget* target) const
{
    if (!keysAreDedicated || keyScope == KeyScope::Focus || isPartOf(target, keyOwner))
        return true;
    // The owner's focus can be that of another widget, and a list of completions has that of its field.
    return isPartOf(target->focusProxy(), keyOwner)
        || (keyOwner->focusProxy() && isPartOf(target, keyOwner->focusProxy()));
}

void STInputControl::keyPress(QChar character)
{
    postKeyEvent(QEvent::KeyPress, keyOf(character), Qt::NoModifier, character);
}

void STInputControl::keyRelease(QChar character)
{
    postKeyEvent(QEvent::KeyRelease, keyOf(character), Qt::NoModifier, character);
}

void STInputControl::keyClick(QChar character)
{
    keyPress(character);
    keyRelease(character);
}

void STInputControl::keyPress(int key, Qt::KeyboardModifiers modifiers)
{
    postKeyEvent(QEvent::KeyPress, key, modifiers, compat::keyCodeText(key));
}

void STInputControl::keyRelease(int key, Qt::KeyboardModifiers modifiers)
{
    postKeyEvent(QEvent::KeyRelease, key, modifiers, compat::keyCodeText(key));
}

void STInputControl::keyClick(int key, Qt::KeyboardModifiers modifiers)
{
    keyPress(key, modifiers);
    keyRelease(key, modifiers);
}

void STInputControl::typeText(const QString& text)
{
    for (const QChar character : text)
        keyClick(character);
}

void STInputControl::awaitInFront(QWidget* widget)
{
    awaited = widget;
}

void STInputControl::waitForAwaited(const QPoint& position)
{
    const QPointer<QWidget> widget(awaited.data());
    awaited = nullptr;
    if (!widget)
        return;
    compat::waitUntilInFront(widget, position);
    if (!widget)
        proxy::raiseError(proxy::deadWidgetMessage);
}

void STInputControl::mouseMove(const QPoint& position, Qt::KeyboardModifiers modifiers)
{
    syncEvents();
    waitForAwaited(position);
    if (QCursor::pos() == position)
        return;
    compat::setCursorPosition(position);
    const QPointer<QWidget> target(requiredMouseTarget(position));
    if (heldMouse().buttons() != Qt::NoButton)
        postDragMove(target, position, modifiers);
    syncEvents();
}

void STInputControl::postDragMove(
    const QPointer<QWidget>& target, const QPoint& position, Qt::KeyboardModifiers modifiers)
{
    // The move events that the windowing system makes of the cursor's jump carry no buttons and would end the drag.
    EventKiller killer(QEvent::MouseMove);
    target->installEventFilter(&killer);
    syncEvents();
    if (!target)
        proxy::raiseError(proxy::deadWidgetMessage);
    target->removeEventFilter(&killer);
    syncEvents();
    if (!target)
        proxy::raiseError(proxy::deadWidgetMessage);
    QCoreApplication::postEvent(target,
        compat::newMouseEvent(QEvent::MouseMove, target, position, Qt::NoButton, heldMouse().buttons(), modifiers));
    // If the application begins its drag and drop with that move, it runs a loop within this request, and the request
    // that ends the drag could not be executed.
    const int mark = compat::dragMark();
    proxy::postCall([mark] { compat::cancelDragSince(mark); });
    syncEvents();
}

bool STInputControl::isDragging()
{
    return heldMouse().buttons() != Qt::NoButton;
}

// Where Qt would have the events of a user's drag go.
QWidget* STInputControl::dragTarget(const QPoint& position)
{
    QWidget* pressed = heldMouse().pressedWidget();
    const QWidget* modal = QApplication::activeModalWidget();
    const bool isFree = pressed && pressed->isVisible() && !QApplication::activePopupWidget()
        && (!modal || modal == pressed->window());
    return isFree ? pressed : requiredMouseTarget(position);
}

void STInputControl::dragMove(const QPoint& position, Qt::KeyboardModifiers modifiers)
{
    syncEvents();
    if (heldMouse().isWithinMove())
        awaited = nullptr; // a picture of what is dragged may be in front
    waitForAwaited(position);
    if (QCursor::pos() == position)
        return;
    compat::setCursorPosition(position);
    heldMouse().postMove(dragTarget(position), position, modifiers);
}

void STInputControl::dragRelease(const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    dragMove(position, modifiers);
    heldMouse().letGo(button);
    requireMouseOwner();
    heldMouse().postRelease(dragTarget(position), position, button, modifiers);
}

void STInputControl::dedicateMouseTo(QWidget* owner)
{
    mouseOwner = owner;
    mouseIsDedicated = true;
}

void STInputControl::requireMouseOwner() const
{
    if (mouseIsDedicated && !mouseOwner)
        proxy::raiseError(proxy::deadWidgetMessage);
}

void STInputControl::letGo(QWidget* pressed, Qt::MouseButton button)
{
    heldMouse().letGo(button);
    if (pressed)
        QCoreApplication::postEvent(pressed,
            compat::newMouseEvent(
                QEvent::MouseButtonRelease, pressed, QCursor::pos(), button, heldMouse().buttons(), Qt::NoModifier));
}

void STInputControl::mousePress(Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    press(button, modifiers);
}

void STInputControl::mouseRelease(Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    release(button, modifiers);
}

QWidget* STInputControl::press(Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    requireMouseOwner();
    const QPoint position = QCursor::pos();
    heldMouse().hold(button); // even when there is nothing to press
    const QPointer<QWidget> target(requiredMouseTarget(position));
    const QPointer<QWidget> embedded(
        proxy::embeddedFocusTaker(target, position)); // before the press may change the scene
    heldMouse().press(target, position);
    try {
        postInputEvent(target,
            compat::newMouseEvent(
                QEvent::MouseButtonPress, target, position, button, heldMouse().buttons(), modifiers));
        if (target) // the press may have deleted it
            compat::activateWindow(target);
        if (target && proxy::acceptsClickFocus(target))
            compat::setFocus(target);
        if (embedded)
            compat::setFocus(embedded);
    } catch (...) {
        letGo(target, button);
        throw;
    }
    return target.data();
}

QWidget* STInputControl::release(Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    heldMouse().letGo(button);
    requireMouseOwner();
    const QPoint position = QCursor::pos();
    const QPointer<QWidget> target(requiredMouseTarget(position));
    postInputEvent(target,
        compat::newMouseEvent(QEvent::MouseButtonRelease, target, position, button, heldMouse().buttons(), modifiers));
    if (target && button == Qt::RightButton)
        postInputEvent(target,
            new QContextMenuEvent(QContextMenuEvent::Mouse, target->mapFromGlobal(position), position, modifiers));
    return target.data();
}

void STInputControl::mouseClick(const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    mouseMove(position, Qt::NoModifier);
    QPointer<QWidget> pressed;
    try {
        pressed = press(button, modifiers);
        release(button, modifiers);
    } catch (...) {
        letGo(pressed, button);
        throw;
    }
}

void STInputControl::mouseDrag(const QPoint& from, const QPoint& to, Qt::MouseButton button)
{
    mouseMove(from, Qt::NoModifier);
    QPointer<QWidget> pressed;
    QPointer<QWidget> released;
    try {
        pressed = press(button, Qt::NoModifier);
        requireMouseOwner();
        mouseMove(to, Qt::NoModifier);
        if (pressed) // the move may have deleted it
            released = release(button, Qt::NoModifier);
    } catch (...) {
        letGo(pressed, button);
        throw;
    }
    if (pressed && released == pressed)
        return;
    letGo(pressed, button);
    syncEvents();
}

void STInputControl::turnWheel(const QPoint& position, int horizontal, int vertical, Qt::KeyboardModifiers modifiers)
{
    for (int remaining = qAbs(horizontal) + qAbs(vertical); remaining > 0; --remaining) {
        const bool isHorizontal = remaining > qAbs(vertical);
        const Qt::Orientation orientation = isHorizontal ? Qt::Horizontal : Qt::Vertical;
        const int angle = (isHorizontal ? horizontal : vertical) < 0 ? -anglePerStep : anglePerStep;
        requireMouseOwner();
        const QPointer<QWidget> target(
            requiredMouseTarget(position)); // what was under the mouse may have scrolled away
        const Qt::MouseButtons buttons = heldMouse().buttons();
        const auto turn = [=] {
            if (target)
                compat::sendWheelEvent(target, position, orientation, angle, buttons, modifiers);
        };
        if (remaining > 1) {
            turn();
            syncEvents();
        } else {
            proxy::postCall(turn);
        }
    }
}

void STInputControl::mouseDoubleClick(const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    mouseClick(position, button, modifiers);
    syncEvents();
    const QPointer<QWidget> target(mouseTarget(position));
    if (!target)
        return;
    postInputEvent(
        target, compat::newMouseEvent(QEvent::MouseButtonDblClick, target, position, button, button, modifiers));
    if (target && proxy::acceptsClickFocus(target)) {
        compat::activateWindow(target);
        if (target)
            compat::setFocus(target);
        syncEvents();
    }
}
