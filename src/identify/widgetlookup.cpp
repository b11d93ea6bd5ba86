#include "identify/widgetlookup.h"

#include "identify/namesearch.h"
#include "identify/widgetpath.h"

#include <QWidget>

namespace identify {

const QLatin1String activePopupWidget("ActivePopupWidget");
const QLatin1String focusWidget("FocusWidget");

namespace {

// One more widget fits.
void addFitting(WidgetLookup& lookup, QWidget* widget)
{
    if (widget->isVisible()) {
        lookup.widget = widget;
        ++lookup.visibleCount;
    }
    const LookupError errors[] = {WidgetNotVisibleError, NoError, WidgetAmbiguousError};
    lookup.error = errors[qMin(lookup.visibleCount, 2)];
}

// Looks at each candidate when the search comes to it. Which of several is seen last does not matter: only a single
// one is a result.
class PathSearch : public NameSearch
{
public:
    explicit PathSearch(const WidgetPath& searchedPath)
        : NameSearch(searchName(searchedPath.lastElement()))
        , path(searchedPath)
    {
    }

    WidgetLookup lookup;

protected:
    void found(QWidget* widget, Kind) override
    {
        if (pathFitsFound(path))
            addFitting(lookup, widget);
    }

private:
    const WidgetPath& path;
};

} // namespace

WidgetLookup chooseWidget(const QList<QWidget*>& candidates, const QWidget* window, const WidgetPath& path)
{
    WidgetLookup lookup;
    for (QWidget* candidate : candidates) {
        if (checkPath(candidate, window, path))
            addFitting(lookup, candidate);
    }
    return lookup;
}

WidgetLookup findWidget(QWidget* window, const WidgetPath& path)
{
    PathSearch search(path);
    search.search(window);
    return search.lookup;
}

WidgetLookup currentWidget(QWidget* widget)
{
    WidgetLookup lookup;
    if (widget) {
        lookup.error = NoError;
        lookup.widget = widget;
    }
    return lookup;
}

} // namespace identify
