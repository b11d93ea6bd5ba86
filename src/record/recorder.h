#pragma once

#include "record/eventqueue.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QHash>
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

struct Target;

// Observes what a user does with the application, and what the agent does with the mouse and the keyboard. As long as it
// records it is an event filter of the application, which lets every event pass; else it costs nothing.
class Recorder : public QObject
{
public:
    enum class Passwords { Hidden, Told };

    static Recorder& instance();

    // Begins anew: events of an earlier recording that nobody has asked for are forgotten.
    void start(Passwords passwords);
    // The events until now can still be asked for.
    void stop();
    // Stops, and forgets what has happened.
    void abandon();
    // An object of JSON in ASCII: "events", the oldest first, "dropped" and "recording". They are told once.
    QByteArray take();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Recorder() = default;

    // How an event came to a widget: one that ignores it leaves it to those around, and Qt offers them a copy.
    struct Offer
    {
        QEvent::Type type = QEvent::None;
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
    bool isPassedOn(const Offer& offer);
    void tellAction(QWidget* menu, const QAction* action);
    void tell(const char* kind, QWidget* widget, const AddFields& addFields, const QByteArray& item = QByteArray());
    bool addWindow(locate::JsonObject& object, QWidget* widget, const char* kind);

    EventQueue queue;
    QElapsedTimer clock;
    Passwords passwordsAre = Passwords::Hidden;
    bool isRecording = false;
    Offer lastOffer;
    QPointer<QWidget> lastDescribed; // the last event that tells of its window was for this widget
    QHash<const QObject*, qint64> windows; // those that are shown: one that is being deleted has no reference any more
};

} // namespace record
