// The reader of locators: what is made of one. What it refuses is tested over the wire, with the texts of the refusals.

#include "locate/locator.h"
#include "unittests.h"

#include <QTest>

using locate::Key;
using locate::Locator;
using locate::LocatorError;
using locate::Operator;
using locate::parseLocator;
using locate::Position;
using locate::Step;
using locate::Visibility;

class tst_Locator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStepHasAClassConditionsAndAPosition();
    void stepsAreWithinEachOther();
    void aValueIsAWordOrQuoted_data();
    void aValueIsAWordOrQuoted();
    void visibilityIsTheStepsOwn();
    void anErrorTellsItsPlace_data();
    void anErrorTellsItsPlace();
};

void tst_Locator::aStepHasAClassConditionsAndAPosition()
{
    const Locator locator = parseLocator(QLatin1String(" ns::Button text*=a  .flat~=b nth=3 "));
    QCOMPARE(static_cast<int>(locator.steps.size()), 1);
    const Step& step = locator.steps.front();
    QCOMPARE(step.className, QByteArray("ns::Button"));
    QCOMPARE(static_cast<int>(step.conditions.size()), 2);
    QVERIFY(step.conditions[0].key == Key::Text);
    QVERIFY(step.conditions[0].comparison == Operator::Contains);
    QCOMPARE(step.conditions[0].at, 12);
    QVERIFY(step.conditions[1].key == Key::Property);
    QVERIFY(step.conditions[1].comparison == Operator::Matches);
    QCOMPARE(step.conditions[1].property, QByteArray("flat"));
    QVERIFY(step.position == Position::Nth);
    QCOMPARE(step.nth, 3);
}

void tst_Locator::stepsAreWithinEachOther()
{
    const Locator locator = parseLocator(QLatin1String("A first >> * >> name=a>>b last"));
    QCOMPARE(static_cast<int>(locator.steps.size()), 3);
    QVERIFY(locator.steps[0].position == Position::First);
    QVERIFY(locator.steps[1].className.isEmpty());
    QCOMPARE(locator.steps[2].conditions.front().value, QString::fromLatin1("a>>b"));
    QVERIFY(locator.steps[2].position == Position::Last);
}

void tst_Locator::aValueIsAWordOrQuoted_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("value");
    QTest::newRow("word") << QString::fromLatin1("a,=*b") << QString::fromLatin1("a,=*b");
    QTest::newRow("quoted") << QString::fromLatin1("\" a  b \"") << QString::fromLatin1(" a  b ");
    QTest::newRow("escapes") << QString::fromLatin1("\"\\\"\\\\\\n\\t\"") << QString::fromLatin1("\"\\\n\t");
    QTest::newRow("empty") << QString::fromLatin1("\"\"") << QString();
    QTest::newRow("Unicode") << QString::fromUtf8("€") << QString::fromUtf8("€");
}

void tst_Locator::aValueIsAWordOrQuoted()
{
    QFETCH(QString, written);
    QFETCH(QString, value);
    const Locator locator = parseLocator(QLatin1String("name=") + written);
    QCOMPARE(locator.steps.front().conditions.front().value, value);
}

void tst_Locator::visibilityIsTheStepsOwn()
{
    const Locator locator = parseLocator(QLatin1String("A visible=any >> B visible=false >> C"));
    QVERIFY(locator.steps[0].visibility == Visibility::Any);
    QVERIFY(locator.steps[1].visibility == Visibility::Hidden);
    QVERIFY(locator.steps[2].visibility == Visibility::Visible);
    QVERIFY(locator.steps[0].conditions.empty());
}

void tst_Locator::anErrorTellsItsPlace_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("at");
    QTest::newRow("nothing") << QString() << 0;
    QTest::newRow("key") << QString::fromLatin1("QLabel nam=a") << 7;
    QTest::newRow("value") << QString::fromLatin1("name=") << 5;
    QTest::newRow("quote") << QString::fromLatin1("a >> name=\"b") << 10;
}

void tst_Locator::anErrorTellsItsPlace()
{
    QFETCH(QString, text);
    QFETCH(int, at);
    int told = -1;
    try {
        parseLocator(text);
    } catch (const LocatorError& error) {
        told = error.at;
    }
    QCOMPARE(told, at);
}

UNIT_TESTS(tst_locator, unit::withoutApplication<tst_Locator>)
#include "tst_locator.moc"
