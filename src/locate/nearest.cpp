#include "locate/nearest.h"

#include "locate/steptest.h"

#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <numeric>
#include <vector>

namespace locate {

namespace {

const int maximumDistance = 100;

// Letters to change, to add or to leave out.
int editsBetween(const QString& text, const QString& other)
{
    std::vector<int> row(static_cast<std::size_t>(other.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < text.size(); ++i) {
        int diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 1; j < row.size(); ++j) {
            const int changed = diagonal + (text.at(i) == other.at(static_cast<int>(j) - 1) ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min(changed, std::min(row[j], row[j - 1]) + 1);
        }
    }
    return row.back();
}

// How far a text is from another one: 0 for the same in another case of letters, 1 where one is within the other, more for
// those that differ in some letters; `maximumDistance` for all others.
int distanceBetween(const QString& text, const QString& other)
{
    const int maximumLength = 60;
    const int minimumPartLength = 2;
    if (text.size() > maximumLength || other.size() > maximumLength)
        return maximumDistance;
    const QString lower = text.toLower();
    const QString otherLower = other.toLower();
    if (lower == otherLower)
        return 0;
    const int shorter = static_cast<int>(qMin(lower.size(), otherLower.size()));
    if (shorter >= minimumPartLength && (lower.contains(otherLower) || otherLower.contains(lower)))
        return 1;
    const int letters = editsBetween(lower, otherLower);
    return 2 * letters <= shorter ? letters + 1 : maximumDistance;
}

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
        if (test.hasProperties() && row.widget
            && !test.propertiesFit(row.widget, [&row] { return !row.widget.isNull(); }))
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
        const int maximumLength = 1000;
        if (text.size() <= maximumLength)
            least = qMin(least, distanceBetween(shownText(text, markup), wanted));
        return least == 0;
    }

    int least = maximumDistance;

private:
    const QString wanted;
};

// How far the texts of the widget are from those that the conditions ask for; `maximumDistance` and more where none is similar.
int distanceOf(const StepTest& test, const Step& step, const QWidget* widget)
{
    int least = maximumDistance;
    int sum = 0;
    for (const Condition& condition : step.conditions) {
        Distance distance(condition.value);
        test.readTexts(condition.key, widget, distance);
        least = qMin(least, distance.least);
        sum += distance.least;
    }
    return least < maximumDistance ? sum : maximumDistance * (static_cast<int>(step.conditions.size()) + 1);
}

struct Ranked
{
    QWidget* widget;
    int distance;

    bool operator<(const Ranked& other) const { return distance < other.distance; }
};

// The widgets, the most similar ones first. Those without any similar text are left out unless `otherwiseToo`.
Widgets bySimilarity(const Step& step, QWidget* window, const Widgets& widgets, bool otherwiseToo)
{
    const StepTest test(step, window);
    const int notSimilar = maximumDistance * (static_cast<int>(step.conditions.size()) + 1);
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
