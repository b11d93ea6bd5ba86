// Widgets that an application may delete while they are looked at.

#include "locate/watchedwidgets.h"
#include "unittests.h"

#include <QTest>

#include <memory>

using locate::WatchedWidgets;

class tst_WatchedWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void livingWidgetsStayAndAreNotAskedAbout();
    void aWidgetThatDiesIsGoneAndItsSiblingsStay();
    void theWidgetsOfADeadParentAreGone();
    void aWidgetThatLeavesItsParentIsGone();
    void aWindowWithoutParentIsWatched();
    void whatHasComeToAFamilyIsAskedAbout();
    void eachChangeIsSeen();

private:
    WatchedWidgets watched();

    std::unique_ptr<QWidget> window;
    QWidget* left = nullptr;
    QWidget* right = nullptr;
    QWidget* below = nullptr; // a child of the left one
    int askedCount = 0;
    QWidget* refused = nullptr;
};

void tst_WatchedWidgets::init()
{
    window.reset(new QWidget);
    left = new QWidget(window.get());
    below = new QWidget(left);
    right = new QWidget(window.get());
    askedCount = 0;
    refused = nullptr;
}

// As a walk meets them: the window, the left one, what is below it, the right one.
WatchedWidgets tst_WatchedWidgets::watched()
{
    WatchedWidgets result([this](QWidget* widget) {
        ++askedCount;
        return widget != refused;
    });
    for (QWidget* widget : {window.get(), left, below, right})
        result.add(widget);
    return result;
}

void tst_WatchedWidgets::livingWidgetsStayAndAreNotAskedAbout()
{
    WatchedWidgets widgets = watched();
    QCOMPARE(int(widgets.count()), 4);
    QCOMPARE(widgets.at(0), window.get());
    QCOMPARE(widgets.at(1), left);
    QCOMPARE(widgets.at(2), below);
    QCOMPARE(widgets.at(3), right);
    QCOMPARE(askedCount, 0);
}

void tst_WatchedWidgets::aWidgetThatDiesIsGoneAndItsSiblingsStay()
{
    WatchedWidgets widgets = watched();
    delete right;
    QVERIFY(!widgets.at(3));
    QCOMPARE(widgets.at(1), left);
    QCOMPARE(widgets.at(2), below);
}

void tst_WatchedWidgets::theWidgetsOfADeadParentAreGone()
{
    WatchedWidgets widgets = watched();
    delete left;
    QVERIFY(!widgets.at(2));
    QVERIFY(!widgets.at(1));
    QCOMPARE(widgets.at(3), right);
    window.reset();
    for (std::size_t i = 0; i < widgets.count(); ++i)
        QVERIFY(!widgets.at(i));
}

void tst_WatchedWidgets::aWidgetThatLeavesItsParentIsGone()
{
    WatchedWidgets widgets = watched();
    below->setParent(window.get());
    QVERIFY(!widgets.at(2));
    QCOMPARE(widgets.at(1), left);
}

void tst_WatchedWidgets::aWindowWithoutParentIsWatched()
{
    QPointer<QWidget> other(new QWidget);
    WatchedWidgets widgets = watched();
    widgets.add(other);
    QCOMPARE(widgets.at(4), other.data());
    delete other;
    QVERIFY(!widgets.at(4));
    QCOMPARE(widgets.at(0), window.get());
}

void tst_WatchedWidgets::whatHasComeToAFamilyIsAskedAbout()
{
    WatchedWidgets widgets = watched();
    new QWidget(window.get()); // one could have the address of one that has died
    refused = right;
    QVERIFY(!widgets.at(3));
    QCOMPARE(widgets.at(1), left);
    QVERIFY(askedCount > 0);
}

void tst_WatchedWidgets::eachChangeIsSeen()
{
    WatchedWidgets widgets = watched();
    new QWidget(window.get());
    QCOMPARE(widgets.at(3), right);
    delete right;
    QVERIFY(!widgets.at(3));
    delete left;
    QVERIFY(!widgets.at(1));
}

UNIT_TESTS(tst_watchedwidgets, unit::withApplication<tst_WatchedWidgets>)
#include "tst_watchedwidgets.moc"
