// The script-facing interface as the meta-objects have it, and calls through them.

#include "bridge/cinternalsquishproxycleanup.h"
#include "bridge/cpytestproxy.h"
#include "bridge/hierarchicalname.h"
#include "bridge/nameprovider.h"
#include "hierarchicalnames.h"
#include "unittests.h"

#include <QTest>

#include <QApplication>
#include <QMetaMethod>

#include <stdexcept>

using LmSquishProxy::CInternalSquishProxyCleanup;
using LmSquishProxy::CPyTestProxy;
using LmSquishProxy::CSquishProxy;

namespace {

struct Slot
{
    const char* signature;
    const char* result;
    const char* parameters; // names, joined by ","
};

// In the order of their indexes. A default argument makes a slot of its own for each number of arguments.
const Slot squishProxySlots[] = {
    {"findWidgetByHierarchicalName(QStringList,QString,QWidget*,bool,bool)", "QWidget*",
        "hierarchicalName,windowTitle,pWindow,bOnlyVisible,bWildCardWindowTitle"},
    {"findWidgetByHierarchicalName(QStringList,QString,QWidget*,bool)", "QWidget*",
        "hierarchicalName,windowTitle,pWindow,bOnlyVisible"},
    {"findWidgetByHierarchicalName(QStringList,QString,QWidget*)", "QWidget*", "hierarchicalName,windowTitle,pWindow"},
    {"findWidgetByHierarchicalName(QStringList,QString)", "QWidget*", "hierarchicalName,windowTitle"},
    {"findWidgetByHierarchicalName(QStringList)", "QWidget*", "hierarchicalName"},
    {"getLastError()", "QString", ""},
    {"getQWidgetNullPtr()", "QWidget*", ""},
    {"getCheckBoxCheckClickPos(QWidget*)", "QPoint", "pCheckBox"},
    {"getGroupBoxCheckClickPos(QWidget*)", "QPoint", "pGroupBox"},
    {"getRadioButtonClickPos(QWidget*)", "QPoint", "pRadioButton"},
    {"getActivatedSiblingDockWidget(QWidget*)", "QWidget*", "pDockWidget"},
    {"isDockWidgetActive(QWidget*)", "bool", "pDockWidget"},
    {"findTrayIcon(QString)", "QObject*", "strObjectName"},
};

const Slot pyTestProxySlots[] = {
    {"getWidget(QString,QString,bool)", "QWidget*", "p_cap,p_path,checkModality"},
    {"getWidget(QString,QString)", "QWidget*", "p_cap,p_path"},
    {"getLastPyTestError()", "QString", ""},
};

const Slot cleanupSlots[] = {{"doCleanup()", nullptr, ""}};

// Has the ancestor test fail inside a slot, which no name from outside can.
class FaultyProvider final : public LmSquishProxy::NameProvider
{
public:
    QString name(const QObject*) override
    {
        ++calls;
        LmSquishProxy::ancestorsFit(nullptr, QStringList(), 0);
        return QString();
    }

    int calls = 0;
};

} // namespace

class tst_BridgeSlots : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void slotsOfSquishProxy() { compareSlots(CSquishProxy::staticMetaObject, squishProxySlots); }
    void slotsOfPyTestProxy() { compareSlots(CPyTestProxy::staticMetaObject, pyTestProxySlots); }
    void slotsOfCleanup() { compareSlots(CInternalSquishProxyCleanup::staticMetaObject, cleanupSlots); }
    void classNamesAndBases();
    void newObjectHasNameAndNoErrors();
    void nullNameStaysNull();
    void callsWithFewerArgumentsUseTheDefaults();
    void nullAndEmptyElementsSurviveACall();
    void nullWidgetIsNull();
    void faultReachesACallerThatCanCatchIt();
    void faultOfAQueuedCallStaysOutOfTheEventLoop();

private:
    template <int count>
    void compareSlots(const QMetaObject& metaObject, const Slot (&expected)[count]);
};

template <int count>
void tst_BridgeSlots::compareSlots(const QMetaObject& metaObject, const Slot (&expected)[count])
{
    QCOMPARE(metaObject.methodCount() - metaObject.methodOffset(), count);
    for (int index = 0; index < count; ++index) {
        const Slot& slot = expected[index];
        QCOMPARE(metaObject.indexOfSlot(slot.signature), metaObject.methodOffset() + index);
        const QMetaMethod method = metaObject.method(metaObject.methodOffset() + index);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        QCOMPARE(method.access(), QMetaMethod::Public);
        if (slot.result)
            QCOMPARE(QByteArray(method.typeName()), QByteArray(slot.result));
        QStringList names;
        const QList<QByteArray> parameterNames = method.parameterNames();
        for (const QByteArray& name : parameterNames)
            names << QString::fromLatin1(name.constData());
        QCOMPARE(names.join(QLatin1String(",")), QString::fromLatin1(slot.parameters));
    }
}

void tst_BridgeSlots::classNamesAndBases()
{
    const QMetaObject& pyTest = CPyTestProxy::staticMetaObject;
    QCOMPARE(pyTest.className(), "LmSquishProxy::CPyTestProxy");
    QCOMPARE(pyTest.superClass()->className(), "LmSquishProxy::CSquishProxy");
    QCOMPARE(pyTest.superClass()->superClass()->className(), "QWidget");
    const QMetaObject& cleanup = CInternalSquishProxyCleanup::staticMetaObject;
    QCOMPARE(cleanup.className(), "LmSquishProxy::CInternalSquishProxyCleanup");
    QCOMPARE(cleanup.superClass()->className(), "QObject");
}

