#include "identify/widgetlookup.h"

#include "identify/widgetpath.h"

#include <QWidget>

const QLatin1String activePopupWidget("ActivePopupWidget");
const QLatin1String focusWidget("FocusWidget");

WidgetLookup chooseWidget(const QList<QWidget*>& candidates, const QWidget* window, const QStringList& path)
{
    WidgetLookup lookup;
    bool anyFits = false;
    for (QWidget* candidate : candidates) {
        if (!checkPath(candidate, window, path))
            continue;
        anyFits = true;
        if (candidate->isVisible()) {
            lookup.widget = candidate;
            ++lookup.visibleCount;
        }
    }
    if (lookup.visibleCount == 1)
        lookup.error = NoError;
    else if (lookup.visibleCount > 1)
        lookup.error = WidgetAmbiguousError;
    else if (anyFits)
        lookup.error = WidgetNotVisibleError;
    return lookup;
}

WidgetLookup findWidget(QWidget* window, const QStringList& path)
{
    QList<QWidget*> candidates;
    widgetList(candidates, window, searchName(path));
    return chooseWidget(candidates, window, path);
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
