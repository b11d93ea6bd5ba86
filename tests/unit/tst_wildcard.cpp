// Patterns for whole texts, by examples, and against the class whose meaning they have.

#include "compat/wildcard.h"
#include "unittests.h"

#include <QTest>
#include <QtCore/QStringList>

#ifdef QTDRIVER_HAS_QREGEXP
#include <QRegExp>

#include <random>
#endif

class tst_Wildcard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void patternsStandForTexts_data();
    void patternsStandForTexts();
    void setsOfCharactersStandForOne_data();
    void setsOfCharactersStandForOne();
    void aLongTextOfManyTriesIsDoneAtOnce();
#ifdef QTDRIVER_HAS_QREGEXP
    void shortPatternsMeanWhatTheyMeanToQRegExp();
    void longPatternsMeanWhatTheyMeanToQRegExp();
#endif
};

namespace {

struct Example
{
    const char* pattern;
    const char* text;
    bool fits;
};

template <std::size_t count>
void addRows(const Example (&examples)[count])
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("fits");
    for (const Example& example : examples) {
        const QString pattern = QString::fromLatin1(example.pattern);
        const QString text = QString::fromLatin1(example.text);
        QTest::newRow(qPrintable(pattern + QLatin1Char(' ') + text)) << pattern << text << example.fits;
    }
}

void checkRow()
{
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    QTEST(compat::Wildcard(pattern).fits(text), "fits");
}

} // namespace

void tst_Wildcard::patternsStandForTexts_data()
{
    const Example examples[] = {
        {"Editor", "Editor", true},
        {"Editor", "editor", false},
        {"Editor", "Editor 2", false},
        {"", "", true},
        {"", "a", false},
        {"*", "", true},
        {"*", "a\nb", true},
        {"Edit*", "Editor", true},
        {"*or*2*", "Editor 2", true},
        {"*ab", "aab", true},
        {"?", "", false},
        {"Ed?tor", "Editor", true},
        {"Ed?tor", "Edtor", false},
        {"\\*", "*", true},
        {"\\*", "a", false},
        {"\\?\\[a\\]", "?[a]", true},
        {"\\a", "\\a", true},
        {"a\\", "a\\", true},
        {"(a|b)+.$^{1}", "(a|b)+.$^{1}", true},
        {"a.c", "abc", false},
    };
    addRows(examples);
}

void tst_Wildcard::patternsStandForTexts()
{
    checkRow();
}

void tst_Wildcard::setsOfCharactersStandForOne_data()
{
    const Example examples[] = {
        {"[A-C]at", "Bat", true},
        {"[A-C]at", "Dat", false},
        {"[C-A]at", "Bat", true},
        {"[^A-C]at", "Dat", true},
        {"[^A-C]at", "Bat", false},
        {"[a-]", "-", true},
        {"[]a]", "]", true},
        {"[]a]", "a", true},
        {"[]*]", "*", true},
        {"[]*]", ".", false},
        {"[^]a]", "]", false},
        {"[^]", "a", false},
        {"[a", "a", false},
        {"[a", "[a", false},
        {"a]", "a]", false},
        {"a\\]", "a]", true},
        {"[*?]", "*", true},
        {"[*?]", "a", false},
        {"[\\]", "\\", true},
    };
    addRows(examples);
}

void tst_Wildcard::setsOfCharactersStandForOne()
{
    checkRow();
}

void tst_Wildcard::aLongTextOfManyTriesIsDoneAtOnce()
{
    const compat::Wildcard wildcard(QString::fromLatin1("*a").repeated(50) + QLatin1Char('b'));
    QVERIFY(!wildcard.fits(QString(10000, QLatin1Char('a'))));
    QVERIFY(wildcard.fits(QString(10000, QLatin1Char('a')) + QLatin1Char('b')));
}

#ifdef QTDRIVER_HAS_QREGEXP
namespace {

// All texts of so many of the characters, in order.
QStringList textsOf(const char* characters, int longest)
{
    QStringList texts(QString(QLatin1String("")));
    int first = 0;
    for (int length = 1; length <= longest; ++length) {
        const int end = int(texts.size());
        for (int i = first; i < end; ++i) {
            for (const char* character = characters; *character; ++character)
                texts.append(texts.at(i) + QLatin1Char(*character));
        }
        first = end;
    }
    return texts;
}

// Whether QRegExp reads the pattern as it is meant: Qt 4 loses its way in sets that begin with "]".
bool isReadByQRegExp(const QString& pattern)
{
    return QT_VERSION >= QT_VERSION_CHECK(5, 0, 0)
        || !(pattern.contains(QLatin1String("[]")) || pattern.contains(QLatin1String("[^]")));
}

void compare(const QString& pattern, const QStringList& texts)
{
    if (!isReadByQRegExp(pattern))
        return;
    const compat::Wildcard wildcard(pattern);
    const QRegExp expected(pattern, Qt::CaseSensitive, QRegExp::WildcardUnix);
    for (const QString& text : texts) {
        const bool fits = wildcard.fits(text);
        if (fits != expected.exactMatch(text))
            QFAIL(qPrintable(QString::fromLatin1("'%1' '%2': %3").arg(pattern, text).arg(fits)));
    }
}

} // namespace

void tst_Wildcard::shortPatternsMeanWhatTheyMeanToQRegExp()
{
    const QStringList texts = textsOf("a-]*.\\[b", 2);
    const QStringList patterns = textsOf("*?[]^-\\a.", 4);
    for (const QString& pattern : patterns) {
        compare(pattern, texts);
        if (QTest::currentTestFailed())
            return;
    }
}

void tst_Wildcard::longPatternsMeanWhatTheyMeanToQRegExp()
{
    const QString characters = QString::fromLatin1("***??[[[]]]]^--\\\\aabcz.$(|{+ \n") + QChar(0x20ac) + QChar(0);
    std::mt19937 random(1);
    const auto randomText = [&](int longest) {
        QString text;
        for (int length = int(random() % unsigned(longest + 1)); length > 0; --length)
            text += characters.at(int(random() % unsigned(characters.size())));
        return text;
    };
    for (int i = 0; i < 20000; ++i) {
        const QString pattern = randomText(14);
        // A text near the pattern, for one that is made up on its own hardly ever fits.
        QStringList texts;
        for (int k = 0; k < 8; ++k) {
            QString text = pattern;
            for (int changes = int(random() % 6); changes > 0 && !text.isEmpty(); --changes)
                text.replace(int(random() % unsigned(text.size())), int(random() % 3), randomText(1));
            texts << text << randomText(4);
        }
        compare(pattern, texts);
        if (QTest::currentTestFailed())
            return;
    }
}
#endif

UNIT_TESTS(tst_wildcard, unit::withoutApplication<tst_Wildcard>)
#include "tst_wildcard.moc"
