// The numbers that widgets have for a test.

#include "locate/references.h"
#include "unittests.h"

#include <QSet>
#include <QTest>

#include <memory>

using locate::References;

class tst_References : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWidgetKeepsItsNumber();
    void aNumberIsNeverGivenTwice();
    void aNumberEndsWithItsWidget();
    void nothingIsLeftOnTheWidget();
};

void tst_References::aWidgetKeepsItsNumber()
{
    QWidget widget;
    QWidget other;
    const qint64 number = References::all().numberOf(&widget);
    QVERIFY(number > 0);
    QVERIFY(References::all().numberOf(&other) != number);
    QCOMPARE(References::all().numberOf(&widget), number);
    QCOMPARE(References::all().widgetOf(number), &widget);
}

void tst_References::aNumberIsNeverGivenTwice()
{
    // So many that the dead are forgotten several times, in memory that is used again and again.
    QSet<qint64> numbers;
    const int count = 10000;
    for (int i = 0; i < count; ++i) {
        const std::unique_ptr<QWidget> widget(new QWidget);
        numbers.insert(References::all().numberOf(widget.get()));
    }
    QCOMPARE(static_cast<int>(numbers.size()), count);
    for (const qint64 number : numbers)
        QVERIFY(!References::all().widgetOf(number));
}

void tst_References::aNumberEndsWithItsWidget()
{
    std::unique_ptr<QWidget> widget(new QWidget);
    const qint64 number = References::all().numberOf(widget.get());
    widget.reset();
    QVERIFY(!References::all().widgetOf(number));
    const std::unique_ptr<QWidget> next(new QWidget); // most probably in the same place
    QVERIFY(!References::all().widgetOf(number));
    QVERIFY(References::all().numberOf(next.get()) != number);
    QVERIFY(!References::all().widgetOf(number));
    for (const qint64 never : {qint64(0), qint64(-1), References::all().numberOf(next.get()) + 1})
        QVERIFY(!References::all().widgetOf(never));
}

void tst_References::nothingIsLeftOnTheWidget()
{
    QWidget widget;
    References::all().numberOf(&widget);
    QVERIFY(widget.dynamicPropertyNames().isEmpty());
    QVERIFY(widget.objectName().isNull());
    QVERIFY(widget.children().isEmpty());
}

UNIT_TESTS(tst_references, unit::withApplication<tst_References>)
#include "tst_references.moc"
