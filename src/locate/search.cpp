#include "locate/search.h"

#include "locate/nearest.h"
#include "locate/steptest.h"
#include "locate/watchedwidgets.h"

#include <QtCore/QSet>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace locate {

namespace {

using Widgets = std::vector<QWidget*>;

// Visits widgets in the order of a walk, parents before children. visit() returns whether to go on below the widget.
class WidgetVisitor
{
public:
    virtual ~WidgetVisitor() = default;
    virtual bool visit(QWidget* widget) = 0;
};

void walkBelow(const QWidget* parent, WidgetVisitor& visitor)
{
    for (QObject* child : parent->children()) {
        if (!child || !child->isWidgetType()) // null: it is being deleted with its parent
            continue;
        auto* widget = static_cast<QWidget*>(child);
        if (!widget->isWindow() && visitor.visit(widget) && !widget->children().isEmpty())
            walkBelow(widget, visitor);
    }
}

// Walks below each of the widgets once: those that are within others are met on the way below these.
class ScopeWalk : public WidgetVisitor
{
public:
    ScopeWalk(const Widgets& widgets, WidgetVisitor& everyWidget)
        : inner(everyWidget)
    {
        if (widgets.size() == 1) {
            walkBelow(widgets.front(), inner);
            return;
        }
        for (QWidget* widget : widgets)
            unvisited.insert(widget);
        for (QWidget* widget : widgets) {
            if (unvisited.remove(widget))
                walkBelow(widget, *this);
        }
    }

    bool visit(QWidget* widget) override
    {
        unvisited.remove(widget);
        return inner.visit(widget);
    }

private:
    WidgetVisitor& inner;
    QSet<const QWidget*> unvisited;
};

class Matches : public WidgetVisitor
{
public:
    Matches(StepTest& stepTest, Visibility wantedVisibility)
        : test(stepTest)
        , visibility(wantedVisibility)
        , candidates([this](QWidget* widget) { return isVisibleEnough(widget) && test.fits(widget); })
    {
    }

    bool visit(QWidget* widget) override
    {
        const bool isVisible = widget->isVisible();
        if (visibility == Visibility::Visible && !isVisible)
            return false; // nothing below it is visible
        if ((visibility == Visibility::Hidden && isVisible) || !test.fits(widget))
            return true;
        if (test.hasProperties())
            candidates.add(widget);
        else
            widgets.push_back(widget);
        return true;
    }

    // Returns the widgets that were found. Reads the properties that the step asks for, which runs the application's code.
    Widgets collect() { return test.hasProperties() ? withProperties() : widgets; }

private:
    bool isVisibleEnough(const QWidget* widget) const
    {
        return visibility == Visibility::Any || widget->isVisible() == (visibility == Visibility::Visible);
    }

    Widgets withProperties()
    {
        std::vector<std::size_t> fitting;
        for (std::size_t i = 0; i < candidates.count(); ++i) {
            QWidget* widget = candidates.at(i);
            if (widget && test.propertiesFit(widget, [this, i] { return candidates.at(i) != nullptr; }))
                fitting.push_back(i);
        }
        Widgets living;
        for (const std::size_t i : fitting) {
            if (QWidget* widget = candidates.at(i))
                living.push_back(widget);
        }
        return living;
    }

    StepTest& test;
    const Visibility visibility;
    Widgets widgets;
    WatchedWidgets candidates; // used instead where the step asks for properties: widgets that have them
};

class VisibleWidgets : public WidgetVisitor
{
public:
    bool visit(QWidget* widget) override
    {
        if (widget->isVisible())
            widgets.push_back(widget);
        return widget->isVisible();
    }

    Widgets widgets;
};

// Whether the search runs code of the application, which may delete widgets.
bool readsProperties(const Locator& locator)
{
    return std::any_of(locator.steps.begin(), locator.steps.end(), [](const Step& step) {
        return std::any_of(step.conditions.begin(), step.conditions.end(),
            [](const Condition& condition) { return condition.key == Key::Property; });
    });
}

// The widgets that one step searches.
class Scope
{
public:
    void set(const Widgets& widgets, bool areAtRisk)
    {
        all = widgets;
        // Guards cost as much as the search of a small window, so there are none that nobody needs.
        guards.assign(widgets.begin(), areAtRisk ? widgets.end() : widgets.begin());
    }

