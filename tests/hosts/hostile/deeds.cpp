#include "deeds.h"

#include "commondeeds.h"
#include "later.h"

#include <QPointer>

namespace {

// What a deed needs of the place where it is done.
enum class Kind {
    Mild, // changes states, and runs no event loop: anywhere
    Nesting, // runs an event loop of its own: anywhere
    Structural, // destroys or moves widgets: where Qt does not rely on them
};

struct Deed
{
    Kind kind;
    int weight;
    void (*perform)(Stage& stage, QObject* sender);
};

const Deed deeds[] = {
    {Kind::Structural, 60, destroySender},
    {Kind::Structural, 30, destroyParent},
    {Kind::Structural, 25, destroyWindow},
    {Kind::Structural, 40, destroyRandomWidget},
    {Kind::Structural, 25, destroyPopup},
    {Kind::Structural, 40, reparentSender},
    {Kind::Structural, 160, doSceneTrick},
    {Kind::Mild, 40, hideSender},
    {Kind::Mild, 10, hideWindow},
    {Kind::Mild, 40, disableSender},
    {Kind::Mild, 15, disableWindow},
    {Kind::Mild, 30, moveWindow},
    {Kind::Mild, 20, resizeWindow},
    {Kind::Mild, 6, minimizeWindow},
    {Kind::Mild, 20, closeWindow},
    {Kind::Mild, 20, grabMouse},
    {Kind::Mild, 20, grabKeyboard},
    {Kind::Mild, 50, stealFocus},
    {Kind::Mild, 25, clearFocus},
    {Kind::Mild, 40, openPopup},
    {Kind::Mild, 12, openSecondWindow},
    {Kind::Mild, 6, openModalWindow},
    {Kind::Mild, 30, rename},
    {Kind::Mild, 25, retitle},
    {Kind::Mild, 20, warpCursor},
    {Kind::Mild, 20, destroyLater},
    {Kind::Mild, 10, removePostedEvents},
    {Kind::Mild, 20, postInputOfItsOwn},
    {Kind::Mild, 2, closeAllWindows},
    {Kind::Mild, 8, beBusy},
    {Kind::Mild, 1, beBusyForLong},
    {Kind::Mild, 2, quit},
    {Kind::Mild, 1, retireAgent},
    {Kind::Nesting, 30, runDialog},
    {Kind::Nesting, 12, runMenu},
    {Kind::Nesting, 15, runEventLoop},
    {Kind::Nesting, 40, handleEvents},
};

const Deed& randomDeed(Chance& chance)
{
    static const int totalWeight = [] {
        int total = 0;
        for (const Deed& deed : deeds)
            total += deed.weight;
        return total;
    }();
    int rest = chance.below(totalWeight);
    const Deed* deed = deeds;
    while (rest >= deed->weight)
        rest -= (deed++)->weight;
    return *deed;
}

void perform(Stage& stage, QObject* sender, Place place, const Deed& deed)
{
    switch (deed.kind) {
    case Kind::Mild:
        return deed.perform(stage, sender);
    case Kind::Nesting:
        return stage.nest(place, [&] { deed.perform(stage, sender); });
    case Kind::Structural:
        if (place == Place::Guarded && stage.mayDestroy())
            return deed.perform(stage, sender);
        return Later::run(0, [&stage, guarded = QPointer<QObject>(sender), &deed] {
            if (guarded)
                stage.whenSafe(guarded, [&stage, &deed](QObject* subject) { deed.perform(stage, subject); });
        });
    }
}

} // namespace

void doHarm(Stage& stage, QObject* sender, Place place)
{
    const Deed& deed = randomDeed(stage.chance);
    if (!stage.chance.oneIn(3))
        return perform(stage, sender, place, deed);
    // A moment later, when nobody thinks of it.
    Later::run(stage.chance.below(6), [&stage, guarded = QPointer<QObject>(sender), &deed] {
        if (guarded)
            perform(stage, guarded, Place::Guarded, deed);
    });
}
