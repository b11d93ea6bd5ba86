#include "bridge/hierarchicalsearch.h"

#include "bridge/hierarchicalname.h"
#include "bridge/nameprovider.h"
#include "compat/children.h"
#include "compat/wildcard.h"

#include <QApplication>
#include <QWidget>

namespace LmSquishProxy {

namespace {

HierarchicalMatch failure(SearchError error)
{
    HierarchicalMatch match;
    match.error = error;
    return match;
}

// The title that windows must have.
class TitleRule
{
public:
    explicit TitleRule(const HierarchicalQuery& query)
        : title(query.windowTitle)
        , pattern(query.windowTitle)
        , isPattern(query.wildcardTitle)
    {
    }

    bool fits(const QWidget* window) const
    {
        return isPattern ? pattern.fits(window->windowTitle()) : window->windowTitle() == title;
    }

private:
    QString title;
    compat::Wildcard pattern;
    bool isPattern;
};

HierarchicalMatch findWindowByTitle(const HierarchicalQuery& query)
{
    const TitleRule rule(query);
    HierarchicalMatch match;
    const QWidgetList topLevels = QApplication::topLevelWidgets();
    for (QWidget* window : topLevels) {
        if ((query.onlyVisible && !window->isVisible()) || !rule.fits(window))
            continue;
        if (match.widget)
            return failure(SearchError::WidgetAmbiguous);
        match.widget = window;
    }
    return match;
}

QList<QWidget*> windowsToSearch(const HierarchicalQuery& query)
{
    const TitleRule rule(query);
    QList<QWidget*> windows;
    if (query.isWindowGone)
        return windows;
    const QWidgetList all = query.window ? QWidgetList() << query.window : QApplication::topLevelWidgets();
    for (QWidget* window : all) {
        if (query.onlyVisible && !window->isVisible())
            continue;
        if (query.windowTitle.isNull() || rule.fits(window))
            windows.append(window);
    }
    return windows;
}

bool isHiddenExplicitly(const QWidget* widget)
{
    while (widget && !widget->testAttribute(Qt::WA_WState_Hidden))
        widget = widget->parentWidget();
    return widget != nullptr;
}

// The widgets below the window with the name, whatever their ancestors.
QList<QWidget*> candidatesBelow(const QWidget* window, const QString& name, bool onlyVisible)
{
    // Only a provider can give a name that is not the object name.
    const QList<QWidget*> widgets = compat::findChildren<QWidget>(window, nameProvider() ? QString() : name);
    QList<QWidget*> candidates;
    for (QWidget* widget : widgets) {
        if (nameProvider() && bridgeName(widget) != name)
            continue;
        if (!widget->isWindow() && !(onlyVisible && isHiddenExplicitly(widget)))
            candidates.append(widget);
    }
    return candidates;
}

// The one widget that carries the element `last` and whose ancestors fit the elements before it.
HierarchicalMatch findNamed(const HierarchicalQuery& query, int last)
{
    const QString& name = query.name.at(last);
    HierarchicalMatch match;
    const QList<QWidget*> windows = windowsToSearch(query);
    for (QWidget* window : windows) {
        QList<QWidget*> candidates;
        if (bridgeName(window) == name)
            candidates.append(window);
        candidates += candidatesBelow(window, name, query.onlyVisible);
        for (QWidget* candidate : candidates) {
            if (!ancestorsFit(candidate, query.name, last - 1))
                continue;
            if (match.widget)
                return failure(SearchError::WidgetAmbiguous);
            match.widget = candidate;
        }
    }
    return match.widget ? match : failure(SearchError::WidgetNotFound);
}

QList<QWidget*> childWidgets(const QList<QWidget*>& parents)
{
    QList<QWidget*> widgets;
    for (const QWidget* parent : parents) {
        for (QObject* child : parent->children()) {
            if (child && child->isWidgetType()) // null: it is being deleted with its parent
                widgets.append(static_cast<QWidget*>(child));
        }
    }
    return widgets;
}

// The only widget that many levels below; it must have no child widgets.
HierarchicalMatch descend(QWidget* widget, int levels)
{
    QList<QWidget*> reached = QList<QWidget*>() << widget;
    for (; levels > 0 && !reached.isEmpty(); --levels)
        reached = childWidgets(reached);
    if (reached.isEmpty())
        return failure(SearchError::WidgetNotFound);
    if (reached.size() > 1 || !childWidgets(reached).isEmpty())
        return failure(SearchError::WidgetAmbiguous);
    HierarchicalMatch match;
    match.widget = reached.first();
    return match;
}

} // namespace

QString searchErrorName(SearchError error)
{
    static const char* const names[]
        = {"NoError", "WidgetAmbiguousError", "WidgetNotFoundError", "WidgetNotVisibleError", "InvalidWidgetPath"};
    return QString::fromLatin1(names[static_cast<int>(error)]);
}

HierarchicalMatch findHierarchically(const HierarchicalQuery& query)
{
    const int size = static_cast<int>(query.name.size());
    const int levelsDown = trailingWildcards(query.name);
    if (levelsDown == size) {
        return size == 1 && !query.windowTitle.isNull() ? findWindowByTitle(query)
                                                        : failure(SearchError::InvalidWidgetPath);
    }
    HierarchicalMatch match = findNamed(query, size - 1 - levelsDown);
    if (match.widget && levelsDown > 0)
        match = descend(match.widget, levelsDown);
    if (match.widget && query.onlyVisible && !match.widget->isVisible())
        return failure(SearchError::WidgetNotFound);
    return match;
}

} // namespace LmSquishProxy
