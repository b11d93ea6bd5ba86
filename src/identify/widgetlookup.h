#pragma once

#include "identify/windowlookup.h"

#include <QtCore/QList>

namespace identify {

class WidgetPath;

// Result of a search for one widget below a window.
struct WidgetLookup
{
    LookupError error = WidgetNotFoundError; // NoError, WidgetNotFoundError, -NotVisible- or -AmbiguousError
    QWidget* widget = nullptr; // with NoError
    int visibleCount = 0; // visible widgets that fit
};

// Keeps, of the candidates, those that fit the path below the window. Exactly one of them must be visible.
WidgetLookup chooseWidget(const QList<QWidget*>& candidates, const QWidget* window, const WidgetPath& path);

// The one visible widget at the path below the window.
WidgetLookup findWidget(QWidget* window, const WidgetPath& path);

// The special last path elements that no search is made for.
extern const QLatin1String activePopupWidget;
extern const QLatin1String focusWidget;

// The widget that a special element stands for at this moment; not found when there is none.
WidgetLookup currentWidget(QWidget* widget);

} // namespace identify
