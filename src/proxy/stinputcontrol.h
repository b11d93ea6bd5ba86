#pragma once

#include <QtCore/QEvent>
#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QString>

class QWidget;

// Synthetic keyboard and mouse input that is as close to a user's as possible: the real cursor moves, and each event is
// posted to the widget that a user's input would reach. All positions are global screen coordinates in pixels. An
// operation that finds no widget under the mouse raises "Error: widget is hidden by another window"; keys without a
// focus widget go nowhere, silently.
class STInputControl
{
public:
    virtual ~STInputControl() = default;

protected:
    // Have the operation's events handled as they are posted, or only posted, as for an operation's last input, which
    // the application handles when the command is over. Either lasts until the next operation starts.
    void startProcessingEvents() { processEventsEnabled = true; }
    void stopProcessingEvents() { processEventsEnabled = false; }

    // Stops the processing of events as long as it lives, and restores it even if something throws.
    class PostingScope
    {
    public:
        explicit PostingScope(STInputControl& owner)
            : control(owner)
            , wasEnabled(owner.processEventsEnabled)
        {
            control.stopProcessingEvents();
        }
        ~PostingScope() { control.processEventsEnabled = wasEnabled; }
        Q_DISABLE_COPY(PostingScope)

    private:
        STInputControl& control;
        const bool wasEnabled;
    };

    // Lets the application handle pending events, except those of the agent's socket: no command may start within
    // another. Twice, so that what the first round posts is handled too. Does nothing while processing is stopped.
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
    // Which widgets get the keys that are for one of them, the owner.
    enum class KeyScope {
        Focus, // the one that has the focus
        Owner, // the owner and what belongs to it, such as its editor; keys that others would get are dropped
        OpenEditor, // the same, and an owner that is closed counts as deleted
    };
    // From now on all keys are for this widget. Once the application has deleted it, a key press raises "Internal
    // error, proxy without widget" and a release is dropped, instead of reaching whatever has the focus then.
    void dedicateKeysTo(QWidget* owner, KeyScope scope);
    // From now on the mouse's buttons are pressed and released for this widget. Once the application has deleted it,
    // both raise "Internal error, proxy without widget" instead of reaching what was below it.
    void dedicateMouseTo(QWidget* owner);

    // Has the next move of the mouse wait until the widget's window is in front where the mouse goes.
    void awaitInFront(QWidget* widget);
    // While a button is held this is a drag: the application sees a move event with the held buttons.
    void mouseMove(const QPoint& position, Qt::KeyboardModifiers modifiers);
    // At the cursor's position. A button stays held, from one command to the next, until it is released: also if there
    // was no widget to press, but not after any other error of the press.
    void mousePress(Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void mouseRelease(Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    // Whether a button is held.
    static bool isDragging();
    // While a button is held: a move, and the release of the button, for the widget that was pressed, as from a user.
    // They are only posted, since the application may run its drag and drop, or a dialog, as it handles them. The first
    // move is several, since Qt starts no drag before the second one.
    void dragMove(const QPoint& position, Qt::KeyboardModifiers modifiers);
    void dragRelease(const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    // Here and in the next two no error leaves the button held.
    void mouseClick(const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    // Press, release, double click: there is no second press and no closing release.
    void mouseDoubleClick(const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    // Turns the wheel by so many steps, each an event, at a point in global coordinates; positive ones go to the left, and
    // up. The last one is only posted.
    void turnWheel(const QPoint& position, int horizontal, int vertical, Qt::KeyboardModifiers modifiers);
    // Press, move, release. The widget that was pressed sees a release wherever the drag ends.
    void mouseDrag(const QPoint& from, const QPoint& to, Qt::MouseButton button);

private:
    bool processEventsEnabled = true;
    bool isKeyOwnerGone() const;
    bool mayGetKeys(const QWidget* target) const;
    void postKeyEvent(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString& text);
    void postDragMove(const QPointer<QWidget>& target, const QPoint& position, Qt::KeyboardModifiers modifiers);
    static QWidget* dragTarget(const QPoint& position);
    void requireMouseOwner() const;
    // Forgets that the button is held, and posts its release to the widget that was pressed, if there is one.
    static void letGo(QWidget* pressed, Qt::MouseButton button);
    // Return the widget that got the event; null if the event deleted it.
    QWidget* press(Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    QWidget* release(Qt::MouseButton button, Qt::KeyboardModifiers modifiers);

    void waitForAwaited(const QPoint& position);

    QPointer<QWidget> awaited;
    QPointer<QWidget> keyOwner;
    KeyScope keyScope = KeyScope::Focus;
    bool keysAreDedicated = false;
    QPointer<QWidget> mouseOwner;
    bool mouseIsDedicated = false;
};
