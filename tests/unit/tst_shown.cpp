// The part of a text that is shown, and so can be looked for.

#include "locate/shown.h"
#include "unittests.h"

#include <QTest>

using locate::Markup;
using locate::ShownComparison;

class tst_Shown : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isWhatAUserReads_data();
    void isWhatAUserReads();
    void isNothingElse();
    void brokenHtmlIsReadInOnePass_data();
    void brokenHtmlIsReadInOnePass();
};

void tst_Shown::isWhatAUserReads_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("markup");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char* text, Markup markup, const char* shown) {
        QTest::newRow(text) << QString::fromUtf8(text) << int(markup) << QString::fromUtf8(shown);
    };
    row("", Markup::Mnemonics, "");
    row("Save", Markup::Mnemonics, "Save");
    row("&Save", Markup::Mnemonics, "Save");
    row("Sa&ve &as", Markup::Mnemonics, "Save as");
    row("R&&D", Markup::Mnemonics, "R&D");
    row("Tom & Jerry", Markup::Mnemonics, "Tom & Jerry");
    row("Tom && Jerry", Markup::Mnemonics, "Tom & Jerry");
    row("Save&", Markup::Mnemonics, "Save&");
    row("Save &", Markup::Mnemonics, "Save &");
    row("&&&Save", Markup::Mnemonics, "&Save");
    row("&Open\tCtrl+O", Markup::Mnemonics, "Open");
    row("\tCtrl+O", Markup::Mnemonics, "");
    row("  two\n \t lines ", Markup::None, "two lines");
    row("two\nlines", Markup::Mnemonics, "two lines");
    row("AT&T", Markup::None, "AT&T");
    row(" \n ", Markup::None, "");
    row("Grüße €", Markup::Mnemonics, "Grüße €");
    row("a\xc2\xa0 b", Markup::None, "a b");
    row("<b>Bold</b>ly", Markup::Rich, "Boldly");
    row("<p>one</p><p>two</p>", Markup::Rich, "one two");
    row("one<br/>two", Markup::Rich, "one two");
    row("a &amp; b &lt;c&gt; &#8364; &#x20ac; &nosuch; &", Markup::Rich, "a & b <c> € € &nosuch; &");
    row("&#1114112; &#xd83d;", Markup::Rich, "&#1114112; &#xd83d;");
    row("<html><head><title>T</title><style>p { color: red }</style></head><body>Text</body></html>", Markup::Rich,
        "Text");
    row("<!-- <b>no</b> -->yes", Markup::Rich, "yes");
    row("1 < 2 <a href=\"x>y\">link</a>", Markup::Rich, "1 < 2 y\">link");
}

void tst_Shown::isWhatAUserReads()
{
    QFETCH(QString, text);
    QFETCH(int, markup);
    QFETCH(QString, shown);
    QCOMPARE(locate::shownText(text, Markup(markup)), shown);
    QVERIFY(ShownComparison(shown).isShownOf(text, Markup(markup)));
    QVERIFY(!ShownComparison(shown + QLatin1Char('x')).isShownOf(text, Markup(markup)));
    QVERIFY(shown.isEmpty() || !ShownComparison(shown.left(shown.size() - 1)).isShownOf(text, Markup(markup)));
}

// Whether a text shows another is found out without making what it shows, and mostly by its last characters.
void tst_Shown::isNothingElse()
{
    const QStringList texts
        = QString::fromUtf8("Save|&Save|Save &|Save&|R&&D|R&D|&&Save|Save\tCtrl+S|Save\tSave|\tSave| Save |"
                            "Save as|Sa&ve as|Save  as\n|as|Save\u00a0as|x as|Grüße €|Gr&üße €|e €|1...|11...|"
                            "&Item 1...|Item 11...||&| |a b|ab|a&b|a& b|a &b|xa b\tb|xab\tab|b|\tb|a\tb ")
              .split(QLatin1Char('|'));
    for (const QString& text : texts) {
        for (const QString& other : texts) {
            for (const Markup markup : {Markup::None, Markup::Mnemonics}) {
                const QString shown = locate::shownText(other, markup);
                QCOMPARE(ShownComparison(shown).isShownOf(text, markup), locate::shownText(text, markup) == shown);
            }
        }
    }
}

void tst_Shown::brokenHtmlIsReadInOnePass_data()
{
    QTest::addColumn<QString>("piece");
    for (const char* piece : {"<", "&", "<b", "<!--", "<style>", "&amp", "</", "<!"})
        QTest::newRow(piece) << QString::fromLatin1(piece);
}

void tst_Shown::brokenHtmlIsReadInOnePass()
{
    QFETCH(QString, piece);
    const QString text = piece.repeated(1000 * 1000); // looked at from each place anew, it would take hours
    QVERIFY(locate::shownText(text, Markup::Rich).size() <= text.size());
}

UNIT_TESTS(tst_shown, unit::withoutApplication<tst_Shown>)
#include "tst_shown.moc"
