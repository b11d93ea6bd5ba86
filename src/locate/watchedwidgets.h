#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>
#include <vector>

namespace locate {

// Widgets in the order of a walk, of which the application may delete any. A guard for each costs several times what finding it
// did; so their parents are guarded, and that the lists of children are still those of the walk tells that they live.
class WatchedWidgets
{
public:
    // `isOne` is asked again about the widgets of a parent whose children have changed, since a new one can have the address of
    // one that has died. It must not run code of the application.
    explicit WatchedWidgets(std::function<bool(QWidget*)> isOne);

    void add(QWidget* widget);
    std::size_t count() const { return members.size(); }
    // Null when it has died, or has left its parent.
    QWidget* at(std::size_t index);

private:
    struct Family
    {
        const QObject* address;
        QPointer<QObject> guard; // the parent; the widget itself where it has none
        QObjectList children;
        std::size_t first;
    };
    struct Member
    {
        QWidget* widget;
        std::size_t family;
    };

    bool isUnchanged(const Family& family) const;
    void look(std::size_t familyIndex);

    const std::function<bool(QWidget*)> isStillOne;
    std::vector<Family> families;
    std::vector<Member> members;
};

} // namespace locate
