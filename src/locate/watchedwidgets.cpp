#include "locate/watchedwidgets.h"

#include <QtCore/QSet>

#include <utility>

namespace locate {

namespace {

const std::size_t likelyCount = 128; // in a large dialog

} // namespace

WatchedWidgets::WatchedWidgets(std::function<bool(QWidget*)> isStillCandidate)
    : isCandidate(std::move(isStillCandidate))
{
}

void WatchedWidgets::add(QWidget* widget)
{
    if (members.empty())
        members.reserve(likelyCount);
    QObject* parent = widget->parent();
    if (!parent)
        groups.push_back({nullptr, widget, QObjectList(), members.size()});
    else if (groups.empty() || groups.back().address != parent)
        groups.push_back({parent, parent, parent->children(), members.size()});
    members.push_back({widget, groups.size() - 1});
}

QWidget* WatchedWidgets::at(std::size_t index)
{
    const std::size_t group = members[index].group;
    if (!isUnchanged(groups[group]))
        refresh(group);
    return members[index].widget;
}

// Qt's list has its data in common with our copy of it until a child comes or goes.
bool WatchedWidgets::isUnchanged(const Siblings& group) const
{
    return group.guard && (!group.address || group.children.isSharedWith(group.guard->children()));
}

void WatchedWidgets::refresh(std::size_t groupIndex)
{
    Siblings& group = groups[groupIndex];
    group.children = group.guard ? group.guard->children() : QObjectList();
    QSet<const QObject*> living;
    for (const QObject* child : group.children) {
        if (child && child->isWidgetType()) // null: it is being deleted with its parent
            living.insert(child);
    }
    for (std::size_t i = group.first; i < members.size() && members[i].group == groupIndex; ++i) {
        QWidget*& widget = members[i].widget;
        if (widget && !(living.contains(widget) && isCandidate(widget)))
            widget = nullptr;
    }
}

} // namespace locate
