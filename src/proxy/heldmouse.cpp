#include "proxy/heldmouse.h"

#include "compat/draganddrop.h"
#include "compat/widgets.h"
#include "proxy/postedcall.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <memory>

namespace proxy {

namespace {

struct NestingScope
{
    explicit NestingScope(int& counted)
        : count(counted)
    {
        ++count;
    }
    ~NestingScope() { --count; }
    Q_DISABLE_COPY(NestingScope)

    int& count;
};

// The point at this distance from the start towards the goal; the goal where that is nearer.
QPoint pointTowards(const QPoint& from, const QPoint& to, int distance)
{
    const QPoint offset = to - from;
    const double share = std::min(1.0, distance / std::hypot(offset.x(), offset.y()));
    return from + QPoint(qRound(offset.x() * share), qRound(offset.y() * share));
}

} // namespace

HeldMouse& HeldMouse::instance()
{
    static auto* const mouse = new HeldMouse; // kept until the process ends: a request may be on the stack
    return *mouse;
}

void HeldMouse::letGo(Qt::MouseButton button)
{
    held &= ~Qt::MouseButtons(button);
    if (held == Qt::NoButton)
        lateMoves.stop();
}

void HeldMouse::press(QWidget* widget, const QPoint& position)
{
    pressed = widget;
    pressedAt = position;
    hasMoved = false;
    ++dragNumber;
    unhandled = 0; // the application may have removed what was posted for the last drag
    lateMoves.protect(widget);
}

QWidget* HeldMouse::pressedWidget() const
{
    return pressed;
}

template <class Deliver>
void HeldMouse::post(Deliver deliver)
{
    ++unhandled;
    const int drag = dragNumber;
    postCall([this, deliver, drag] {
        if (drag == dragNumber)
            --unhandled;
        if (isServing)
            deliver();
    });
}

void HeldMouse::postMove(QWidget* target, const QPoint& position, Qt::KeyboardModifiers modifiers)
{
    const Qt::MouseButtons buttons = held;
    enum Step { Approach, Goal };
    const auto move = [=](const QPointer<QWidget>& receiver, const QPoint& to, Step step) {
        const bool wasWithinMove = isWithinMove();
        post([=] {
            if (!receiver || (step == Approach && isWithinMove() && !wasWithinMove))
                return; // the move before it has begun a drag already
            const NestingScope nested(movesOnStack);
            const std::unique_ptr<QEvent> event(
                compat::newMouseEvent(QEvent::MouseMove, receiver, to, Qt::NoButton, buttons, modifiers));
            QCoreApplication::sendEvent(receiver, event.get());
        });
    };
    if (pressed && !hasMoved && position != pressedAt) {
        const int distance = QApplication::startDragDistance() * 3 / 2 + 1; // as far along a diagonal, too
        move(pressed, pointTowards(pressedAt, position, distance), Approach);
        move(pressed, pointTowards(pressedAt, position, 2 * distance), Approach);
    }
    hasMoved = true;
    move(target, position, Goal);
}

void HeldMouse::postRelease(
    QWidget* target, const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    const QPointer<QWidget> receiver(target);
    const Qt::MouseButtons buttons = held;
    post([=] {
        if (!receiver)
            return;
        const std::unique_ptr<QEvent> event(
            compat::newMouseEvent(QEvent::MouseButtonRelease, receiver, position, button, buttons, modifiers));
        QCoreApplication::sendEvent(receiver, event.get());
        if (!receiver || button != Qt::RightButton)
            return;
        QContextMenuEvent request(QContextMenuEvent::Mouse, receiver->mapFromGlobal(position), position, modifiers);
        QCoreApplication::sendEvent(receiver, &request);
    });
}

void HeldMouse::abandon()
{
    isServing = false;
    // Posted: a drag and drop that has only just begun does not run its loop yet.
    if (held != Qt::NoButton || isWithinMove())
        postCall(compat::cancelDrag);
}

} // namespace proxy