    const Widgets& widgets() const { return all; }

    Widgets living() const
    {
        if (guards.empty())
            return all;
        Widgets result;
        std::copy_if(guards.begin(), guards.end(), std::back_inserter(result),
            [](const QPointer<QWidget>& widget) { return !widget.isNull(); });
        return result;
    }

private:
    Widgets all;
    std::vector<QPointer<QWidget>> guards; // none where the application does not run
};

Widgets atPosition(const Step& step, const Widgets& widgets)
{
    if (step.position == Position::All || widgets.empty())
        return widgets;
    const int last = static_cast<int>(widgets.size()) - 1;
    const int index = step.position == Position::First ? 0 : step.position == Position::Last ? last : step.nth;
    return index <= last ? Widgets{widgets[static_cast<std::size_t>(index)]} : Widgets();
}

// The widgets that each step found, up to the first one that found nothing.
struct StepResults
{
    Widgets found;
    Scope scope; // of the last step
    std::size_t lastStep = 0;
    bool isTooFar = false; // the last step found widgets, but none at its position
};

// The widgets that fulfil the step, at all positions. In a search of the whole window, a path finds the widgets that it
// finds for the commands.
Widgets findStep(const Step& step, Visibility visibility, QWidget* window, const Widgets& scope, bool withScope)
{
    StepTest test(step, window);
    Matches matches(test, visibility);
    if (withScope && test.widgetsAtPath()) {
        for (QWidget* widget : *test.widgetsAtPath())
            matches.visit(widget);
    } else if (!withScope || matches.visit(scope.front())) {
        ScopeWalk(scope, matches);
    }
    return matches.collect();
}

StepResults findSteps(const QPointer<QWidget>& window, const Locator& locator, bool hiddenToo)
{
    const bool isAtRisk = readsProperties(locator);
    StepResults results;
    results.found = {window};
    for (std::size_t i = 0; i < locator.steps.size() && !results.found.empty() && window; ++i) {
        const Step& step = locator.steps[i];
        results.scope.set(results.found, isAtRisk);
        results.lastStep = i;
        const Visibility visibility = hiddenToo ? Visibility::Any : step.visibility;
        const Widgets all = findStep(step, visibility, window, results.scope.widgets(), i == 0);
        results.found = atPosition(step, all);
        results.isTooFar = results.found.empty() && !all.empty();
    }
    return results;
}

Widgets visibleWidgets(const Widgets& scope, bool withScope)
{
    VisibleWidgets visible;
    if (!withScope || visible.visit(scope.front()))
        ScopeWalk(scope, visible);
    return visible.widgets;
}

SearchResult resultOf(Outcome outcome, const Widgets& widgets)
{
    SearchResult result;
    result.outcome = outcome;
    result.count = static_cast<int>(widgets.size());
    const std::size_t kept = qMin(widgets.size(), std::size_t(SearchResult::maximumWidgets));
    result.widgets.assign(widgets.begin(), widgets.begin() + static_cast<std::ptrdiff_t>(kept));
    return result;
}

} // namespace

SearchResult search(QWidget* searchedWindow, const Locator& locator)
{
    const QPointer<QWidget> window(searchedWindow);
    const StepResults results = findSteps(window, locator, false);
    if (!results.found.empty())
        return resultOf(results.found.size() == 1 ? Outcome::One : Outcome::Several, results.found);
    const bool mayBeHidden = std::any_of(locator.steps.begin(), locator.steps.end(),
        [](const Step& step) { return step.visibility == Visibility::Visible; });
    const Widgets hidden = mayBeHidden && !results.isTooFar ? findSteps(window, locator, true).found : Widgets();
    if (!hidden.empty())
        return resultOf(Outcome::Hidden, hidden);
    const Widgets scope = results.scope.living();
    if (scope.empty() || !window)
        return SearchResult();
    const Widgets candidates = visibleWidgets(scope, results.lastStep == 0);
    return resultOf(Outcome::None, nearestWidgets(locator.steps[results.lastStep], window, candidates));
}

} // namespace locate
