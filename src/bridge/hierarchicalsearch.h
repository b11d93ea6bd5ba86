#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

class QWidget;

namespace LmSquishProxy {

// How a search of the bridge ended. The numbers are the positions of the names that scripts see.
enum class SearchError {
    None = 0,
    WidgetAmbiguous = 1,
    WidgetNotFound = 2,
    WidgetNotVisible = 3, // no search sets it; it keeps its place in the list of names
    InvalidWidgetPath = 4
};

// "NoError", "WidgetAmbiguousError", ...
QString searchErrorName(SearchError error);

// The hierarchical name to search for, see hierarchicalname.h, and the windows to search in.
struct HierarchicalQuery
{
    QStringList name;
    QString windowTitle; // null: any title
    QWidget* window = nullptr; // null: every top-level widget. It must be alive
    bool isWindowGone = false; // the window to search has been deleted: nothing is found
    bool onlyVisible = true;
    bool wildcardTitle = false; // the title is a pattern of "*", "?" and "[...]" for the whole title
};

struct HierarchicalMatch
{
    QWidget* widget = nullptr;
    SearchError error = SearchError::None; // None with a null widget: no window has the title
};

// Finds the one widget with the hierarchical name. Each trailing null stands for one level below the last named widget:
// exactly one way down of that many levels must exist, and it must end at a widget without children. A name that is one
// null finds a window by its title. A widget below two of the searched windows, as in a dialog that has a parent window,
// is found twice, so the result is ambiguous unless the query names the window.
HierarchicalMatch findHierarchically(const HierarchicalQuery& query);

} // namespace LmSquishProxy
