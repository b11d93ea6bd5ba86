#include "naivebridge.h"

#include <QtCore/QRegularExpression>

#include <algorithm>

namespace naive {

namespace {

using All = std::vector<Described>;

const QLatin1String ambiguous("WidgetAmbiguousError");
const QLatin1String notFound("WidgetNotFoundError");
const QLatin1String noError("NoError");

const Described& get(const All& all, int number)
{
    return all.at(static_cast<std::size_t>(number));
}

bool isWidget(const Described& one)
{
    return one.kind != Described::Kind::TrayIcon;
}

// The number itself, its parent's, and so on.
std::vector<int> lineOf(const All& all, int number)
{
    std::vector<int> line;
    for (; number >= 0; number = get(all, number).parent)
        line.push_back(number);
    return line;
}

bool isBelow(const All& all, int number, int ancestor)
{
    const std::vector<int> line = lineOf(all, number);
    return number != ancestor && std::count(line.begin(), line.end(), ancestor) == 1;
}

bool isVisible(const All& all, int number)
{
    const Described& one = get(all, number);
    return !one.isHidden && (one.isWindow || isVisible(all, one.parent));
}

bool isHiddenWithAncestors(const All& all, int number)
{
    const std::vector<int> line = lineOf(all, number);
    return std::any_of(line.begin(), line.end(), [&](int step) { return get(all, step).isHidden; });
}

QString nameOf(const Described& one, const Search& search)
{
    return one.name.isNull() && search.hasProvider ? one.providedName : one.name;
}

bool hasTitle(const Described& one, const Search& search)
{
    if (!search.hasPatternTitle)
        return one.title == search.title;
    QString pattern = QRegularExpression::escape(search.title);
    pattern.replace(QLatin1String("\\*"), QLatin1String(".*")).replace(QLatin1String("\\?"), QLatin1String("."));
    const QRegularExpression whole(
        QLatin1String("\\A(?:") + pattern + QLatin1String(")\\z"), QRegularExpression::DotMatchesEverythingOption);
    return whole.match(one.title).hasMatch();
}

// Whether the elements from `index` down to the first fit above a step of the line; the step after its end is above the
// top, where every name fits.
bool fitsAbove(const QStringList& names, std::size_t step, const QStringList& elements, int index)
{
    const auto count = static_cast<std::size_t>(names.size());
    if (index < 0)
        return true;
    if (index == 0 && elements.first().isNull())
        return step + 1 == count;
    const bool isGap = elements.at(index).isNull();
    for (; index >= 0 && elements.at(index).isNull(); --index)
        ++step;
    if (isGap && step >= count)
        return false;
    if (index < 0 || step >= count)
        return true;
    if (step + 1 == count)
        return false;
    const auto next = static_cast<int>(step) + 1;
    if (!isGap)
        return names.at(next) == elements.at(index) && fitsAbove(names, step + 1, elements, index - 1);
    const auto found = std::find(names.begin() + next, names.end(), elements.at(index));
    return fitsAbove(names, static_cast<std::size_t>(found - names.begin()), elements, index - 1);
}

bool fits(const All& all, int number, const Search& search, int last)
{
    QStringList names;
    const std::vector<int> line = lineOf(all, number);
    for (const int step : line)
        names.append(nameOf(get(all, step), search));
    return names.first() == search.name.at(last) && fitsAbove(names, 0, search.name, last - 1);
}

bool isSearched(const All& all, int window, const Search& search)
{
    const Described& one = get(all, window);
    const bool isMeant = search.window >= 0 ? search.window == window : one.isWindow;
    return isMeant && !search.isWindowGone && isWidget(one) && !(search.onlyVisible && !isVisible(all, window))
        && (search.title.isNull() || hasTitle(one, search));
}

bool isCandidate(const All& all, int number, int window, const Search& search)
{
    const Described& one = get(all, number);
    return isWidget(one) && isBelow(all, number, window) && !one.isWindow
        && !(search.onlyVisible && isHiddenWithAncestors(all, number));
}

Outcome onlyOneOf(const std::vector<int>& found)
{
    if (found.empty())
        return {-1, notFound};
    return found.size() == 1 ? Outcome{found.front(), noError} : Outcome{-1, ambiguous};
}

Outcome windowWithTitle(const All& all, const Search& search)
{
    std::vector<int> found;
    for (int i = 0; i < static_cast<int>(all.size()); ++i) {
        const Described& one = get(all, i);
        if (one.isWindow && (!search.onlyVisible || isVisible(all, i)) && hasTitle(one, search))
            found.push_back(i);
    }
    return found.empty() ? Outcome{-1, noError} : onlyOneOf(found);
}

Outcome descended(const All& all, int from, std::size_t levels)
{
    std::vector<int> found;
    bool goesOn = false;
    for (int i = 0; i < static_cast<int>(all.size()); ++i) {
        const std::vector<int> line = lineOf(all, i);
        const auto place = static_cast<std::size_t>(std::find(line.begin(), line.end(), from) - line.begin());
        if (!isWidget(get(all, i)) || place >= line.size())
            continue;
        if (place == levels)
            found.push_back(i);
        goesOn = goesOn || place == levels + 1;
    }
    return goesOn ? Outcome{-1, ambiguous} : onlyOneOf(found);
}

} // namespace

Outcome findHierarchically(const std::vector<Described>& all, const Search& search)
{
    int last = static_cast<int>(search.name.size()) - 1;
    std::size_t levelsDown = 0;
    for (; last >= 0 && search.name.at(last).isNull(); --last)
        ++levelsDown;
    if (last < 0) {
        const bool isForWindow = search.name.size() == 1 && !search.title.isNull();
        return isForWindow ? windowWithTitle(all, search) : Outcome{-1, QLatin1String("InvalidWidgetPath")};
    }
    std::vector<int> found;
    const int count = static_cast<int>(all.size());
    for (int window = 0; window < count; ++window) {
        for (int i = 0; i < count && isSearched(all, window, search); ++i) {
            if ((i == window || isCandidate(all, i, window, search)) && fits(all, i, search, last))
                found.push_back(i);
        }
    }
    Outcome outcome = onlyOneOf(found);
    if (outcome.number >= 0 && levelsDown > 0)
        outcome = descended(all, outcome.number, levelsDown);
    const bool isUnseen = outcome.number >= 0 && search.onlyVisible && !isVisible(all, outcome.number);
    return isUnseen ? Outcome{-1, notFound} : outcome;
}

Outcome findTrayIcon(const std::vector<Described>& all, const QString& name)
{
    std::vector<int> found;
    for (int i = 0; i < static_cast<int>(all.size()); ++i) {
        const std::vector<int> line = lineOf(all, i);
        // Once for each window that it is below.
        for (const int step : line) {
            if (!isWidget(get(all, i)) && get(all, i).name == name && get(all, step).isWindow)
                found.push_back(i);
        }
    }
    return onlyOneOf(found);
}

} // namespace naive
