#include "agent/wirevalue.h"

#include "compat/variant.h"
#include "unittests.h"

#include <QTest>
#include <QtCore/QLine>
#include <QtCore/QPointF>
#include <QtCore/QRect>

class tst_WireValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valueFromText_data();
    void valueFromText();
    void stringFromText();
    void noValueIsNotSupported();
    void otherTypesAreUnknown_data();
    void otherTypesAreUnknown();
    void rectanglesAreInclusive();
};

void tst_WireValue::valueFromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("string") << QString::fromLatin1("s:abc") << QVariant(QString::fromLatin1("abc"));
    QTest::newRow("empty string") << QString::fromLatin1("s:") << QVariant(QString::fromLatin1(""));
    QTest::newRow("string with prefix") << QString::fromLatin1("s:i:1") << QVariant(QString::fromLatin1("i:1"));
    QTest::newRow("true") << QString::fromLatin1("b:true") << QVariant(true);
    QTest::newRow("false") << QString::fromLatin1("b:false") << QVariant(false);
    QTest::newRow("integer") << QString::fromLatin1("i:42") << QVariant(42);
    QTest::newRow("negative integer") << QString::fromLatin1("i:-7") << QVariant(-7);
    QTest::newRow("no integer") << QString::fromLatin1("i:4x") << QVariant();
    QTest::newRow("too large") << QString::fromLatin1("i:99999999999") << QVariant();
    QTest::newRow("no digits") << QString::fromLatin1("i:") << QVariant();
    QTest::newRow("other bool") << QString::fromLatin1("b:yes") << QVariant();
    QTest::newRow("upper case") << QString::fromLatin1("S:abc") << QVariant();
    QTest::newRow("no prefix") << QString::fromLatin1("abc") << QVariant();
    QTest::newRow("empty") << QString() << QVariant();
}

void tst_WireValue::valueFromText()
{
    QFETCH(QString, text);
    QFETCH(QVariant, value);
    const QVariant result = agent::valueFromText(text);
    QCOMPARE(compat::typeOf(result), compat::typeOf(value));
    QCOMPARE(result, value);
}

void tst_WireValue::stringFromText()
{
    QCOMPARE(agent::stringFromText(QLatin1String("s:x")), QVariant(QString::fromLatin1("x")));
    QVERIFY(!agent::stringFromText(QLatin1String("i:1")).isValid());
    QVERIFY(!agent::stringFromText(QLatin1String("b:true")).isValid());
}

void tst_WireValue::noValueIsNotSupported()
{
    QCOMPARE(agent::replyForValue(QVariant()), QByteArray("8,Property type not supported"));
}

void tst_WireValue::otherTypesAreUnknown_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("qlonglong") << QVariant(Q_INT64_C(1));
    QTest::newRow("qulonglong") << QVariant(Q_UINT64_C(1));
    QTest::newRow("float") << QVariant(1.5f);
    QTest::newRow("QChar") << QVariant(QChar(65));
    QTest::newRow("QPointF") << QVariant(QPointF());
    QTest::newRow("QLine") << QVariant(QLine());
}

void tst_WireValue::otherTypesAreUnknown()
{
    QFETCH(QVariant, value);
    QCOMPARE(agent::replyForValue(value), QByteArray("8,Unknown property type"));
}

void tst_WireValue::rectanglesAreInclusive()
{
    QCOMPARE(agent::replyForRect(QRect(10, 20, 30, 40)), QByteArray("0,r:10,20,39,59"));
    QCOMPARE(agent::replyForRect(QRect(-5, -6, 1, 1)), QByteArray("0,r:-5,-6,-5,-6"));
}

UNIT_TESTS(tst_wirevalue, unit::withoutApplication<tst_WireValue>)
#include "tst_wirevalue.moc"
