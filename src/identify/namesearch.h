#pragma once

#include "identify/pathfit.h"

#include <vector>

class QObject;

namespace identify {

struct Derivation;

// The search for all widgets with a name, in one walk, where QObject::findChildren() would take one for object names
// and one for derived names. The walk reads each object name once, and keeps those of the current widget's ancestors.
class NameSearch
{
public:
    virtual ~NameSearch() = default;
    NameSearch(const NameSearch&) = delete;
    NameSearch& operator=(const NameSearch&) = delete;

    // Looks at all widgets below `top`, in the order of findChildren(): each child comes before its own children. Then looks
    // at `top`, but only at its object name, not at a derived one.
    void search(QWidget* top);

protected:
    // The name is one to search for (searchName()): not null.
    explicit NameSearch(const QString& searchedName);

    enum class Kind {
        ObjectName, // the widget has this object name
        DerivedName, // the widget never got an object name, and its derived name is this one
    };
    virtual void found(QWidget* widget, Kind kind) = 0;

    // Within found(): whether the path fits the widget that was found and its ancestors up to the top.
    bool pathFitsFound(const WidgetPath& path) const;

private:
    void searchBelow(const QObject* parent);
    bool isDerivedName(const NamedWidget& candidate) const;

    const QString name;
    const Derivation* const derivation; // of the name, if it can be a derived one
    QString stem; // the name without its suffix then
    std::vector<NamedWidget> lineage; // from the top to where the walk is
};

} // namespace identify
