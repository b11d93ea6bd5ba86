#pragma once

#include "proxy/latemovefilter.h"

#include <QtCore/QPoint>
#include <QtCore/QPointer>

class QWidget;

namespace proxy {

// The mouse buttons that requests hold down, for the whole process: a press in one request and a release in a later one
// form a drag. The moves and the release of such a drag are only posted, since the application may run an event loop as
// it handles one of them, for its drag and drop or for a dialog. Positions are global screen coordinates in pixels.
class HeldMouse
{
public:
    static HeldMouse& instance();

    Qt::MouseButtons buttons() const { return held; }
    // Also when there is nothing to press.
    void hold(Qt::MouseButton button) { held |= button; }
    void letGo(Qt::MouseButton button);
    // The widget that gets the press, and what belongs to the drag that begins with it.
    void press(QWidget* widget, const QPoint& position);
    QWidget* pressedWidget() const;

    // Has the application handle a move, or the release of a button, once it is back in its event loop. The first move
    // after a press is preceded by two near the press: Qt starts a drag only at the second move that is far enough
    // away, and must not find that at the goal already.
    void postMove(QWidget* target, const QPoint& position, Qt::KeyboardModifiers modifiers);
    void postRelease(QWidget* target, const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    // Whether a posted move or release has not been handled yet.
    bool hasUnhandled() const { return unhandled > 0; }
    // Whether a posted move is being handled, so that the application runs a loop of its own in it.
    bool isWithinMove() const { return movesOnStack > 0; }
    // From now on there is a connection whose requests can end a drag.
    void serve() { isServing = true; }
    // The connection has ended: forgets what is posted and not handled yet, and if a button is held, ends the
    // application's drag and drop without a drop.
    void abandon();

private:
    template <class Deliver>
    void post(Deliver deliver);

    Qt::MouseButtons held = Qt::NoButton;
    QPointer<QWidget> pressed;
    QPoint pressedAt;
    bool hasMoved = false;
    int unhandled = 0;
    int movesOnStack = 0;
    int dragNumber = 0;
    bool isServing = true;
    LateMoveFilter lateMoves;
};

} // namespace proxy
