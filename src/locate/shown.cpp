#include "locate/shown.h"

#include "locate/plaintext.h"

#include <algorithm>

namespace locate {

namespace {

const QChar ampersand(QLatin1Char('&'));
const QChar blank(QLatin1Char(' '));
const QChar tab(QLatin1Char('\t'));

// The shown characters of a text without HTML, one after the other.
class ShownCharacters
{
public:
    ShownCharacters(const QString& text, bool hasMnemonics)
        : position(text.constData())
        , end(position + text.size())
        , mnemonics(hasMnemonics)
    {
        skipBlanks();
    }

    // False behind the last one.
    bool next(QChar& character)
    {
        if (isAtEnd())
            return false;
        character = *position++;
        if (mnemonics && character == ampersand) {
            if (position != end && !position->isSpace())
                character = *position++;
        } else if (character.isSpace()) {
            character = blank;
            skipBlanks();
            return !isAtEnd();
        }
        return true;
    }

    // Takes the next one and returns whether it is `expected`, which is a character that can be shown. The shortcut is
    // for the many characters that stand for themselves.
    bool takeAndCompare(QChar expected)
    {
        const bool isItself = position != end && *position == expected && expected != blank && expected != ampersand;
        if (isItself)
            ++position;
        QChar character;
        return isItself || (next(character) && character == expected);
    }

private:
    // In a text with mnemonics, a tab ends what is shown.
    bool isAtEnd() const { return position == end || (mnemonics && *position == tab); }

    void skipBlanks()
    {
        while (!isAtEnd() && position->isSpace())
            ++position;
    }

    const QChar* position;
    const QChar* end;
    const bool mnemonics;
};

// Whether the character is shown as it is, whatever its neighbours are, unless a tab comes before it.
bool standsForItself(QChar character)
{
    const ushort code = character.unicode();
    return code > blank.unicode() && character != ampersand && (code < 0x7f || !character.isSpace());
}

// How many of the last characters stand for themselves, including the one before these.
int comparableAtEnd(const QString& shown)
{
    int count = 0;
    while (count < shown.size() && standsForItself(shown.at(static_cast<int>(shown.size()) - ++count)))
        continue;
    return count;
}

} // namespace

QString shownText(const QString& text, Markup markup)
{
    const QString plain = markup == Markup::Rich ? plainText(text) : text;
    ShownCharacters characters(plain, markup == Markup::Mnemonics);
    QString shown;
    shown.reserve(plain.size());
    for (QChar character; characters.next(character);)
        shown += character;
    return shown;
}

ShownComparison::ShownComparison(const QString& shownOne)
    : shown(shownOne)
    , comparedAtEnd(comparableAtEnd(shownOne))
{
}

// Whether its length or its last characters are enough to see that the text is shown as a different one. They are for most
// texts, also for those that begin alike.
bool ShownComparison::isOther(const QString& text, bool hasMnemonics) const
{
    if (text.size() < shown.size())
        return true; // nothing is added to what is shown
    const QChar* last = text.constData() + text.size();
    const QChar* lastShown = shown.constData() + shown.size();
    const QChar* const firstCompared = lastShown - comparedAtEnd;
    while (lastShown != firstCompared) {
        if (*--last == *--lastShown)
            continue;
        // It does not count if a tab comes before it, which must be behind at least as many characters as are shown.
        const QChar* const firstTab = text.constData() + shown.size();
        return standsForItself(*last) && (!hasMnemonics || last <= firstTab || std::find(firstTab, last, tab) == last);
    }
    return false;
}

bool ShownComparison::isEqualToShown(const QString& text, Markup markup) const
{
    if (markup == Markup::Rich)
        return shownText(text, markup) == shown;
    ShownCharacters characters(text, markup == Markup::Mnemonics);
    const QChar* const end = shown.constData() + shown.size();
    for (const QChar* expected = shown.constData(); expected != end; ++expected) {
        if (!characters.takeAndCompare(*expected))
            return false;
    }
    QChar further;
    return !characters.next(further);
}

} // namespace locate
