#include "locate/locator.h"

#include "compat/pattern.h"

#include <algorithm>
#include <iterator>

namespace locate {

namespace {

const QLatin1Char quote('"');
const QLatin1Char backslash('\\');
const QLatin1String within(">>");

// More than anybody writes. Each word can cost a test of every widget.
const int maximumWords = 100;

struct KeyRow
{
    const char* word;
    Key key;
    bool onlyEquals; // there are no other operators for it
};

const KeyRow keyRows[] = {
    {"name", Key::Name, false},
    {"text", Key::Text, false},
    {"label", Key::Label, false},
    {"placeholder", Key::Placeholder, false},
    {"tooltip", Key::ToolTip, false},
    {"action", Key::Action, false},
    {"accessible", Key::Accessible, false},
    {"title", Key::Title, false},
    {"path", Key::Path, true},
    {"ref", Key::Reference, true},
    {"visible", Key::Visible, true},
};
const KeyRow propertyRow = {"", Key::Property, false};

struct OperatorRow
{
    const char* sign;
    Operator comparison;
};

const OperatorRow operatorRows[] = {
    {"=", Operator::Equals},
    {"*=", Operator::Contains},
    {"~=", Operator::Matches},
};

struct VisibilityRow
{
    const char* word;
    Visibility visibility;
};

const VisibilityRow visibilityRows[] = {
    {"true", Visibility::Visible},
    {"false", Visibility::Hidden},
    {"any", Visibility::Any},
};

struct EscapeRow
{
    char letter;
    char character;
};

const EscapeRow escapeRows[] = {{'"', '"'}, {'\\', '\\'}, {'n', '\n'}, {'t', '\t'}};

bool isLetter(QChar character)
{
    const ushort code = character.unicode();
    return (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z') || code == '_';
}

bool isNameCharacter(QChar character)
{
    return isLetter(character) || (character.unicode() >= '0' && character.unicode() <= '9');
}

[[noreturn]] void fail(const char* reason, int at)
{
    throw LocatorError{QString::fromLatin1(reason), at};
}

class Parser
{
public:
    explicit Parser(const QString& locator)
        : text(locator)
    {
    }

    Locator parse()
    {
        Locator locator;
        do
            locator.steps.push_back(parseStep());
        while (position < text.size());
        return locator;
    }

private:
    // Ends behind ">>", after which there is another step, or at the end.
    Step parseStep()
    {
        Step step;
        bool isEmpty = true;
        bool isComplete = false;
        for (;; isEmpty = false) {
            skipBlanks();
            if (position == text.size() && !isEmpty)
                return step;
            if (position == text.size() || ++words > maximumWords)
                fail(position == text.size() ? "something to look for expected" : "too many words", position);
            if (skipWord(within)) {
                if (isEmpty)
                    fail("something to look for expected", position - 2);
                requireMore();
                return step;
            }
            if (isComplete)
                fail("nothing can come after the position", position);
            isComplete = parseWord(step, isEmpty);
        }
    }

    void requireMore()
    {
        skipBlanks();
        if (position == text.size())
            fail("something to look for expected", position);
    }

    // True for a position.
    bool parseWord(Step& step, bool isFirst)
    {
        const int begin = position;
        if (skipWord(QLatin1String("first")))
            step.position = Position::First;
        else if (skipWord(QLatin1String("last")))
            step.position = Position::Last;
        else if (skip(QLatin1String("nth=")))
            parseNth(step);
        else if (isConditionAhead())
            parseCondition(step);
        else if (isFirst)
            parseClass(step);
        else
            fail("a condition or a position expected", begin);
        return step.position != Position::All;
    }

    void parseNth(Step& step)
    {
        const int begin = position;
        bool ok = false;
        step.nth = parseValue().toInt(&ok);
        if (!ok || step.nth < 0)
            fail("a number from 0 expected", begin);
        step.position = Position::Nth;
    }

    bool isConditionAhead() const
    {
        int end = position + (peek(position) == QLatin1Char('.') ? 1 : 0);
        while (isNameCharacter(peek(end)))
            ++end;
        const QChar sign = peek(end);
        return end > position
            && (sign == QLatin1Char('=')
                || ((sign == QLatin1Char('*') || sign == QLatin1Char('~')) && peek(end + 1) == QLatin1Char('='))
                || peek(position) == QLatin1Char('.'));
    }

    void parseClass(Step& step)
    {
        const int begin = position;
        if (skipWord(QLatin1String("*")))
            return;
        do {
            const int name = position;
            while (isNameCharacter(peek(position)))
                ++position;
            if (position == name || !isLetter(text.at(name)))
                fail("a class, a condition or a position expected", begin);
        } while (skip(QLatin1String("::")));
        requireBlank();
        step.className = text.mid(begin, position - begin).toLatin1();
    }

    void parseCondition(Step& step)
    {
        Condition condition;
        condition.at = position;
        const KeyRow& row = parseKey(condition);
        condition.key = row.key;
        const int sign = position;
        condition.comparison = parseOperator();
        if (row.onlyEquals && condition.comparison != Operator::Equals)
            fail("\"=\" expected", sign);
        const int value = position;
        condition.value = parseValue();
        if (condition.comparison == Operator::Matches)
            requirePattern(condition);
        if (row.key == Key::Visible)
            step.visibility = visibilityNamed(condition.value, value);
        else
            step.conditions.push_back(condition);
        if (row.key == Key::Reference)
            requireNumber(condition.value, value);
    }

    const KeyRow& parseKey(Condition& condition)
    {
        const int begin = position;
        const bool isProperty = skip(QLatin1String("."));
        const int nameBegin = position;
        while (isNameCharacter(peek(position)))
            ++position;
        const QString name = text.mid(nameBegin, position - nameBegin);
        if (isProperty) {
            if (name.isEmpty() || !isLetter(name.at(0)))
                fail("the name of a property expected", nameBegin);
            condition.property = name.toLatin1();
            return propertyRow;
        }
        for (const KeyRow& row : keyRows) {
            if (name == QLatin1String(row.word))
                return row;
        }
        const int maximumLength = 40;
        throw LocatorError{QLatin1String("unknown key \"") + name.left(maximumLength) + quote, begin};
    }

    Operator parseOperator()
    {
        for (const OperatorRow& row : operatorRows) {
            if (skip(QLatin1String(row.sign)))
                return row.comparison;
        }
        fail("\"=\", \"*=\" or \"~=\" expected", position);
    }

    QString parseValue()
    {
        if (peek(position) == quote)
            return parseQuoted();
        const int begin = position;
        while (position < text.size() && !text.at(position).isSpace()) {
            if (text.at(position) == quote)
                fail("a quote within a word", position);
            ++position;
        }
        if (position == begin)
            fail("a value expected", position);
        return text.mid(begin, position - begin);
    }

    QString parseQuoted()
    {
        const int begin = position++;
        QString value;
        value.reserve(text.size() - position);
        for (; position < text.size(); ++position) {
            const QChar character = text.at(position);
            if (character == quote) {
                ++position;
                requireBlank();
                return value;
            }
            value += character == backslash ? parseEscape() : character;
        }
        fail("a quote that does not end", begin);
    }

    // Ends at the letter.
    QChar parseEscape()
    {
        const ushort letter = peek(++position).unicode();
        for (const EscapeRow& row : escapeRows) {
            if (letter == static_cast<ushort>(row.letter))
                return QLatin1Char(row.character);
        }
        fail("an unknown escape", position - 1);
    }

    static Visibility visibilityNamed(const QString& word, int at)
    {
        for (const VisibilityRow& row : visibilityRows) {
            if (word == QLatin1String(row.word))
                return row.visibility;
        }
        fail("\"true\", \"false\" or \"any\" expected", at);
    }

    static void requireNumber(const QString& value, int at)
    {
        bool ok = false;
        if (value.toLongLong(&ok) < 1 || !ok)
            fail("a number from 1 expected", at);
    }

    static void requirePattern(const Condition& condition)
    {
        const QString error = compat::Pattern(condition.value).error();
        if (!error.isEmpty())
            throw LocatorError{QLatin1String("no pattern, ") + error, condition.at};
    }

    void requireBlank() const
    {
        if (position < text.size() && !text.at(position).isSpace())
            fail("a blank expected", position);
    }

    void skipBlanks()
    {
        while (position < text.size() && text.at(position).isSpace())
            ++position;
    }

    bool skip(QLatin1String sign)
    {
        int end = position;
        for (const char* expected = sign.latin1(); *expected != '\0'; ++expected, ++end) {
            if (peek(end) != QLatin1Char(*expected))
                return false;
        }
        position = end;
        return true;
    }

    // Skips a word, but not the beginning of a longer one.
    bool skipWord(QLatin1String word)
    {
        const int end = position + static_cast<int>(qstrlen(word.latin1()));
        return (end >= text.size() || text.at(end).isSpace()) && skip(word);
    }

    // U+0000 behind the end.
    QChar peek(int index) const { return index < text.size() ? text.at(index) : QChar(); }

    const QString& text;
    int position = 0;
    int words = 0;
};

} // namespace

Locator parseLocator(const QString& text)
{
    return Parser(text).parse();
}

} // namespace locate
