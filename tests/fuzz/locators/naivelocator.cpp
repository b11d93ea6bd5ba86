#include "naivelocator.h"

#include "compat/pattern.h"

#include <QAbstractButton>
#include <QLabel>
#include <QtCore/QRegularExpression>

#include <algorithm>

namespace naive {

namespace {

const char value[] = "(\"(?:[^\"\\\\]|\\\\[\"\\\\nt])*\"|[^\"]+)";

QRegularExpressionMatch match(const QString& pattern, const QString& word)
{
    return QRegularExpression(
        QLatin1String("\\A(?:") + pattern + QLatin1String(")\\z"), QRegularExpression::DotMatchesEverythingOption)
        .match(word);
}

// Parted by blanks that are not between quotes.
QStringList parted(const QString& locator)
{
    QStringList words(QString(QLatin1String("")));
    bool isQuoted = false;
    for (int i = 0; i < locator.size(); ++i) {
        const QChar character = locator.at(i);
        if (!isQuoted && character.isSpace()) {
            words.append(QString(QLatin1String("")));
            continue;
        }
        words.last() += character;
        if (isQuoted && character == QLatin1Char('\\') && i + 1 < locator.size())
            words.last() += locator.at(++i);
        else if (character == QLatin1Char('"'))
            isQuoted = !isQuoted;
    }
    words.removeAll(QString(QLatin1String("")));
    return words;
}

QString unquoted(const QString& text)
{
    if (!text.startsWith(QLatin1Char('"')))
        return text;
    QString result;
    for (int i = 1; i < text.size() - 1; ++i) {
        const bool isEscape = text.at(i) == QLatin1Char('\\');
        const QChar character = isEscape ? text.at(++i) : text.at(i);
        result += !isEscape                 ? character
            : character == QLatin1Char('n') ? QChar(QLatin1Char('\n'))
            : character == QLatin1Char('t') ? QChar(QLatin1Char('\t'))
                                            : character;
    }
    return result;
}

bool isGoodValue(const Word& word)
{
    bool ok = false;
    if (word.kind == Word::Kind::Position)
        return word.value.isNull() || (word.value.toInt(&ok) >= 0 && ok);
    const bool onlyEquals
        = QStringList({QLatin1String("path"), QLatin1String("ref"), QLatin1String("visible")}).contains(word.key);
    if (onlyEquals && word.sign != QLatin1String("="))
        return false;
    if (word.key == QLatin1String("ref"))
        return word.value.toLongLong(&ok) >= 1 && ok;
    if (word.key == QLatin1String("visible"))
        return QStringList({QLatin1String("true"), QLatin1String("false"), QLatin1String("any")}).contains(word.value);
    return word.sign != QLatin1String("~=") || compat::Pattern(word.value).error().isEmpty();
}

bool readWord(const QString& text, bool isFirst, Word& word)
{
    if (text == QLatin1String(">>")) {
        word = {Word::Kind::Within, text, QString(), QString()};
        return !isFirst;
    }
    const QString name = QLatin1String("[A-Za-z_][A-Za-z0-9_]*");
    const QString keys
        = QLatin1String("name|text|label|placeholder|tooltip|action|accessible|title|path|ref|visible|\\.") + name;
    QRegularExpressionMatch found = match(QLatin1String("first|last|nth=") + QLatin1String(value), text);
    if (found.hasMatch()) {
        const QString number = found.captured(1);
        word = {Word::Kind::Position, text.left(3), QString(), number.isNull() ? QString() : unquoted(number)};
        return isGoodValue(word);
    }
    found = match(QLatin1Char('(') + keys + QLatin1String(")(=|\\*=|~=)") + QLatin1String(value), text);
    if (found.hasMatch()) {
        word = {Word::Kind::Condition, found.captured(1), found.captured(2), unquoted(found.captured(3))};
        return isGoodValue(word);
    }
    word = {Word::Kind::Class, text, QString(), QString()};
    return isFirst
        && match(QLatin1String("\\*|") + name + QLatin1String("(::") + name + QLatin1String(")*"), text).hasMatch();
}

QString shown(QString text, bool hasMnemonics)
{
    if (hasMnemonics) {
        text = text.split(QLatin1Char('\t')).first();
        for (int i = 0; i + 1 < text.size(); ++i) {
            if (text.at(i) == QLatin1Char('&') && !text.at(i + 1).isSpace())
                text.remove(i, 1); // and the next one stays, whatever it is
        }
    }
    return text.simplified();
}

bool compare(const QString& text, const QString& sign, const QString& wanted)
{
    if (sign == QLatin1String("~="))
        return compat::Pattern(wanted).isIn(text);
    return sign == QLatin1String("=") ? text == wanted : text.contains(wanted);
}

bool showsText(const QWidget* widget, const Word& word)
{
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    const auto* label = qobject_cast<const QLabel*>(widget);
    if (!button && !label)
        return false;
    const QString text = button ? shown(button->text(), true) : shown(label->text(), false);
    if (word.sign == QLatin1String("~="))
        return compare(text, word.sign, word.value);
    const QString asShown = shown(word.value, false);
    const QString asWritten = shown(word.value, true);
    return compare(text, word.sign, asShown) || (!asWritten.isEmpty() && compare(text, word.sign, asWritten));
}

bool fits(const QWidget* widget, const Word& word, bool& isKnown)
{
    if (word.kind == Word::Kind::Class)
        return word.key == QLatin1String("*") || widget->inherits(word.key.toLatin1().constData());
    if (word.key == QLatin1String("name"))
        return compare(widget->objectName(), word.sign, word.value);
    if (word.key == QLatin1String("text"))
        return showsText(widget, word);
    isKnown = false;
    return false;
}

QList<QWidget*> withinWindow(QWidget* top)
{
    QList<QWidget*> widgets{top};
    for (QObject* child : top->children()) {
        auto* widget = qobject_cast<QWidget*>(child);
        if (widget && !widget->isWindow())
            widgets += withinWindow(widget);
    }
    return widgets;
}

bool isBelow(const QWidget* widget, const QList<QWidget*>& scope)
{
    return std::any_of(scope.begin(), scope.end(),
        [widget](const QWidget* above) { return above != widget && above->isAncestorOf(widget); });
}

QList<QWidget*> step(QList<QWidget*> widgets, const QList<Word>& words, bool& isKnown)
{
    QString visibility = QLatin1String("true");
    for (const Word& word : words)
        visibility = word.key == QLatin1String("visible") ? word.value : visibility;
    for (const Word& word : words) {
        QList<QWidget*> kept;
        for (QWidget* widget : widgets) {
            const bool isVisible
                = visibility == QLatin1String("any") || widget->isVisible() == (visibility == QLatin1String("true"));
            const bool isCondition = word.kind != Word::Kind::Position && word.key != QLatin1String("visible");
            if (isVisible && (!isCondition || fits(widget, word, isKnown)))
                kept.append(widget);
        }
        widgets = kept;
        if (word.kind == Word::Kind::Position && !widgets.isEmpty()) {
            const int index = word.key == QLatin1String("nth") ? word.value.toInt() : 0;
            const int place = word.key == QLatin1String("las") ? static_cast<int>(widgets.size()) - 1 : index;
            widgets = widgets.mid(place, 1);
        }
    }
    return widgets;
}

} // namespace

QList<Word> wordsOf(const QString& locator)
{
    QList<Word> words;
    const int most = 100;
    bool isFirst = true;
    bool isComplete = false;
    const QStringList texts = parted(locator);
    for (const QString& text : texts) {
        Word word;
        const bool isGood = readWord(text, isFirst, word) && (!isComplete || word.kind == Word::Kind::Within);
        if (!isGood || words.size() == most)
            return QList<Word>();
        isFirst = word.kind == Word::Kind::Within;
        isComplete = word.kind == Word::Kind::Position;
        words.append(word);
    }
    return isFirst ? QList<Word>() : words;
}

QList<QWidget*> widgetsOf(QWidget* window, const QList<Word>& words, bool& isKnown)
{
    const QList<QWidget*> all = withinWindow(window);
    QList<QWidget*> candidates = all;
    QList<Word> ofStep;
    QList<QWidget*> found;
    for (int i = 0; i <= words.size(); ++i) {
        if (i < words.size() && words.at(i).kind != Word::Kind::Within) {
            ofStep.append(words.at(i));
            continue;
        }
        found = step(candidates, ofStep, isKnown);
        candidates.clear();
        for (QWidget* widget : all) {
            if (isBelow(widget, found))
                candidates.append(widget);
        }
        ofStep.clear();
    }
    return found;
}

} // namespace naive
