// Windows by their title, exact or a pattern, in the search by hierarchical name.

#include "searchwindows.h"
#include "unittests.h"

#include <QTest>

class tst_WindowTitle : public QObject, private SearchWindows
{
    Q_OBJECT

private Q_SLOTS:
    void init() { showWindows(); }
    void cleanup() { deleteWindows(); }
    void oneNullFindsAWindowByTitle();
    void oneNullIgnoresTheGivenWindow();
    void titleOfNoWindowIsNoError();
    void twoWindowsOfOneTitleAreAmbiguous();
    void titlePatterns_data();
    void titlePatterns();
    void titleChoosesTheWindow();
};

void tst_WindowTitle::oneNullFindsAWindowByTitle()
{
    QCOMPARE(find("*", latin1("Editor")), main.get());
    QCOMPARE(error(), latin1("NoError"));
    main->hide();
    QVERIFY(!find("*", latin1("Editor")));
    QCOMPARE(find("*", latin1("Editor"), nullptr, false), main.get());
    main->setWindowTitle(QString());
    main->show();
    QCOMPARE(find("*", latin1("")), main.get()); // an empty title is a title
}

void tst_WindowTitle::oneNullIgnoresTheGivenWindow()
{
    QCOMPARE(find("*", latin1("Editor"), other.get()), main.get());
}

void tst_WindowTitle::titleOfNoWindowIsNoError()
{
    find("nobody");
    QVERIFY(!find("*", latin1("Nothing")));
    QCOMPARE(error(), latin1("NoError"));
}

void tst_WindowTitle::twoWindowsOfOneTitleAreAmbiguous()
{
    other->setWindowTitle(latin1("Editor"));
    QVERIFY(!find("*", latin1("Editor")));
    QCOMPARE(error(), latin1("WidgetAmbiguousError"));
    other->hide();
    QCOMPARE(find("*", latin1("Editor")), main.get());
    QVERIFY(!find("*", latin1("Editor"), nullptr, false));
    QCOMPARE(error(), latin1("WidgetAmbiguousError"));
}

void tst_WindowTitle::titlePatterns_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("fits");
    const auto row = [](const char* title, const char* pattern, bool fits) {
        QTest::newRow(pattern) << latin1(title) << latin1(pattern) << fits;
    };
    row("Report 7", "Report*", true);
    row("Report 7", "Repor", false);
    row("Report 7", "*port 7", true);
    row("Report 7", "Report ?", true);
    row("Report 7", "Report ??", false);
    row("Report 7", "Report [5-8]", true);
    row("Report 7", "Report [a-z]", false);
    row("Report 7", "report*", false);
    row("Report 7", "Report 7", true);
    row("Report (7)", "Report (?)", true);
    row("Report *", "Report \\*", true);
    row("Report 7", "Report \\*", false);
    row("a/b", "a*b", true);
    row("Report 7", "Report [7", false);
    row("", "*", true);
}

void tst_WindowTitle::titlePatterns()
{
    QFETCH(QString, title);
    QFETCH(QString, pattern);
    QFETCH(bool, fits);
    main->setWindowTitle(title);
    QWidget* const expected = fits ? main.get() : nullptr;
    other->hide();
    QCOMPARE(find("*", pattern, nullptr, true, true), expected);
    QCOMPARE(find("main", pattern, nullptr, true, true), expected);
    QCOMPARE(find("main", pattern), title == pattern ? main.get() : nullptr);
}

void tst_WindowTitle::titleChoosesTheWindow()
{
    QWidget* const ok = add<QWidget>(other.get(), "cancel");
    ok->show();
    QVERIFY(!find("cancel"));
    QCOMPARE(find("cancel", latin1("Editor 2")), ok);
    QVERIFY(!find("cancel", latin1("Editor 3")));
    QCOMPARE(error(), latin1("WidgetNotFoundError"));
    QVERIFY(!find("cancel", latin1(""))); // not null: only windows without title
    QCOMPARE(find("cancel", latin1("*2"), nullptr, true, true), ok);
}

UNIT_TESTS(tst_windowtitle, unit::withApplication<tst_WindowTitle>)
#include "tst_windowtitle.moc"
