#include "identify/widgetpath.h"
#include "latin1.h"

#include "identify/widgetlookup.h"
#include "identify/widgettree.h"
#include "unittests.h"

#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTextStream>
#include <QToolButton>

#include <random>

class tst_WidgetPath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void searchName_data();
    void searchName();
    void checkPath_data();
    void checkPath();
    void candidatesComeInChildOrderAndTheWindowLast();
    void anEmptyNameThatWasSetTurnsDerivedNamesOff();
    void oneSearchFindsWhatTheCandidatesOfTheNameTell();
    void namesAreWrittenAsTheyStand();
};

namespace {

template <class Widget>
Widget* named(Widget* widget, const char* name)
{
    widget->setObjectName(latin1(name));
    return widget;
}

QString treeOf(const QWidget& widget)
{
    QString text;
    QTextStream stream(&text);
    identify::widgetTree(&widget, 0, stream);
    stream.flush();
    return text;
}

} // namespace

void tst_WidgetPath::searchName_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("one element") << QString::fromLatin1("ok") << QString::fromLatin1("ok");
    QTest::newRow("last of several") << QString::fromLatin1("a/b/ok") << QString::fromLatin1("ok");
    QTest::newRow("unnamed") << QString::fromLatin1("a/unnamed") << QString::fromLatin1("");
    QTest::newRow("empty") << QString::fromLatin1("") << QString::fromLatin1("");
    QTest::newRow("slash at the end") << QString::fromLatin1("a/") << QString::fromLatin1("");
}

void tst_WidgetPath::searchName()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    const identify::WidgetPath widgetPath(path);
    QCOMPARE(identify::searchName(widgetPath.lastElement()), name);
    QVERIFY(!identify::searchName(widgetPath.lastElement()).isNull());
    QVERIFY(!identify::searchName(identify::WidgetPath(QString()).lastElement()).isNull());
}

void tst_WidgetPath::checkPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("fits");
    // The chain is main > a > unnamed > b > ok, with the window "main" itself in a widget "outer".
    QTest::newRow("name") << QString::fromLatin1("ok") << true;
    QTest::newRow("parent") << QString::fromLatin1("b/ok") << true;
    QTest::newRow("unnamed level") << QString::fromLatin1("unnamed/b/ok") << true;
    QTest::newRow("full path") << QString::fromLatin1("main/a/unnamed/b/ok") << true;
    QTest::newRow("gap") << QString::fromLatin1("a//ok") << true;
    QTest::newRow("gap of no level") << QString::fromLatin1("b//ok") << true;
    QTest::newRow("gap to the window") << QString::fromLatin1("main//ok") << true;
    QTest::newRow("wide gap") << QString::fromLatin1("main////ok") << true;
    QTest::newRow("two gaps") << QString::fromLatin1("main//a//ok") << true;
    QTest::newRow("leading gap") << QString::fromLatin1("/ok") << true;
    QTest::newRow("leading gap and parent") << QString::fromLatin1("//b/ok") << true;
    QTest::newRow("only gaps") << QString::fromLatin1("//") << true;
    QTest::newRow("empty") << QString::fromLatin1("") << true;
    QTest::newRow("gap at the end") << QString::fromLatin1("b//") << true;
    QTest::newRow("level left out") << QString::fromLatin1("a/ok") << false;
    QTest::newRow("no such ancestor") << QString::fromLatin1("x//ok") << false;
    QTest::newRow("above the window") << QString::fromLatin1("outer/main/a/unnamed/b/ok") << false;
    QTest::newRow("gap above the window") << QString::fromLatin1("outer//ok") << false;
    QTest::newRow("other name") << QString::fromLatin1("OK") << false;
    QTest::newRow("wrong order") << QString::fromLatin1("b//a//ok") << false;
}

void tst_WidgetPath::checkPath()
{
    QFETCH(QString, path);
    QFETCH(bool, fits);
    QWidget outer;
    named(&outer, "outer");
    auto* window = named(new QWidget(&outer), "main");
    auto* a = named(new QWidget(window), "a");
    auto* unnamedLevel = new QWidget(a);
    auto* b = named(new QWidget(unnamedLevel), "b");
    const auto* ok = named(new QWidget(b), "ok");
    QCOMPARE(identify::checkPath(ok, window, identify::WidgetPath(path)), fits);
}

void tst_WidgetPath::candidatesComeInChildOrderAndTheWindowLast()
{
    QWidget window;
    const char* const name = "Go_dialog_button";
    named(&window, name);
    auto* first = new QWidget(&window);
    auto* inFirst = named(new QWidget(first), name);
    auto* derived = new QPushButton(latin1("&Go"), &window);
    auto* second = named(new QLabel(&window), name);
    QList<QWidget*> found;
    identify::widgetList(found, &window, latin1(name));
    QCOMPARE(found, QList<QWidget*>() << inFirst << second << derived << &window);
    identify::widgetList(found, &window, latin1("nothing"));
    QVERIFY(found.isEmpty());
}

void tst_WidgetPath::anEmptyNameThatWasSetTurnsDerivedNamesOff()
{
    QWidget window;
    named(&window, "window");
    auto* button = named(new QPushButton(latin1("Go"), &window), "");
    if (button->objectName().isNull())
        return; // Qt 6 does not tell an empty name from none
    QList<QWidget*> found;
    identify::widgetList(found, &window, latin1("Go_dialog_button"));
    QVERIFY(found.isEmpty());
    QCOMPARE(identify::searchName(latin1("unnamed")), latin1(""));
    identify::widgetList(found, &window, latin1(""));
    QCOMPARE(found, QList<QWidget*>() << button);
}

void tst_WidgetPath::oneSearchFindsWhatTheCandidatesOfTheNameTell()
{
    const char* const names[] = {"a", "b", "", "unnamed", "Go_dialog_button", "QWidget__widget__", "window"};
    std::mt19937 random(1);
    const auto number = [&random](int limit) { return int(random() % unsigned(limit)); };
    QInputDialog window;
    window.setObjectName(latin1("window"));
    window.setAttribute(Qt::WA_DontShowOnScreen);
    QList<QWidget*> widgets = QList<QWidget*>() << &window;
    for (int i = 0; i < 60; ++i) {
        QWidget* parent = widgets.at(number(int(widgets.size())));
        QWidget* widget = number(3) ? new QWidget(parent) : new QPushButton(latin1("&go"), parent);
        if (number(2))
            widget->setObjectName(latin1(names[number(4)]));
        widget->setVisible(number(4));
        widgets << widget;
    }
    window.show();
    for (int i = 0; i < 500; ++i) {
        QStringList elements;
        for (int count = 1 + number(4); count > 0; --count)
            elements << latin1(names[number(7)]);
        const identify::WidgetPath path(elements.join(QLatin1String("/")));
        QList<QWidget*> candidates;
        identify::widgetList(candidates, &window, identify::searchName(path.lastElement()));
        const identify::WidgetLookup chosen = identify::chooseWidget(candidates, &window, path);
        const identify::WidgetLookup found = identify::findWidget(&window, path);
        QCOMPARE(int(found.error), int(chosen.error));
        QCOMPARE(found.visibleCount, chosen.visibleCount);
        QCOMPARE(found.widget, chosen.widget);
    }
}

void tst_WidgetPath::namesAreWrittenAsTheyStand()
{
    QWidget window;
    named(&window, "a\"b\nc");
    QCOMPARE(treeOf(window), latin1("\f0 N QWidget : \"a\"b\nc\""));
}

UNIT_TESTS(tst_widgetpath, unit::withApplication<tst_WidgetPath>)
#include "tst_widgetpath.moc"
