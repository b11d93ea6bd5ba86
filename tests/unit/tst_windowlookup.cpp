#include "identify/windowlookup.h"
#include "unittests.h"

#include <QApplication>
#include <QDialog>
#include <QTest>

namespace {

// Has a widget say that it is not visible while Qt still knows it as the active popup or modal widget.
class Invisible
{
public:
    explicit Invisible(QWidget& shownWidget)
        : widget(shownWidget)
    {
        widget.setAttribute(Qt::WA_WState_Visible, false);
    }
    ~Invisible() { widget.setAttribute(Qt::WA_WState_Visible); }
    Q_DISABLE_COPY(Invisible)

private:
    QWidget& widget;
};

} // namespace

class tst_WindowLookup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutWindowsNothingIsFoundAndNothingTouched();
    void aWindowWithoutTitleFitsTheEmptyName();
    void anInvisiblePopupIsNotFoundAndToldAllTheSame();
    void anInvisibleModalWidgetIsNotFound();
    void theErrorsHaveFixedNumbersAndNames();
    void withoutPopupAndModalEveryWindowIsReachable();
};

void tst_WindowLookup::withoutWindowsNothingIsFoundAndNothingTouched()
{
    QWidget* const untouched = reinterpret_cast<QWidget*>(this);
    QWidget* window = untouched;
    QCOMPARE(identify::findWindow(window, QLatin1String("Any")), 0);
    QCOMPARE(identify::findWindow(window, QString()), 0);
    QCOMPARE(identify::findWindow(window, QLatin1String("Widget:any")), 0);
    QVERIFY(window == untouched);
}

void tst_WindowLookup::aWindowWithoutTitleFitsTheEmptyName()
{
    QWidget shown;
    shown.show();
    QWidget* window = nullptr;
    QCOMPARE(identify::findWindow(window, QString()), 1);
    QVERIFY(window == &shown);
    QCOMPARE(identify::findWindow(window, QLatin1String("")), 1);
    QCOMPARE(identify::findWindow(window, QLatin1String("Widget:")), 1);
}

void tst_WindowLookup::anInvisiblePopupIsNotFoundAndToldAllTheSame()
{
    QWidget popup(nullptr, Qt::Popup);
    const QLatin1String name("Widget:ActivePopupWidget");
    popup.show();
    QWidget* window = nullptr;
    QCOMPARE(identify::findWindow(window, name), 1);
    const Invisible invisible(popup);
    QVERIFY(QApplication::activePopupWidget() == &popup);
    window = nullptr;
    QCOMPARE(identify::findWindow(window, name), 0);
    QVERIFY(window == &popup);
}

void tst_WindowLookup::anInvisibleModalWidgetIsNotFound()
{
    QDialog dialog;
    dialog.setWindowTitle(QLatin1String("Save"));
    dialog.setModal(true);
    dialog.show();
    const char* const names[] = {"Widget:ActiveModalWidget", "Widget:ActiveModalWidget:Save"};
    QWidget* window = nullptr;
    for (const char* name : names)
        QCOMPARE(identify::findWindow(window, QLatin1String(name)), 1);
    const Invisible invisible(dialog);
    QVERIFY(QApplication::activeModalWidget() == &dialog);
    for (const char* name : names)
        QCOMPARE(identify::findWindow(window, QLatin1String(name)), 0);
}

void tst_WindowLookup::theErrorsHaveFixedNumbersAndNames()
{
    const char* const names[] = {"NoError", "WindowNotFoundError", "WindowAmbiguousError", "WindowNotActivePopupError",
        "WindowNotActiveModalError", "WidgetNotFoundError", "WidgetNotVisibleError", "WidgetAmbiguousError"};
    for (int error = 0; error < 8; ++error)
        QCOMPARE(identify::lookupErrorName(error), QString::fromLatin1(names[error]));
    QVERIFY(identify::lookupErrorName(-1).isEmpty());
    QVERIFY(identify::lookupErrorName(8).isEmpty());
}

void tst_WindowLookup::withoutPopupAndModalEveryWindowIsReachable()
{
    QWidget window;
    QCOMPARE(identify::activityError(&window, nullptr), identify::NoError);
}

UNIT_TESTS(tst_windowlookup, unit::withApplication<tst_WindowLookup>)
#include "tst_windowlookup.moc"
