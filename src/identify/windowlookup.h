#pragma once

#include <QtCore/QString>

class QWidget;

namespace identify {

// How a lookup of a window or widget ended. The numbers are fixed: script authors see them by name.
enum LookupError {
    NoError = 0,
    WindowNotFoundError = 1,
    WindowAmbiguousError = 2,
    WindowNotActivePopupError = 3,
    WindowNotActiveModalError = 4,
    WidgetNotFoundError = 5,
    WidgetNotVisibleError = 6,
    WidgetAmbiguousError = 7
};

// The enumerator's own name; the empty text for any other number.
QString lookupErrorName(int error);

// Finds the visible top-level widget with this name and returns how many match. When it is 1, `window` is the match;
// when it is more, the last one; when it is 0, `window` need not have been touched. A name is one of
//   Widget:ActivePopupWidget             the application's active popup widget
//   Widget:ActiveModalWidget[:PREFIX]    its active modal widget [if its title starts with PREFIX]
//   Widget:NAME                          a widget with this object name
//   PREFIX                               a widget whose window title starts with PREFIX
int findWindow(QWidget*& window, const QString& name);

// Whether the user could reach the window: NoError, or what blocks it. An open popup blocks every window but itself
// and `exemptWindow` (null for none); an active modal widget blocks every window but itself.
LookupError activityError(const QWidget* window, const QWidget* exemptWindow);

} // namespace identify
