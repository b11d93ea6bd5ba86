#include "identify/namesearch.h"

#include "compat/prefetch.h"
#include "identify/derivation.h"

#include <QWidget>

namespace identify {

namespace {

// Prefetches memory that a search for a derived name reads some children later: in a window of thousands of widgets the
// search mostly waits for memory. What is behind a chain of pointers (the first child of a child is mostly a tool button's
// action) is prefetched link by link, each when the link before it has arrived.
void fetchAhead(const QObjectList::const_iterator& position, const QObjectList::const_iterator& end)
{
    const int lookAhead = 16;
    if (end - position <= lookAhead)
        return;
    if (const QObject* child = position[lookAhead])
        compat::prefetch(child);
    if (const QObject* child = position[8])
        compat::prefetch(&child->children());
    const QObject* close = position[4];
    if (close && !close->children().isEmpty())
        compat::prefetch(close->children().first());
    const QObject* next = position[2];
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
    const QObjectList::const_iterator end = children.end();
    for (QObjectList::const_iterator position = children.begin(); position != end; ++position) {
        if (derivation)
            fetchAhead(position, end);
        QObject* child = *position;
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
