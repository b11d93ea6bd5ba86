#include "naivemenus.h"

#include "fuzzing.h"

#include <QtCore/QRegularExpression>

#include <algorithm>

namespace naive {

namespace {

// Words with one blank in between; a separator has none.
QString shownText(const MenuItem& item)
{
    const auto mnemonic = item.text.indexOf(QLatin1Char('&'));
    const QString text = mnemonic < 0 ? item.text : item.text.left(mnemonic) + item.text.mid(mnemonic + 1);
    QString words;
    bool isBetween = false;
    for (const QChar character : text) {
        if (isBetween && !character.isSpace() && !words.isEmpty())
            words += QLatin1Char(' ');
        isBetween = character.isSpace();
        if (!isBetween)
            words += character;
    }
    return item.isSeparator ? QString() : words;
}

bool canBeNamed(const MenuItem& item)
{
    return !(item.isHidden || item.isSeparator);
}

// How many items that can be named there are before this one.
int numberOf(const Items& items, const MenuItem& item)
{
    return static_cast<int>(std::count_if(items.data(), &item, canBeNamed));
}

// Only plain numbers are read here; blanks of all kinds and a plus sign are Qt's to judge.
bool isNumber(const QString& digits, int number)
{
    static const QRegularExpression plain(QStringLiteral("\\A0*([0-9]{1,5})\\z"));
    const QRegularExpressionMatch match = plain.match(digits);
    if (match.hasMatch()) {
        int value = 0;
        for (const QChar digit : match.captured(1))
            value = 10 * value + digit.unicode() - '0';
        return value == number;
    }
    bool ok = false;
    const int value = digits.toInt(&ok, 10);
    return ok && value == number;
}

// How many of the path's elements are the item's address among its siblings; 0 when none are.
int fittingLength(const Items& items, const MenuItem& item, const QStringList& path)
{
    const QLatin1String numberWord("Item ");
    if (!canBeNamed(item))
        return 0;
    if (path.first().startsWith(numberWord))
        return isNumber(path.first().mid(numberWord.size()), numberOf(items, item)) ? 1 : 0;
    const QStringList address = shownText(item).split(QLatin1Char('/'));
    if (address.size() > path.size())
        return 0;
    const bool fits = std::equal(address.begin(), address.end(), path.begin());
    return fits ? static_cast<int>(address.size()) : 0;
}

// The items on the way of a path, as far as it leads; their states do not matter.
struct Step
{
    QString element; // what names the item
    const MenuItem* item;
    bool isLast;
};

std::vector<Step> way(const Items& items, const QStringList& path)
{
    const FoundItem found = findMenuItem(items, path);
    const QStringList rest = path.mid(found.length);
    const QString element = QStringList(path.mid(0, found.length)).join(QLatin1String("/"));
    std::vector<Step> steps = {{element, found.item, rest.isEmpty()}};
    if (!found.item || rest.isEmpty())
        return steps;
    // Without a submenu nothing is found there.
    const std::vector<Step> further = way(found.item->items, rest);
    steps.insert(steps.end(), further.begin(), further.end());
    return steps;
}

QString boolText(bool value)
{
    return QLatin1String(value ? "true" : "false");
}

void appendEntries(QStringList& list, const MenuItem& item, const QString& path)
{
    if (item.items.empty())
        list.append(path);
    for (const MenuItem& below : item.items) {
        const QString unnamed = QString::fromLatin1("Item %1").arg(numberOf(item.items, below) + 1);
        const QString text = shownText(below);
        if (canBeNamed(below))
            appendEntries(list, below, path + QLatin1Char('/') + (text.isEmpty() ? unnamed : text));
    }
}

} // namespace

FoundItem findMenuItem(const Items& items, const QStringList& path)
{
    FoundItem best;
    for (const MenuItem& item : items) {
        const int length = fittingLength(items, item, path);
        // The first one; but one that a single element names comes before all that take several.
        if (length > 0 && (!best.item || (best.length > 1 && length == 1)))
            best = {&item, length};
    }
    return best;
}

QStringList menuItemList(const Items& items)
{
    QStringList list;
    for (const MenuItem& item : items)
        appendEntries(list, item, shownText(item));
    return list;
}

QString menuPathDisabled(const Items& items, const QStringList& path)
{
    const std::vector<Step> steps = way(items, path);
    const Step& last = steps.back();
    // The first item may be disabled, and the last one.
    const bool isBlocked = steps.size() > 1 && std::any_of(steps.begin() + 1, steps.end(), [](const Step& step) {
        return !step.isLast && step.item && step.item->isDisabled;
    });
    return last.item && last.isLast && !isBlocked ? boolText(last.item->isDisabled)
                                                  : QLatin1String("Could not reach last item of path");
}

QString barPathDisabled(const Items& items, const QStringList& path)
{
    const std::vector<Step> steps = way(items, path);
    for (const Step& step : steps) {
        if (!step.item)
            return QLatin1String("Could not find ") + fuzzing::shown(step.element);
        if (!step.isLast && step.item->isDisabled && &step != &steps.front())
            return fuzzing::shown(step.element) + QLatin1String(" is disabled");
    }
    return boolText(steps.back().item->isDisabled);
}

QString barPathChecked(const Items& items, const QStringList& path)
{
    const std::vector<Step> steps = way(items, path);
    for (const Step& step : steps) {
        if (!step.item || (!step.isLast && step.item->items.empty()))
            return QLatin1String("Invalid item");
        if (!step.isLast && step.item->isDisabled)
            return QLatin1String("Item is disabled");
    }
    const MenuItem& item = *steps.back().item;
    return item.isCheckable ? boolText(item.isChecked) : QLatin1String("Item is not checkable");
}

QString chosenItem(const Items& items, const QStringList& path)
{
    const std::vector<Step> steps = way(items, path);
    for (const Step& step : steps) {
        if (!step.item)
            return QLatin1String("Invalid item");
        if (step.item->isDisabled)
            return QLatin1String("Item is disabled");
    }
    const MenuItem& item = *steps.back().item;
    return item.items.empty() ? QString::number(item.line) : QString();
}

} // namespace naive
