// Integers of texts, however long: what QString::toInt() tells.

#include "compat/variant.h"
#include "unittests.h"

#include <QTest>

class tst_ToInt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreTheIntegersThatQtReads_data();
    void textsAreTheIntegersThatQtReads();
};

void tst_ToInt::textsAreTheIntegersThatQtReads_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<int>("number");
    const auto row = [](const char* name, const QString& text, bool isNumber, int number) {
        QTest::newRow(name) << text << isNumber << number;
    };
    const auto latin1 = [](const char* text) { return QString::fromLatin1(text); };
    const QString zeros(100, QLatin1Char('0'));
    const QString blanks(100, QLatin1Char(' '));
    row("number", latin1("42"), true, 42);
    row("lowest", latin1("-2147483648"), true, -2147483647 - 1);
    row("beyond the lowest", latin1("-2147483649"), false, 0);
    row("empty", QString(), false, 0);
    row("word", latin1("x"), false, 0);
    row("leading zeros", zeros + latin1("42"), true, 42);
    row("zeros", zeros, true, 0);
    row("negative with leading zeros", latin1("-") + zeros + latin1("42"), true, -42);
    row("positive with leading zeros", latin1("+") + zeros + latin1("42"), true, 42);
    row("blanks around", blanks + latin1("42") + blanks, true, 42);
    row("blanks and zeros", blanks + zeros + blanks, true, 0);
    row("blanks", blanks, false, 0);
    row("blank after the sign", latin1("- ") + zeros, false, 0);
    row("two signs", latin1("--") + zeros, false, 0);
    row("sign after zeros", zeros + latin1("-1"), false, 0);
    row("sign alone", blanks + latin1("-") + blanks, false, 0);
    row("digits without end", QString(100, QLatin1Char('1')), false, 0);
    row("words without end", QString(100, QLatin1Char('x')), false, 0);
    row("word after zeros", zeros + latin1("x"), false, 0);
    row("hexadecimal", latin1("0x") + zeros, false, 0);
}

void tst_ToInt::textsAreTheIntegersThatQtReads()
{
    QFETCH(QString, text);
    QFETCH(bool, isNumber);
    QFETCH(int, number);
    bool ok = !isNumber;
    QCOMPARE(compat::toInt(text, &ok), number);
    QCOMPARE(ok, isNumber);
    QCOMPARE(text.toInt(&ok, 10), number);
    QCOMPARE(ok, isNumber);
}

UNIT_TESTS(tst_toint, unit::withoutApplication<tst_ToInt>)
#include "tst_toint.moc"
