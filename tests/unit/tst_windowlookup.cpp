#include "identify/windowlookup.h"

#include <QWidget>
#include <QtTest>

class tst_WindowLookup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutWindowsNothingIsFoundAndNothingTouched();
    void aWindowWithoutTitleFitsTheEmptyName();
    void theErrorsHaveFixedNumbersAndNames();
    void withoutPopupAndModalEveryWindowIsReachable();
};

void tst_WindowLookup::withoutWindowsNothingIsFoundAndNothingTouched()
{
    QWidget* const untouched = reinterpret_cast<QWidget*>(this);
    QWidget* window = untouched;
    QCOMPARE(findWindow(window, QLatin1String("Any")), 0);
    QCOMPARE(findWindow(window, QString()), 0);
    QCOMPARE(findWindow(window, QLatin1String("Widget:any")), 0);
    QVERIFY(window == untouched);
}

void tst_WindowLookup::aWindowWithoutTitleFitsTheEmptyName()
{
    QWidget shown;
    shown.show();
    QWidget* window = nullptr;
    QCOMPARE(findWindow(window, QString()), 1);
    QVERIFY(window == &shown);
    QCOMPARE(findWindow(window, QLatin1String("")), 1);
    QCOMPARE(findWindow(window, QLatin1String("Widget:")), 1);
}

void tst_WindowLookup::theErrorsHaveFixedNumbersAndNames()
{
    const char* const names[] = {"NoError", "WindowNotFoundError", "WindowAmbiguousError", "WindowNotActivePopupError",
        "WindowNotActiveModalError", "WidgetNotFoundError", "WidgetNotVisibleError", "WidgetAmbiguousError"};
    for (int error = 0; error < 8; ++error)
        QCOMPARE(lookupErrorName(error), QString::fromLatin1(names[error]));
    QVERIFY(lookupErrorName(-1).isEmpty());
    QVERIFY(lookupErrorName(8).isEmpty());
}

void tst_WindowLookup::withoutPopupAndModalEveryWindowIsReachable()
{
    QWidget window;
    QCOMPARE(activityError(&window, nullptr), NoError);
}

QTEST_MAIN(tst_WindowLookup)
#include "tst_windowlookup.moc"
