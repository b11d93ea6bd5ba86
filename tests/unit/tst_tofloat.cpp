#include "compat/variant.h"
#include "unittests.h"

#include <QTest>
#include <QtCore/QLocale>

class tst_ToFloat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void numbersOfTheCLocale_data();
    void numbersOfTheCLocale();
    void numbersOfTheLocaleComeFirst();
    void notANumberIsWhatItIsCalled();
};

void tst_ToFloat::cleanup()
{
    QLocale::setDefault(QLocale::c());
}

void tst_ToFloat::numbersOfTheCLocale_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<float>("number");
    QTest::newRow("fraction") << QString::fromLatin1("0.25") << true << 0.25F;
    QTest::newRow("exponent") << QString::fromLatin1("5e-1") << true << 0.5F;
    QTest::newRow("negative") << QString::fromLatin1("-2") << true << -2.0F;
    QTest::newRow("too small") << QString::fromLatin1("1e-50") << true << 0.0F;
    QTest::newRow("too large") << QString::fromLatin1("1e39") << false << 0.0F;
    QTest::newRow("infinity") << QString::fromLatin1("inf") << false << 0.0F;
    QTest::newRow("negative infinity") << QString::fromLatin1("-inf") << false << 0.0F;
    QTest::newRow("groups") << QString::fromLatin1("1,000") << false << 0.0F;
    QTest::newRow("comma") << QString::fromLatin1("0,5") << false << 0.0F;
    QTest::newRow("empty") << QString() << false << 0.0F;
    QTest::newRow("word") << QString::fromLatin1("half") << false << 0.0F;
}

void tst_ToFloat::numbersOfTheCLocale()
{
    QFETCH(QString, text);
    QLocale::setDefault(QLocale::c());
    bool ok = false;
    const float number = compat::toFloat(text, &ok);
    QTEST(ok, "isNumber");
    QTEST(number, "number");
}

void tst_ToFloat::numbersOfTheLocaleComeFirst()
{
    QLocale::setDefault(QLocale(QLocale::German));
    bool ok = false;
    QCOMPARE(compat::toFloat(QString::fromLatin1("0,5"), &ok), 0.5F);
    QVERIFY(ok);
    QCOMPARE(compat::toFloat(QString::fromLatin1("0.5"), &ok), 0.5F);
    QVERIFY(ok);
    compat::toFloat(QString::fromLatin1("1.000,5"), &ok);
    QVERIFY(!ok);
}

void tst_ToFloat::notANumberIsWhatItIsCalled()
{
    bool ok = false;
    const float number = compat::toFloat(QString::fromLatin1("nan"), &ok);
    QVERIFY(ok);
    QVERIFY(number != number);
}

UNIT_TESTS(tst_tofloat, unit::withoutApplication<tst_ToFloat>)
#include "tst_tofloat.moc"