void tst_BridgeSlots::newObjectHasNameAndNoErrors()
{
    CPyTestProxy proxy("LmSquishProxy");
    QCOMPARE(proxy.objectName(), QString::fromLatin1("LmSquishProxy"));
    QVERIFY(!proxy.parent());
    QVERIFY(!proxy.isVisible());
    QVERIFY(QApplication::topLevelWidgets().contains(&proxy));
    QCOMPARE(proxy.getLastPyTestError(), QString::fromLatin1("NoError"));
}

void tst_BridgeSlots::nullNameStaysNull()
{
    CSquishProxy proxy(nullptr);
    QVERIFY(proxy.objectName().isNull());
}

void tst_BridgeSlots::callsWithFewerArgumentsUseTheDefaults()
{
    CPyTestProxy proxy("proxy");
    QWidget window;
    window.setObjectName(QLatin1String("window"));
    window.setWindowTitle(QLatin1String("Title"));
    const auto find = [&proxy](const QString& title, bool withTitle) {
        QWidget* found = nullptr;
        const QStringList name = hierarchicalName("window");
        const bool called = withTitle ? QMetaObject::invokeMethod(&proxy, "findWidgetByHierarchicalName",
                                Q_RETURN_ARG(QWidget*, found), Q_ARG(QStringList, name), Q_ARG(QString, title))
                                      : QMetaObject::invokeMethod(&proxy, "findWidgetByHierarchicalName",
                                          Q_RETURN_ARG(QWidget*, found), Q_ARG(QStringList, name));
        return called ? found : nullptr;
    };
    QVERIFY(!find(QString(), false)); // only visible widgets
    window.show();
    QCOMPARE(find(QString(), false), &window); // of any title
    QCOMPARE(find(QLatin1String("Title"), true), &window);
    QVERIFY(!find(QLatin1String("T*"), true)); // which is no pattern
    QWidget* found = nullptr;
    QVERIFY(QMetaObject::invokeMethod(&proxy, "getWidget", Q_RETURN_ARG(QWidget*, found),
        Q_ARG(QString, QLatin1String("Title")), Q_ARG(QString, QLatin1String("window"))));
    QCOMPARE(found, &window);
}

void tst_BridgeSlots::nullAndEmptyElementsSurviveACall()
{
    CSquishProxy proxy("proxy");
    QWidget window;
    window.setObjectName(QLatin1String("window"));
    window.show();
    const auto find = [&proxy](const char* name) {
        QWidget* found = nullptr;
        QMetaObject::invokeMethod(&proxy, "findWidgetByHierarchicalName", Q_RETURN_ARG(QWidget*, found),
            Q_ARG(QStringList, hierarchicalName(name)));
        return found;
    };
    QCOMPARE(find("*/window"), &window);
    QVERIFY(!find("/window"));
}

void tst_BridgeSlots::nullWidgetIsNull()
{
    CSquishProxy proxy("proxy");
    QWidget* result = &proxy;
    QVERIFY(QMetaObject::invokeMethod(&proxy, "getQWidgetNullPtr", Q_RETURN_ARG(QWidget*, result)));
    QVERIFY(!result);
}

void tst_BridgeSlots::faultReachesACallerThatCanCatchIt()
{
    CSquishProxy proxy(nullptr);
    FaultyProvider provider;
    LmSquishProxy::setNameProvider(&provider);
    QByteArray text;
    QWidget* found = &proxy;
    try {
        QMetaObject::invokeMethod(&proxy, "findWidgetByHierarchicalName", Qt::DirectConnection,
            Q_RETURN_ARG(QWidget*, found), Q_ARG(QStringList, hierarchicalName("any")), Q_ARG(QString, QString()),
            Q_ARG(QWidget*, nullptr), Q_ARG(bool, false));
    } catch (const std::logic_error& error) {
        text = error.what();
    }
    LmSquishProxy::setNameProvider(nullptr);
    QCOMPARE(text, QByteArray("checkPath(): internal error"));
    QCOMPARE(found, static_cast<QWidget*>(&proxy)); // no result
    QCOMPARE(proxy.getLastError(), QString::fromLatin1("NoError"));
}

void tst_BridgeSlots::faultOfAQueuedCallStaysOutOfTheEventLoop()
{
    CSquishProxy proxy(nullptr);
    QWidget window;
    window.show();
    FaultyProvider provider;
    LmSquishProxy::setNameProvider(&provider);
    QMetaObject::invokeMethod(
        &proxy, "findWidgetByHierarchicalName", Qt::QueuedConnection, Q_ARG(QStringList, hierarchicalName("any")));
    QVERIFY(provider.calls == 0);
    bool thrown = false;
    try {
        QCoreApplication::sendPostedEvents(&proxy, QEvent::MetaCall);
    } catch (...) {
        thrown = true;
    }
    LmSquishProxy::setNameProvider(nullptr);
    QVERIFY(provider.calls > 0);
    QVERIFY(!thrown);
}

UNIT_TESTS(tst_bridgeslots, unit::withApplication<tst_BridgeSlots>)
#include "tst_bridgeslots.moc"
