#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>
#include <vector>

namespace locate {

// Widgets in the order of a walk, of which the application may delete any. A QPointer for each would cost several times
// what finding it did, so only their parents are guarded: as long as a parent's list of children is still the one of
// the walk, its children live.
class WatchedWidgets
{
public:
    // `isStillCandidate` is asked again about the widgets of a parent whose children have changed, since a new one can have the address of
    // one that has died. It must not run code of the application.
    explicit WatchedWidgets(std::function<bool(QWidget*)> isStillCandidate);

    void add(QWidget* widget);
    std::size_t count() const { return members.size(); }
    // Null if it has died, or has another parent now.
    QWidget* at(std::size_t index);

private:
    struct Siblings
    {
        const QObject* address;
        QPointer<QObject> guard; // the parent; the widget itself where it has none
        QObjectList children;
        std::size_t first;
    };
    struct Member
    {
        QWidget* widget;
        std::size_t group;
    };

    bool isUnchanged(const Siblings& group) const;
    void refresh(std::size_t groupIndex);

    const std::function<bool(QWidget*)> isCandidate;
    std::vector<Siblings> groups;
    std::vector<Member> members;
};

} // namespace locate
