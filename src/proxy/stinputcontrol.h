#pragma once

#include <QtCore/QEvent>
#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QString>

class QWidget;

// Synthetic keyboard and mouse input, as near to a user's as an application can be given: the real cursor moves, and
// each event is posted to the widget that a user's input would reach. All positions are global screen coordinates in
// pixels. An operation that finds no widget under the mouse raises "Error: widget is hidden by another window"; keys
// without a focus widget go nowhere, silently.
class STInputControl
{
public:
    virtual ~STInputControl() = default;

protected:
    // Lets the application handle what is pending, but not the agent's socket: no command may start within another.
    // Twice, so that what the first round posts is handled too. Does nothing while processEventsEnabled is false.
    void syncEvents();

    // Posts an event between two syncEvents(); takes ownership of it. Raises "Internal error, proxy without widget"
    // when the target dies before the event is posted.
    void postInputEvent(QWidget* target, QEvent* event);

    // A character as typed: its key code is that of its upper-case form if it is printable ASCII, else 0.
    void keyPress(QChar character);
    void keyRelease(QChar character);
    void keyClick(QChar character);
    // A Qt::Key, for the keys that have no character. The event carries no text.
    void keyPress(int key, Qt::KeyboardModifiers modifiers);
    void keyRelease(int key, Qt::KeyboardModifiers modifiers);
    void keyClick(int key, Qt::KeyboardModifiers modifiers);
    void typeText(const QString& text);
    // From now on all keys are for this widget. Once the application has deleted it, a key press raises "Internal
    // error, proxy without widget" and a release is dropped, instead of reaching whatever has the focus then.
    void dedicateKeysTo(QWidget* owner);

    // Has the next move of the mouse wait until the widget's window is in front where the mouse goes.
    void awaitInFront(QWidget* widget);
    // While a button is held this is a drag: the application sees a move event with the held buttons.
    void mouseMove(const QPoint& position, Qt::KeyboardModifiers modifiers);
    // At the cursor's position. A button stays held, from one command to the next, until it is released.
    void mousePress(Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void mouseRelease(Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void mouseClick(const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    // Press, release, double click: there is no second press and no closing release.
    void mouseDoubleClick(const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);

    // False: events are only posted, for the application to handle when the command is over.
    bool processEventsEnabled = true;

private:
    void postKeyEvent(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString& text);
    void postDragMove(const QPointer<QWidget>& target, const QPoint& position, Qt::KeyboardModifiers modifiers);

    void waitForAwaited(const QPoint& position);

    QPointer<QWidget> awaited;
    QPointer<QWidget> keyOwner;
    bool keysAreDedicated = false;
};
