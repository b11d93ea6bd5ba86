// Texts of values: the same on every Qt as Qt 4.8 has them.

#include "compat/variant.h"
#include "unittests.h"

#include <QTest>
#include <QtCore/QDateTime>
#include <QtCore/QStringList>
#include <QtCore/QUrl>

class tst_TextOf : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valuesHaveTheirTexts_data();
    void valuesHaveTheirTexts();
};

void tst_TextOf::valuesHaveTheirTexts_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    const auto row
        = [](const char* name, const QVariant& value, const QString& text) { QTest::newRow(name) << value << text; };
    const auto latin1 = [](const char* text) { return QString::fromLatin1(text); };
    row("nothing", QVariant(), QString());
    row("text", latin1("caf\xe9"), latin1("caf\xe9"));
    row("int", -7, latin1("-7"));
    row("unsigned int", 4000000000U, latin1("4000000000"));
    row("long long", Q_INT64_C(-5000000000), latin1("-5000000000"));
    row("bool", true, latin1("true"));
    row("character", QChar(0x20ac), QString(QChar(0x20ac)));
    row("double", 1.0 / 3, latin1("0.333333333333333"));
    row("large double", 1e100, latin1("1e+100"));
    row("float", 1.0F / 3, latin1("0.333333"));
    row("short float", 0.1F, latin1("0.1"));
    row("float like an int", 3.0F, latin1("3"));
    row("large float", 1e10F, latin1("1e+10"));
    row("small float", -1.5e-7F, latin1("-1.5e-07"));
    row("bytes", QByteArray("bytes"), latin1("bytes"));
    row("bytes beyond ASCII", QByteArray("caf\xe9"), latin1("caf\xe9"));
    row("bytes of UTF-8", QByteArray("\xe2\x82\xac"), latin1("\xe2\x82\xac"));
    row("bytes with a NUL", QByteArray("cut\0off", 7), latin1("cut"));
    row("no bytes", QByteArray(), QString());
    row("list of one", QStringList(latin1("one")), latin1("one"));
    row("list of two", QStringList() << latin1("one") << latin1("two"), QString());
    row("date", QDate(2024, 2, 29), latin1("2024-02-29"));
    row("time", QTime(13, 5, 9, 250), latin1("13:05:09"));
    row("address", QUrl(latin1("http://localhost/a")), latin1("http://localhost/a"));
    row("pair of numbers", QSize(3, 4), QString());
}

void tst_TextOf::valuesHaveTheirTexts()
{
    QFETCH(QVariant, value);
    QTEST(compat::textOf(value), "text");
}

UNIT_TESTS(tst_textof, unit::withoutApplication<tst_TextOf>)
#include "tst_textof.moc"
