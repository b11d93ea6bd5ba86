#pragma once

#include "record/eventqueue.h"
#include "record/shownwindows.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QEvent>
#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QPointer>

#include <functional>

class QAction;
class QWidget;

namespace locate {
class JsonObject;
}

namespace record {

enum class ItemPlace;
struct Target;

// Records what a user does with the application, and what the agent does with the mouse and the keyboard. While it
// records it is an event filter of the application that lets every event pass; otherwise it costs nothing.
class Recorder : public QObject
{
public:
    enum class Passwords { Hidden, Recorded };

    static Recorder& instance();

    // Starts a new recording. Events of an earlier one that nobody has taken are dropped.
    void start(Passwords passwords);
    // Events up to now can still be taken.
    void stop();
    // Stops, and drops all events.
    void abandon();
    // Takes the events, as an object of JSON in ASCII: "events", the oldest first, "dropped" and "recording"; at first the
    // "windows" that were shown when it started, too; and "last", the widget that had the last input, with its value now.
    QByteArray take();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Recorder() = default;

    // The delivery of an event to a widget. If that ignores the event, Qt propagates a copy of it to the widget's
    // parents.
    struct Delivery
    {
        QEvent::Type type;
        QPointer<QWidget> receiver;
        QPoint position; // on the screen; of keys the key and its modifiers
    };

    using AddFields = std::function<void(locate::JsonObject& object)>;

    void observe(QObject* watched, QEvent* event);
    void observeInput(QWidget* receiver, QEvent* event);
    void observeMouse(QWidget* receiver, QEvent* event);
    void recordEndOfDrag();
    void observePlace(const char* kind, QWidget* receiver, const QPoint& position, ItemPlace place);
    void observeKey(QWidget* receiver, QEvent* event);
    void observeShortcut(QObject* receiver, QEvent* event);
    void observeWindow(QObject* watched, QEvent* event);
    bool rememberAndDetectPropagation(const Delivery& delivery);
    void recordAction(QWidget* menu, const QAction* action);
    void recordEvent(
        const char* kind, QWidget* widget, const AddFields& addFields, const QByteArray& item = QByteArray());
    void addSurroundings(locate::JsonObject& object, QWidget* widget, const QString& previousChoice, bool isKey);
    void observeStructure(QObject* watched, QEvent* event);
    void end();
    QByteArray valueOfLast() const;

    EventQueue queue;
    QElapsedTimer clock;
    Passwords passwordsAre = Passwords::Hidden;
    bool isRecording = false;
    Delivery lastDelivery{QEvent::None, QPointer<QWidget>(), QPoint()};
    QPoint pressedAt; // on the screen
    QPointer<QWidget> pressed; // by the user, until its release, a drop, or the event that tells the end without either
    QPointer<QWidget> lastUsed; // the widget of the last input
    QByteArray lastValue; // what that held as the recording was stopped
    QByteArray toldValue; // what was told of it
    ShownWindows windows;
};

} // namespace record
