#include "identify/syntheticname.h"

#include <QtCore/QStringList>

namespace identify {

namespace {

const int asciiCount = 128;

// The ASCII characters in one case. "&" and blanks, which no synthetic name has, are 0. Not constexpr: Microsoft's compiler
// of 2015 knows no loops there.
struct AsciiCase
{
    ushort characters[asciiCount];
};

AsciiCase asciiCase(ushort from, ushort to, int difference)
{
    AsciiCase table{};
    for (ushort code = 0; code < asciiCount; ++code) {
        const bool isLeftOut = code == '&' || code == ' ' || (code >= '\t' && code <= '\r');
        const bool isChanged = code >= from && code <= to;
        table.characters[code] = static_cast<ushort>(isLeftOut ? 0 : isChanged ? code + difference : code);
    }
    return table;
}

const AsciiCase upperCase = asciiCase('a', 'z', 'A' - 'a');
const AsciiCase lowerCase = asciiCase('A', 'Z', 'a' - 'A');

// Whether the text and the name have the same ending apart from case; if not, the text cannot become the name. The
// labels of one window, such as numbered ones, differ at their ends more often than at their beginnings.
bool endsAlike(const QString& text, const QString& name)
{
    const QChar* character = text.constData() + text.size();
    const QChar* expected = name.constData() + name.size();
    while (character != text.constData() && expected != name.constData()) {
        const ushort code = (--character)->unicode();
        if (code == 0 || code >= asciiCount)
            break;
        const ushort wanted = lowerCase.characters[code];
        if (wanted == 0)
            continue;
        const ushort found = (--expected)->unicode();
        if (found != wanted && found != upperCase.characters[code])
            return false;
    }
    return true;
}

} // namespace

QString syntheticName(QString text)
{
    text.remove(QLatin1Char('&'));
    QStringList words = text.simplified().toLower().split(QLatin1Char(' '));
    for (QString& word : words) {
        // A label of blanks has one empty word. Writing its first character makes it one U+0000 long, so that such
        // a button still has a name of its own.
        if (word.isEmpty())
            word = QString(1, QChar());
        word[0] = word.at(0).toUpper();
    }
    return words.join(QString());
}

bool isSyntheticName(const QString& text, const QString& name)
{
    if (!endsAlike(text, name))
        return false;
    const QChar* expected = name.constData();
    const QChar* const end = expected + name.size();
    const AsciiCase* inCase = &upperCase;
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (code >= asciiCount)
            return syntheticName(text) == name; // in another case, one character may be several
        const ushort wanted = inCase->characters[code];
        if (wanted != 0 || code == 0) {
            if (expected == end || expected->unicode() != wanted)
                return false;
            ++expected;
            inCase = &lowerCase;
        } else if (code != '&') {
            inCase = &upperCase;
        }
    }
    const bool anyCharacter = expected != name.constData();
    return anyCharacter ? expected == end : name == QString(1, QChar());
}

} // namespace identify
