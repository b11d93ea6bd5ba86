// Patterns for whole texts, by examples, and against the class whose meaning they have.

#include "compat/wildcard.h"

#include <QtCore/QStringList>
#include <QtTest>

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
    void aLongTextOfManyTriesIsDoneAtOnce();
#ifdef QTDRIVER_HAS_QREGEXP
    void shortPatternsMeanWhatTheyMeanToQRegExp();
    void longPatternsMeanWhatTheyMeanToQRegExp();
#endif
};

void tst_Wildcard::patternsStandForTexts_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("fits");
    const auto row = [](const char* pattern, const char* text, bool fits) {
        QTest::newRow(qPrintable(QString::fromLatin1("%1 %2").arg(QLatin1String(pattern), QLatin1String(text))))
            << QString::fromLatin1(pattern) << QString::fromLatin1(text) << fits;
    };
    row("Editor", "Editor", true);
    row("Editor", "editor", false);
    row("Editor", "Editor 2", false);
    row("", "", true);
    row("", "a", false);
    row("*", "", true);
    row("*", "a\nb", true);
    row("Edit*", "Editor", true);
    row("*or*2*", "Editor 2", true);
    row("*ab", "aab", true);
    row("?", "", false);
    row("Ed?tor", "Editor", true);
    row("Ed?tor", "Edtor", false);
    row("[A-C]at", "Bat", true);
    row("[A-C]at", "Dat", false);
    row("[C-A]at", "Bat", true);
    row("[^A-C]at", "Dat", true);
    row("[^A-C]at", "Bat", false);
    row("[a-]", "-", true);
    row("[]a]", "]", true);
    row("[]a]", "a", true);
    row("[]*]", "*", true);
    row("[]*]", ".", false);
    row("[^]a]", "]", false);
    row("[^]", "a", false);
    row("[a", "a", false);
    row("[a", "[a", false);
    row("a]", "a]", false);
    row("a\\]", "a]", true);
    row("[*?]", "*", true);
    row("[*?]", "a", false);
    row("[\\]", "\\", true);
    row("\\*", "*", true);
    row("\\*", "a", false);
    row("\\?\\[a\\]", "?[a]", true);
    row("\\a", "\\a", true);
    row("a\\", "a\\", true);
    row("(a|b)+.$^{1}", "(a|b)+.$^{1}", true);
    row("a.c", "abc", false);
}

void tst_Wildcard::patternsStandForTexts()
{
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    QTEST(compat::Wildcard(pattern).fits(text), "fits");
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

QTEST_APPLESS_MAIN(tst_Wildcard)
#include "tst_wildcard.moc"
