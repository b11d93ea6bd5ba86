#include "faults.h"

#include "commonfaults.h"
#include "later.h"
#include "subject.h"
#include "testhost.h"
#include "watchfulapplication.h"

#include <algorithm>
#include <iterator>

namespace {

// A fault's requirements for the place where it is done.
enum class Kind {
    Mild, // changes states, and runs no event loop: anywhere
    Hiding, // the same, and may close menus: where Qt is not just showing one of them within another
    Nesting, // runs an event loop of its own, or closes all popups as a new window does: where Qt is not showing or closing one
    Structural, // destroys or moves widgets: where Qt does not rely on them
};

struct Fault
{
    Kind kind;
    int weight;
    const char* name;
    void (*perform)(Stage& stage, QObject* sender);
};

const Fault faults[] = {
    {Kind::Structural, 60, "destroySender", destroySender},
    {Kind::Structural, 30, "destroyParent", destroyParent},
    {Kind::Structural, 25, "destroyWindow", destroyWindow},
    {Kind::Structural, 40, "destroyRandomWidget", destroyRandomWidget},
    {Kind::Structural, 25, "destroyPopup", destroyPopup},
    {Kind::Structural, 40, "reparentSender", reparentSender},
    {Kind::Structural, 160, "doSceneTrick", doSceneTrick},
    {Kind::Hiding, 40, "hideSender", hideSender},
    {Kind::Hiding, 10, "hideWindow", hideWindow},
    {Kind::Mild, 40, "disableSender", disableSender},
    {Kind::Mild, 15, "disableWindow", disableWindow},
    {Kind::Mild, 30, "moveWindow", moveWindow},
    {Kind::Mild, 20, "resizeWindow", resizeWindow},
    {Kind::Hiding, 6, "minimizeWindow", minimizeWindow},
    {Kind::Hiding, 20, "closeWindow", closeWindow},
    {Kind::Mild, 20, "grabMouse", grabMouse},
    {Kind::Mild, 20, "grabKeyboard", grabKeyboard},
    {Kind::Mild, 50, "stealFocus", stealFocus},
    {Kind::Mild, 25, "clearFocus", clearFocus},
    {Kind::Mild, 40, "openPopup", openPopup},
    {Kind::Nesting, 12, "openSecondWindow", openSecondWindow},
    {Kind::Nesting, 6, "openModalWindow", openModalWindow},
    {Kind::Mild, 30, "rename", rename},
    {Kind::Mild, 25, "retitle", retitle},
    {Kind::Mild, 20, "warpCursor", warpCursor},
    {Kind::Mild, 20, "destroyLater", destroyLater},
    {Kind::Mild, 10, "removePostedEvents", removePostedEvents},
    {Kind::Mild, 20, "postInputOfItsOwn", postInputOfItsOwn},
    {Kind::Structural, 2, "closeAllWindows", closeAllWindows},
    {Kind::Mild, 30, "writeFile", writeFile},
    {Kind::Mild, 8, "beBusy", beBusy},
    {Kind::Mild, 1, "beBusyForLong", beBusyForLong},
    {Kind::Structural, 2, "quit", quit}, // Qt 6 closes all windows for it
    {Kind::Mild, 1, "retireAgent", retireAgent},
    {Kind::Nesting, 30, "runDialog", runDialog},
    {Kind::Nesting, 12, "runMenu", runMenu},
    {Kind::Nesting, 15, "runEventLoop", runEventLoop},
    {Kind::Nesting, 40, "handleEvents", handleEvents},
};

// Those that have a window with a frame go or come.
bool concernsWindows(const Fault& fault)
{
    using Perform = void (*)(Stage&, QObject*);
    static const Perform rows[] = {destroyParent, destroyWindow, reparentSender, hideWindow, minimizeWindow,
        closeWindow, closeAllWindows, openSecondWindow, openModalWindow, runDialog, quit};
    return std::find(std::begin(rows), std::end(rows), fault.perform) != std::end(rows);
}

const Fault& randomFault(Chance& chance)
{
    static const int totalWeight = [] {
        int total = 0;
        for (const Fault& fault : faults)
            total += fault.weight;
        return total;
    }();
    int rest = chance.below(totalWeight);
    const Fault* fault = faults;
    while (rest >= fault->weight)
        rest -= (fault++)->weight;
    return *fault;
}

void commit(Stage& stage, QObject* sender, const Fault& fault)
{
    if (stage.mustKeepWindows() && concernsWindows(fault))
        return;
    stage.host.journal(QString::fromLatin1("fault %1 %2")
                           .arg(QLatin1String(fault.name), QLatin1String(sender->metaObject()->className())));
    fault.perform(stage, sender);
}

void perform(Stage& stage, QObject* sender, Place place, const Fault& fault)
{
    switch (fault.kind) {
    case Kind::Mild:
        return commit(stage, sender, fault);
    case Kind::Hiding:
        if (WatchfulApplication::isShowingSubmenu())
            return;
        return commit(stage, sender, fault);
    case Kind::Nesting:
        if (place == Place::Delicate || WatchfulApplication::isShowingSubmenu())
            return;
        // An item view closes an editor with references to the items that it goes from and to.
        if (isEditor(sender) && !WatchfulApplication::isFirstHand())
            return;
        return stage.nest(place, [&] { commit(stage, sender, fault); });
    case Kind::Structural:
        if (place == Place::Guarded && stage.mayDestroy())
            return commit(stage, sender, fault);
        return Later::run(0, [&stage, subject = Subject(sender), &fault] {
            if (QObject* live = subject.get())
                stage.whenSafe(live, [&stage, &fault](QObject* subject) { commit(stage, subject, fault); });
        });
    }
}

} // namespace

void doHarm(Stage& stage, QObject* sender, Place place)
{
    const Fault& fault = randomFault(stage.chance);
    if (place != Place::Busy && !stage.chance.oneIn(3))
        return perform(stage, sender, place, fault);
    // A moment later, when nobody thinks of it.
    Later::run(stage.chance.below(6), [&stage, subject = Subject(sender), &fault] {
        if (QObject* live = subject.get())
            perform(stage, live, Place::Guarded, fault);
    });
}
