// The life of the script objects: until the application quits, unless they are deleted earlier.

#include "bridge/cinternalsquishproxycleanup.h"
#include "bridge/cpytestproxy.h"
#include "unittests.h"

#include <QTest>

#include <QApplication>
#include <QTimer>

#include <functional>
#include <memory>

using LmSquishProxy::CInternalSquishProxyCleanup;
using LmSquishProxy::CPyTestProxy;
using LmSquishProxy::CSquishProxy;

// Runs a function when an object is destroyed.
class AtDestruction : public QObject
{
    Q_OBJECT

public:
    AtDestruction(QObject* object, const std::function<void()>& action)
        : run(action)
    {
        connect(object, SIGNAL(destroyed()), SLOT(act()));
    }

private Q_SLOTS:
    void act() { run(); }

private:
    std::function<void()> run;
};

class tst_ScriptCleanup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanUpDeletesAllObjects();
    void objectDeletedEarlierIsForgotten();
    void objectDeletedByTheCleanUpOfAnotherIsNotDeletedTwice();
    void objectMadeDuringTheCleanUpSurvivesIt();
    void cleanUpDuringTheCleanUpDoesNothing();
    void objectMadeAfterTheCleanUpIsDeletedByTheNext();
    void emptyCleanUpDoesNothing();
    void quittingTheApplicationCleansUp();

private:
    void cleanUp() { CInternalSquishProxyCleanup::instance().doCleanup(); }
};

void tst_ScriptCleanup::cleanUpDeletesAllObjects()
{
    const QPointer<CSquishProxy> first(new CSquishProxy("LmSquishProxy"));
    const QPointer<CSquishProxy> second(new CSquishProxy("LmSquishProxy"));
    const QPointer<CPyTestProxy> third(new CPyTestProxy("third"));
    cleanUp();
    QVERIFY(!first);
    QVERIFY(!second);
    QVERIFY(!third);
    cleanUp();
}

void tst_ScriptCleanup::objectDeletedEarlierIsForgotten()
{
    auto* early = new CSquishProxy("early");
    const QPointer<CSquishProxy> other(new CSquishProxy("other"));
    delete early;
    QVERIFY(other);
    cleanUp();
    QVERIFY(!other);
}

void tst_ScriptCleanup::objectDeletedByTheCleanUpOfAnotherIsNotDeletedTwice()
{
    auto* first = new CSquishProxy("first");
    QPointer<CSquishProxy> second(new CSquishProxy("second"));
    int deletions = 0;
    const AtDestruction count(second, [&] { ++deletions; });
    const AtDestruction deleteSecond(first, [&] { delete second.data(); });
    cleanUp();
    QVERIFY(!second);
    QCOMPARE(deletions, 1);
}

void tst_ScriptCleanup::objectMadeDuringTheCleanUpSurvivesIt()
{
    auto* first = new CSquishProxy("first");
    QPointer<CSquishProxy> late;
    const AtDestruction makeAnother(first, [&] { late = new CSquishProxy("late"); });
    cleanUp();
    QVERIFY(late);
    cleanUp(); // it never registered
    QVERIFY(late);
    delete late.data();
    cleanUp();
}

void tst_ScriptCleanup::cleanUpDuringTheCleanUpDoesNothing()
{
    auto* first = new CSquishProxy("first");
    const QPointer<CSquishProxy> second(new CSquishProxy("second"));
    bool secondLived = false;
    const AtDestruction again(first, [&] {
        cleanUp();
        secondLived = second;
    });
    cleanUp();
    QVERIFY(secondLived);
    QVERIFY(!second);
}

void tst_ScriptCleanup::objectMadeAfterTheCleanUpIsDeletedByTheNext()
{
    cleanUp();
    const QPointer<CSquishProxy> proxy(new CSquishProxy("next"));
    cleanUp();
    QVERIFY(!proxy);
}

void tst_ScriptCleanup::emptyCleanUpDoesNothing()
{
    QVERIFY(QMetaObject::invokeMethod(&CInternalSquishProxyCleanup::instance(), "doCleanup"));
    QVERIFY(!CInternalSquishProxyCleanup::instance().parent());
}

void tst_ScriptCleanup::quittingTheApplicationCleansUp()
{
    const QPointer<CSquishProxy> proxy(new CSquishProxy("proxy"));
    const QPointer<CSquishProxy> second(new CSquishProxy("proxy"));
    QVERIFY(proxy);
    QTimer::singleShot(0, qApp, SLOT(quit()));
    QApplication::exec();
    QVERIFY(!proxy);
    QVERIFY(!second);
}

UNIT_TESTS(tst_scriptcleanup, unit::withApplication<tst_ScriptCleanup>)
#include "tst_scriptcleanup.moc"
