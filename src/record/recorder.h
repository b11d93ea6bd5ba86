#pragma once

#include "record/eventqueue.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QEvent>
#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QSet>

#include <functional>

class QAction;
class QWidget;

namespace locate {
class JsonObject;
}

namespace record {

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
    // "windows" that were shown when it started, too.
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
    void observeKey(QWidget* receiver, QEvent* event);
    void observeShortcut(QObject* receiver, QEvent* event);
    void observeWindow(QObject* watched, QEvent* event);
    bool rememberAndDetectPropagation(const Delivery& delivery);
    void recordAction(QWidget* menu, const QAction* action);
    void recordEvent(
        const char* kind, QWidget* widget, const AddFields& addFields, const QByteArray& item = QByteArray());
    void describeShownWindows();
    void addSurroundings(locate::JsonObject& object, QWidget* widget, const QString& previousChoice, bool isKey);
    QByteArray describe(QWidget* window);
    void addPrevious(locate::JsonObject& object, const QString& choice);
    void observeStructure(QObject* watched, QEvent* event);
    void forgetDescriptionOf(const QWidget* window);

    EventQueue queue;
    QByteArray shownAtStart; // descriptions of windows, separated by commas
    QElapsedTimer clock;
    Passwords passwordsAre = Passwords::Hidden;
    bool isRecording = false;
    Delivery lastDelivery{QEvent::None, QPointer<QWidget>(), QPoint()};
    QPointer<QWidget> lastUsed; // the widget of the last input
    QSet<qint64> described; // the windows that an event has told, and in which no widget has come or gone since
    QHash<const QObject*, qint64> windows; // those that are shown: one that is being deleted has no reference any more
};

} // namespace record
