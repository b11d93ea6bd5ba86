#include "compat/wildcard.h"

#include <algorithm>

namespace compat {

namespace {

const QLatin1Char escape('\\');
const QLatin1Char setBegin('[');
const QLatin1Char setEnd(']');

} // namespace

bool Wildcard::Item::contains(QChar character) const
{
    const ushort code = character.unicode();
    const bool isInRange = std::any_of(
        ranges.begin(), ranges.end(), [code](const Range& range) { return range.first <= code && code <= range.last; });
    return isInRange != isNegated;
}

Wildcard::Wildcard(const QString& pattern)
{
    bool isEscaped = false;
    for (int position = 0; isValid && position < pattern.size();) {
        const QChar character = pattern.at(position++);
        if (character == escape) {
            // In a row of backslashes, each except the first is a literal, and still escapes the next one.
            const bool isLast = position == pattern.size();
            for (int literals = int(isEscaped) + int(isLast); literals > 0; --literals)
                addLiteral(escape);
            isEscaped = true;
        } else {
            isValid = isEscaped ? addEscaped(character) : addUnescaped(character, pattern, position);
            isEscaped = false;
        }
    }
}

bool Wildcard::addEscaped(QChar character)
{
    if (!QString::fromLatin1("*?[]").contains(character))
        addLiteral(escape); // there was nothing to escape
    addLiteral(character);
    return true;
}

bool Wildcard::addUnescaped(QChar character, const QString& pattern, int& position)
{
    if (character == setEnd)
        return false; // of no set
    Item item;
    if (character == setBegin) {
        if (!readSet(pattern, position, item))
            return false;
    } else if (character == QLatin1Char('*') || character == QLatin1Char('?')) {
        item.isNegated = true;
        item.isRepeated = character == QLatin1Char('*');
    } else {
        item.add(character.unicode(), character.unicode());
    }
    items.push_back(item);
    return true;
}

void Wildcard::addLiteral(QChar character)
{
    Item item;
    item.add(character.unicode(), character.unicode());
    items.push_back(item);
}

// Reads a set from behind its "[" to behind its "]"; false when it has no end. A "]" in the first place does not end it.
bool Wildcard::readSet(const QString& pattern, int& position, Item& set)
{
    const int end = static_cast<int>(pattern.size());
    if (position < end && pattern.at(position) == QLatin1Char('^')) {
        set.isNegated = true;
        ++position;
    }
    ushort pending = 0; // may turn out to be the first one of a range
    bool isPending = false;
    bool isRange = false;
    do {
        if (position >= end)
            return false;
        const ushort code = pattern.at(position++).unicode();
        if (code == '-' && isPending && !isRange) {
            isRange = true;
            continue;
        }
        if (isRange)
            set.add(pending, code);
        else if (isPending)
            set.add(pending, pending);
        isPending = !isRange;
        isRange = false;
        pending = code;
    } while (position < end && pattern.at(position) != setEnd);
    if (isPending)
        set.add(pending, pending);
    if (isRange)
        set.add('-', '-');
    return position++ < end;
}

bool Wildcard::fits(const QString& text) const
{
    std::size_t item = 0;
    int position = 0;
    // Where to go on when the rest does not fit: after the last repeated item, which then takes one more character. Those
    // before it need no second try.
    std::size_t retryItem = items.size();
    int retryPosition = 0;
    while (isValid && position < text.size()) {
        if (item < items.size() && items[item].isRepeated) {
            retryItem = item++;
            retryPosition = position;
        } else if (item < items.size() && items[item].contains(text.at(position))) {
            ++item;
            ++position;
        } else if (retryItem < items.size()) {
            item = retryItem + 1;
            position = ++retryPosition;
        } else {
            return false;
        }
    }
    while (item < items.size() && items[item].isRepeated)
        ++item;
    return isValid && item == items.size();
}

} // namespace compat
