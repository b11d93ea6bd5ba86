#include "identify/namesearch.h"

#include "compat/prefetch.h"
#include "identify/derivation.h"

#include <QWidget>

namespace identify {

namespace {

// Has the processor fetch what a search for a derived name reads some children later: in a window of thousands of widgets
// it waits for memory more than it works. A tool button's action is mostly its first child. What is more steps away from
// the list is asked for later, when the steps before it are there.
void fetchAhead(const QObjectList& children, int index)
{
    const int farthest = 16;
    if (index + farthest >= children.size())
        return;
    if (const QObject* child = children.at(index + farthest))
        compat::prefetch(child);
    if (const QObject* child = children.at(index + 8))
        compat::prefetch(&child->children());
    const QObject* close = children.at(index + 4);
    if (close && !close->children().isEmpty())
        compat::prefetch(close->children().first());
    const QObject* next = children.at(index + 2);
    if (next && !next->children().isEmpty() && next->children().first())
        compat::prefetch(&next->children().first()->children());
}

} // namespace

NameSearch::NameSearch(const QString& searchedName)
    : name(searchedName)
    , derivation(derivationOfName(searchedName))
    , stem(derivation ? derivation->stemOfName(searchedName) : QString())
{
}

void NameSearch::search(QWidget* top)
{
    lineage.emplace_back(top);
    searchBelow(top);
    if (lineage.back().objectName == name)
        found(top, Kind::ObjectName);
    lineage.pop_back();
}

void NameSearch::searchBelow(const QObject* parent)
{
    const QObjectList& children = parent->children();
    for (int index = 0; index < children.size(); ++index) {
        if (derivation)
            fetchAhead(children, index);
        QObject* child = children.at(index);
        if (!child) // it is being deleted with its parent
            continue;
        const bool hasChildren = !child->children().isEmpty();
        if (!child->isWidgetType()) {
            if (hasChildren)
                searchBelow(child);
            continue;
        }
        auto* widget = static_cast<QWidget*>(child);
        const NamedWidget candidate(widget);
        const bool isObjectName = candidate.objectName == name;
        const bool isFound = isObjectName || isDerivedName(candidate);
        if (!isFound && !hasChildren)
            continue;
        lineage.push_back(candidate);
        if (isFound)
            found(widget, isObjectName ? Kind::ObjectName : Kind::DerivedName);
        if (hasChildren)
            searchBelow(child);
        lineage.pop_back();
    }
}

// An object name that was set, even to "", turns derived names off.
bool NameSearch::isDerivedName(const NamedWidget& candidate) const
{
    return derivation && candidate.objectName.isNull() && derivation->hasStem(candidate.widget, stem);
}

bool NameSearch::pathFitsFound(const WidgetPath& path) const
{
    return pathFits(lineage, path);
}

} // namespace identify
