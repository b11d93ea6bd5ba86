#include "locate/nearest.h"

#include "locate/similarity.h"
#include "locate/steptest.h"

#include <QPointer>
#include <QWidget>

#include <algorithm>

namespace locate {

namespace {

using Widgets = std::vector<QWidget*>;
struct Unmet
{
    QPointer<QWidget> widget;
    int count;
};

Widgets living(const std::vector<Unmet>& rows, int unmet)
{
    Widgets widgets;
    for (const Unmet& row : rows) {
        if (row.widget && row.count == unmet)
            widgets.push_back(row.widget);
    }
    return widgets;
}

// Those that fulfil all conditions, or else all but one.
Widgets nearlyFitting(const Step& step, QWidget* window, const Widgets& widgets)
{
    StepTest test(step, window);
    std::vector<Unmet> rows;
    for (QWidget* widget : widgets) {
        const int unmet = test.unmetCount(widget);
        if (unmet <= 1)
            rows.push_back({widget, unmet});
    }
    for (Unmet& row : rows) {
        if (test.hasProperties() && row.widget && !test.propertiesFit(row.widget))
            ++row.count;
    }
    const Widgets fitting = living(rows, 0);
    return fitting.empty() && test.conditionCount() > 1 ? living(rows, 1) : fitting;
}

// The least distance of any text from the one that a condition asks for.
class Distance : public TextVisitor
{
public:
    explicit Distance(const QString& wantedText)
        : wanted(shownText(wantedText, Markup::Mnemonics))
    {
    }

    bool visit(const QString& text, Markup markup) override
    {
        const int longest = 1000;
        if (text.size() <= longest)
            least = qMin(least, distanceBetween(shownText(text, markup), wanted));
        return least == 0;
    }

    int least = farthest;

private:
    const QString wanted;
};

// How far the texts of the widget are from those that the conditions ask for; `farthest` and more where none is similar.
int distanceOf(const StepTest& test, const Step& step, const QWidget* widget)
{
    int least = farthest;
    int sum = 0;
    for (const Condition& condition : step.conditions) {
        Distance distance(condition.value);
        test.readTexts(condition.key, widget, distance);
        least = qMin(least, distance.least);
        sum += distance.least;
    }
    return least < farthest ? sum : farthest * (static_cast<int>(step.conditions.size()) + 1);
}

struct Ranked
{
    QWidget* widget;
    int distance;

    bool operator<(const Ranked& other) const { return distance < other.distance; }
};

// The most similar ones first, and those that are not similar at all only if asked for.
Widgets bySimilarity(const Step& step, QWidget* window, const Widgets& widgets, bool otherwiseToo)
{
    const StepTest test(step, window);
    const int notSimilar = farthest * (static_cast<int>(step.conditions.size()) + 1);
    std::vector<Ranked> ranked;
    for (QWidget* widget : widgets) {
        const int distance = distanceOf(test, step, widget);
        if (otherwiseToo || distance < notSimilar)
            ranked.push_back({widget, distance});
    }
    std::stable_sort(ranked.begin(), ranked.end());
    Widgets result;
    for (const Ranked& row : ranked)
        result.push_back(row.widget);
    return result;
}

} // namespace

std::vector<QWidget*> nearestWidgets(const Step& step, QWidget* window, const std::vector<QWidget*>& widgets)
{
    const std::vector<QPointer<QWidget>> guarded(widgets.begin(), widgets.end());
    const QPointer<QWidget> guardedWindow(window);
    const Widgets fitting = nearlyFitting(step, window, widgets);
    if (!guardedWindow)
        return Widgets();
    if (!fitting.empty())
        return bySimilarity(step, window, fitting, true);
    Widgets left;
    for (const QPointer<QWidget>& widget : guarded) {
        if (widget)
            left.push_back(widget);
    }
    return bySimilarity(step, window, left, false);
}

} // namespace locate
