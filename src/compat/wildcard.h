#pragma once

#include <QtCore/QString>

#include <vector>

namespace compat {

// A pattern for whole texts: "*" stands for any text, "?" for any character, "[a-c]" for a character of a set, "[^a-c]"
// for any other, and "\" takes its meaning from a "*", "?", "[" or "]" that follows. It means what QRegExp::WildcardUnix
// means, a class that Qt 6 has in a library of its own only. (Where a set begins with "]", QRegExp of Qt 4 reads a "*", "?"
// or "\" in it as if it stood outside; Qt 5 has mended that.)
class Wildcard
{
public:
    explicit Wildcard(const QString& pattern);

    // Whether the pattern stands for this text; upper and lower case differ. A pattern with an unescaped "[" or "]"
    // without its counterpart stands for no text.
    bool fits(const QString& text) const;

private:
    struct Range
    {
        ushort first;
        ushort last;
    };
    // Characters in one of the ranges or, negated, in none of them.
    struct Item
    {
        bool isRepeated = false; // any number of such characters, rather than one
        bool isNegated = false;
        std::vector<Range> ranges;

        void add(ushort from, ushort to) { ranges.push_back({qMin(from, to), qMax(from, to)}); }
        bool contains(QChar character) const;
    };

    // Each adds what a character of the pattern stands for; false where the pattern cannot stand for anything. The position
    // is behind the character, and afterwards behind all that belongs to it.
    bool addEscaped(QChar character);
    bool addUnescaped(QChar character, const QString& pattern, int& position);
    void addLiteral(QChar character);
    static bool readSet(const QString& pattern, int& position, Item& set);

    std::vector<Item> items;
    bool isValid = true;
};

} // namespace compat
