#include "errorof.h"
#include "latin1.h"
#include "proxy/sterror.h"
#include "unittests.h"

#include <QTest>

class tst_STError : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void argumentsFillTheirConversions();
    void doubledPercentSignsBecomeOne();
    void conversionsWithoutArgumentStayAsWritten_data();
    void conversionsWithoutArgumentStayAsWritten();
    void longMessagesAreCut();
    void textsOfArgumentsAreNoFormats();
    void textsEndBeforeTheirFirstNull();
    void errorsAreCopied();
};

void tst_STError::argumentsFillTheirConversions()
{
    QCOMPARE(errorOf([] { proxy::raiseError("[%d, %d] in \"%s\"", -1, 2147483647, "name"); }),
        latin1("[-1, 2147483647] in \"name\""));
    QCOMPARE(errorOf([] { proxy::raiseError("%s", QString(QChar(0xe9))); }), QString(QChar(0xe9)));
}

void tst_STError::doubledPercentSignsBecomeOne()
{
    QCOMPARE(errorOf([] { proxy::raiseError("100%% of %s, %%d", "it"); }), latin1("100% of it, %d"));
    QCOMPARE(errorOf([] { proxy::raiseError(latin1("a%%b%%%%")); }), latin1("a%b%%"));
}

void tst_STError::conversionsWithoutArgumentStayAsWritten_data()
{
    QTest::addColumn<QString>("format");
    const char* const formats[] = {"%s", "%d", "%n", "%999999d", "%*d", "%", "a%", "%%%s", "%hhn", "%1$s"};
    for (const char* format : formats)
        QTest::newRow(format) << latin1(format);
}

void tst_STError::conversionsWithoutArgumentStayAsWritten()
{
    QFETCH(QString, format);
    QString expected = format;
    QCOMPARE(errorOf([&] { proxy::raiseError(format); }), expected.replace(latin1("%%"), latin1("%")));
}

void tst_STError::longMessagesAreCut()
{
    const QString longText(3000, QLatin1Char('x'));
    QCOMPARE(errorOf([&] { proxy::raiseError(longText); }), longText.left(2047));
    QCOMPARE(errorOf([&] { proxy::raiseError("ab%s", longText); }), latin1("ab") + longText.left(2045));
    const QString exact(2047, QLatin1Char('y'));
    QCOMPARE(errorOf([&] { proxy::raiseError(exact); }), exact);
}

void tst_STError::textsOfArgumentsAreNoFormats()
{
    QCOMPARE(errorOf([] { proxy::raiseError("<%s|%s>", "%s%%", "%d"); }), latin1("<%s%%|%d>"));
}

void tst_STError::textsEndBeforeTheirFirstNull()
{
    const QString parted = latin1("a") + QChar(0) + latin1("b");
    QCOMPARE(errorOf([&] { proxy::raiseError(parted); }), latin1("a"));
    QCOMPARE(errorOf([&] { proxy::raiseError("<%s|%s>", parted, "c"); }), latin1("<a|c>"));
    QString message = latin1("nothing was raised");
    try {
        proxy::raiseError(QString(QChar(0)));
    } catch (const STError& error) {
        message = error.message;
    }
    QCOMPARE(message, QString());
}

void tst_STError::errorsAreCopied()
{
    const STError error(latin1("text"));
    const STError copy(error);
    QCOMPARE(copy.message, error.message);
}

UNIT_TESTS(tst_sterror, unit::withoutApplication<tst_STError>)
#include "tst_sterror.moc"
