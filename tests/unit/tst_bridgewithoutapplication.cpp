// The bridge in a process that has no application object, or none with widgets: nothing is found, nothing
// crashes.

#include "agent/testtoolhook.h"
#include "bridge/cinternalsquishproxycleanup.h"
#include "bridge/clickposition.h"
#include "bridge/csquishproxy.h"
#include "bridge/dockwidgets.h"
#include "bridge/hierarchicalsearch.h"
#include "bridge/livewidget.h"
#include "bridge/trayiconsearch.h"
#include "hierarchicalnames.h"
#include "unittests.h"

#include <QTest>

#include <QApplication>
#include <QFileInfo>
#include <QTimer>
#include <QtCore/QLibrary>

using LmSquishProxy::CInternalSquishProxyCleanup;
using LmSquishProxy::CSquishProxy;
using LmSquishProxy::SearchError;

class tst_BridgeWithoutApplication : public QObject
{
    Q_OBJECT

public:
    explicit tst_BridgeWithoutApplication(const QString& toolPrefix)
        : prefix(toolPrefix)
    {
    }

private Q_SLOTS:
    void nothingIsFound();
    void nothingHasAPosition();
    void hookIsLeftOut();
    void applicationWithoutWidgetsHasNoHook();
    void applicationThatComesLaterCleansUp();

private:
    const QString prefix;
};

void tst_BridgeWithoutApplication::nothingIsFound()
{
    QVERIFY(!QCoreApplication::instance());
    LmSquishProxy::HierarchicalQuery query;
    query.name = hierarchicalName("any");
    const LmSquishProxy::HierarchicalMatch match = LmSquishProxy::findHierarchically(query);
    QVERIFY(!match.widget);
    QCOMPARE(int(match.error), int(SearchError::WidgetNotFound));
    const LmSquishProxy::TrayIconMatch tray = LmSquishProxy::findTrayIconByName(QLatin1String("any"));
    QVERIFY(!tray.icon);
    QCOMPARE(int(tray.error), int(SearchError::WidgetNotFound));
}

void tst_BridgeWithoutApplication::nothingHasAPosition()
{
    QVERIFY(!LmSquishProxy::liveWidget(reinterpret_cast<QWidget*>(this)));
    QCOMPARE(LmSquishProxy::checkBoxClickPosition(nullptr), QPoint(-1, -1));
    QVERIFY(!LmSquishProxy::isActiveDockWidget(nullptr));
    QVERIFY(!LmSquishProxy::activeSiblingDockWidget(nullptr));
}

void tst_BridgeWithoutApplication::hookIsLeftOut()
{
    QVERIFY(QLibrary(prefix + QLatin1String("/bin/squishhook")).load());
    qputenv("SQUISH_PREFIX", prefix.toLocal8Bit());
    const agent::TestToolHook hook = agent::prepareTestToolHook(QLatin1String("tag"));
    QCOMPARE(hook.port, -1);
    QVERIFY(!hook.scriptProxy);
}

void tst_BridgeWithoutApplication::applicationWithoutWidgetsHasNoHook()
{
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    const agent::TestToolHook hook = agent::prepareTestToolHook(QLatin1String("tag"));
    QCOMPARE(hook.port, -1);
    QVERIFY(!hook.scriptProxy);
}

void tst_BridgeWithoutApplication::applicationThatComesLaterCleansUp()
{
    CInternalSquishProxyCleanup::instance().doCleanup();
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    for (int run = 0; run < 2; ++run) {
        int argc = 1;
        const QApplication application(argc, arguments);
        const QPointer<CSquishProxy> proxy(new CSquishProxy("proxy"));
        QTimer::singleShot(0, qApp, SLOT(quit()));
        QApplication::exec();
        QVERIFY(!proxy);
    }
}

namespace {

int runBesideTool(int argc, char** argv)
{
    // The programs are in bin, next to the folder with the stand-in tool.
    const QString folder = QFileInfo(QFile::decodeName(argv[0])).absolutePath();
    tst_BridgeWithoutApplication test(folder + QLatin1String("/../testtool"));
    return QTest::qExec(&test, argc, argv);
}

} // namespace

UNIT_TESTS(tst_bridgewithoutapplication, runBesideTool)
#include "tst_bridgewithoutapplication.moc"
