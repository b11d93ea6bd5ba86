#include "identify/namesearch.h"

#include "identify/derivation.h"

#include <QWidget>

namespace identify {

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
    for (QObject* child : parent->children()) {
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
