#include "locate/plaintext.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace locate {

namespace {

const QLatin1Char blank(' ');
const uint lastCodePoint = 0x10ffff;

// Tags within a line: the words on either side of them are not parted.
const char* const inlineTags[] = {
    "a", "b", "big", "code", "em", "font", "i", "kbd", "s", "small", "span", "strong", "sub", "sup", "tt", "u", "var"};

// Elements of which nothing is shown.
const char* const hiddenElements[] = {"head", "script", "style", "title"};

struct Entity
{
    const char* name;
    ushort character;
};

const Entity entities[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}, {"nbsp", 0xa0},
    {"copy", 0xa9}, {"reg", 0xae}, {"euro", 0x20ac}, {"hellip", 0x2026}, {"mdash", 0x2014}, {"ndash", 0x2013}};

template <std::size_t size>
bool isOneOf(const char* const (&names)[size], const QString& name)
{
    return std::any_of(
        std::begin(names), std::end(names), [&name](const char* listed) { return name == QLatin1String(listed); });
}

uint codeOf(const QString& entity)
{
    if (entity.startsWith(QLatin1Char('#'))) {
        const bool isHexadecimal = entity.mid(1, 1).toLower() == QLatin1String("x");
        bool ok = false;
        const uint code = entity.mid(isHexadecimal ? 2 : 1).toUInt(&ok, isHexadecimal ? 16 : 10);
        return ok ? code : 0;
    }
    for (const Entity& row : entities) {
        if (entity == QLatin1String(row.name))
            return row.character;
    }
    return 0;
}

class Reader
{
public:
    explicit Reader(const QString& html)
        : source(html)
    {
    }

    QString text()
    {
        while (position < source.size()) {
            const QChar character = source.at(position);
            const bool isRead = character == QLatin1Char('<') ? readTag()
                : character == QLatin1Char('&')               ? readEntity()
                                                              : false;
            if (isRead)
                continue;
            append(character);
            ++position;
        }
        return plain;
    }

private:
    void append(QChar character)
    {
        if (!isHidden)
            plain += character;
    }

    bool readTag()
    {
        if (source.mid(position, 4) == QLatin1String("<!--"))
            return skipBehind(QLatin1String("-->"));
        int nameBegin = position + 1;
        const bool isEnd = at(nameBegin) == QLatin1Char('/');
        if (isEnd)
            ++nameBegin;
        if (!at(nameBegin).isLetter() && at(nameBegin) != QLatin1Char('!'))
            return false; // less than
        int nameEnd = nameBegin;
        while (nameEnd - nameBegin < maximumNameLength && at(nameEnd).isLetterOrNumber())
            ++nameEnd;
        const QString name = source.mid(nameBegin, nameEnd - nameBegin).toLower();
        if (isOneOf(hiddenElements, name))
            isHidden = !isEnd;
        else if (!isOneOf(inlineTags, name))
            append(blank);
        return skipBehind(QLatin1String(">"));
    }

    // All of the rest where the mark is not there.
    bool skipBehind(QLatin1String mark)
    {
        const int found = static_cast<int>(source.indexOf(mark, position));
        position = found < 0 ? static_cast<int>(source.size()) : found + static_cast<int>(qstrlen(mark.latin1()));
        return true;
    }

    bool readEntity()
    {
        const int begin = position + 1;
        int end = begin;
        while (end - begin < maximumNameLength && (at(end).isLetterOrNumber() || at(end) == QLatin1Char('#')))
            ++end;
        const uint code = at(end) == QLatin1Char(';') ? codeOf(source.mid(begin, end - begin)) : 0;
        if (code == 0 || code > lastCodePoint || (code >= 0xd800 && code <= 0xdfff))
            return false; // "and"
        if (QChar::requiresSurrogates(code)) {
            append(QChar(QChar::highSurrogate(code)));
            append(QChar(QChar::lowSurrogate(code)));
        } else {
            append(QChar(static_cast<ushort>(code)));
        }
        position = end + 1;
        return true;
    }

    // U+0000 behind the end.
    QChar at(int index) const { return index < source.size() ? source.at(index) : QChar(); }

    static const int maximumNameLength = 10;

    const QString& source;
    QString plain;
    int position = 0;
    bool isHidden = false;
};

} // namespace

QString plainText(const QString& html)
{
    return Reader(html).text();
}

} // namespace locate
