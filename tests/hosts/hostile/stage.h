#pragma once

#include "chance.h"
#include "subject.h"

#include <QMainWindow>
#include <QPointer>
#include <QtCore/QList>
#include <QtCore/QObject>

#include <functional>

class QWidget;
class Stage;
class TestHost;

// One scenario: what it builds, and what only it can do to its widgets.
struct Scene
{
    const char* name;
    void (*build)(Stage& stage, QWidget* centre);
};

// Where a handler of the application runs from.
enum class Place {
    Guarded, // Qt has looked after itself: whatever is destroyed here, a user's input would not crash the application
    Fragile, // Qt goes on with its widget afterwards
    Delicate, // the same, and Qt stands no event loop, as it goes through a list of widgets or closes a popup
    Busy, // Qt goes on with references to what it is just changing: nothing at all can be done, but a moment later
};

// The windows of the hostile application: builds them, mends them after what the fault injector has done to them, so that there
// is always something to act on, and destroys them when nobody expects it, but never where Qt itself would crash.
class Stage : public QObject
{
    Q_OBJECT

public:
    using Trick = std::function<void(QObject* sender)>;

    Stage(TestHost& testHost, const Scene& wantedScene, quint32 seed);

    TestHost& host;
    Chance chance;

    // Null between its destruction and its next building.
    QMainWindow* window() const { return mainWindow; }
    // A random widget of the window, or null.
    QWidget* randomWidget();

    // For scenes: something hostile that only this scene can do. It is done where structures may change.
    void addTrick(const Trick& trick) { tricks.append(trick); }
    const QList<Trick>& sceneTricks() const { return tricks; }

    // Whether no function of Qt is on the stack that relies on its widget being there afterwards.
    bool mayDestroy() const;
    // Runs the function now or, if that is not allowed yet, when it is. Not at all if the object dies before.
    void whenSafe(QObject* subject, const Trick& function);
    // Destroys an object, or does something else to the structure of the widgets. Undisturbed: Qt does not stand it that the
    // handlers of what it ends on the way do more of it.
    void destroy(QObject* object);
    void undisturbed(const std::function<void()>& function);
    // To be called before an object is destroyed: does away with what Qt does not stand.
    void prepareEnd(QObject* victim);
    // Whether windows have to stay as they are. Qt 4 looks at what is below the mouse while something is dragged, and at an X error,
    // as of the frame of a window that has gone meanwhile, it forgets its drag and goes on with it.
    bool mustKeepWindows() const;
    // Runs a function that has an event loop of its own, if not too many are running already.
    void nest(Place place, const std::function<void()>& function);
    // The same for a drag and drop.
    void drag(Place place, const std::function<void()>& function);
    // A top-level window of the application's own that mending removes.
    void addStray(QWidget* widget);
    // Whether the stage is at work itself, and wants no interference.
    bool isQuiet() const { return quiet > 0; }

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    struct Waiting
    {
        Subject subject;
        Trick function;
    };

    void rebuild();
    void mend();
    void closeWhatStaysOpen();
    void runWaiting();

    const Scene& scene;
    QPointer<QMainWindow> mainWindow;
    QList<Trick> tricks;
    QList<Waiting> waiting;
    QList<QPointer<QWidget>> strays;
    QPointer<QWidget> openPopup;
    QPointer<QWidget> openModal;
    int popupTicks = 0;
    int modalTicks = 0;
    int ticksToRebuild = 0;
    int fragileFrames = 0;
    int nestedLoops = 0;
    int drags = 0;
    int quiet = 0;
};
