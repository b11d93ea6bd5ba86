#include "locate/watchedwidgets.h"

#include <QtCore/QSet>

#include <utility>

namespace locate {

WatchedWidgets::WatchedWidgets(std::function<bool(QWidget*)> isOne)
    : isStillOne(std::move(isOne))
{
}

void WatchedWidgets::add(QWidget* widget)
{
    QObject* parent = widget->parent();
    if (!parent)
        families.push_back({nullptr, widget, QObjectList(), members.size()});
    else if (families.empty() || families.back().address != parent)
        families.push_back({parent, parent, parent->children(), members.size()});
    members.push_back({widget, families.size() - 1});
}

QWidget* WatchedWidgets::at(std::size_t index)
{
    const std::size_t family = members[index].family;
    if (!isUnchanged(families[family]))
        look(family);
    return members[index].widget;
}

// Qt's list has its data in common with our copy of it until a child comes or goes.
bool WatchedWidgets::isUnchanged(const Family& family) const
{
    return family.guard && (!family.address || family.children.isSharedWith(family.guard->children()));
}

void WatchedWidgets::look(std::size_t familyIndex)
{
    Family& family = families[familyIndex];
    family.children = family.guard ? family.guard->children() : QObjectList();
    QSet<const QObject*> living;
    for (const QObject* child : family.children) {
        if (child && child->isWidgetType()) // null: it is being deleted with its parent
            living.insert(child);
    }
    for (std::size_t i = family.first; i < members.size() && members[i].family == familyIndex; ++i) {
        QWidget*& widget = members[i].widget;
        if (widget && !(living.contains(widget) && isStillOne(widget)))
            widget = nullptr;
    }
}

} // namespace locate
