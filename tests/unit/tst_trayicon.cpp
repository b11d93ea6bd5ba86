// The search for tray icons, and the error that it shares with the search by hierarchical name.

#include "searchwindows.h"
#include "unittests.h"

#include <QTest>

#include <QApplication>
#include <QSystemTrayIcon>

using LmSquishProxy::CSquishProxy;

class tst_TrayIcon : public QObject, private SearchWindows
{
    Q_OBJECT

private Q_SLOTS:
    void init() { showWindows(); }
    void cleanup() { deleteWindows(); }
    void trayIconsAreFoundByName();
    void trayIconsBesideAWidgetThatIsBeingDeletedAreFound();
    void errorIsSharedByAllObjects();
};

void tst_TrayIcon::trayIconsAreFoundByName()
{
    std::unique_ptr<QSystemTrayIcon> ofApplication(new QSystemTrayIcon(qApp));
    ofApplication->setObjectName(latin1("tray"));
    auto* ofWidget = new QSystemTrayIcon(left);
    ofWidget->setObjectName(latin1("status"));
    (new QObject(left))->setObjectName(latin1("object"));

    QCOMPARE(proxy->findTrayIcon(latin1("tray")), static_cast<QObject*>(ofApplication.get()));
    QCOMPARE(error(), latin1("NoError"));
    QCOMPARE(proxy->findTrayIcon(latin1("status")), static_cast<QObject*>(ofWidget));
    QVERIFY(!proxy->findTrayIcon(latin1("object")));
    QCOMPARE(error(), latin1("WidgetNotFoundError"));
    QVERIFY(!proxy->findTrayIcon(QString())); // not any, but one without name
    QCOMPARE(error(), latin1("WidgetNotFoundError"));

    ofWidget->setObjectName(latin1("tray"));
    QVERIFY(!proxy->findTrayIcon(latin1("tray")));
    QCOMPARE(error(), latin1("WidgetAmbiguousError"));
    ofApplication.reset();
    QCOMPARE(proxy->findTrayIcon(latin1("tray")), static_cast<QObject*>(ofWidget));
}

void tst_TrayIcon::trayIconsBesideAWidgetThatIsBeingDeletedAreFound()
{
    bool isChildGone = false;
    QObject* found = nullptr;
    new DestructorCall(left, [&] {
        isChildGone = left->children().contains(nullptr);
        found = proxy->findTrayIcon(latin1("tray"));
    });
    auto* icon = new QSystemTrayIcon(left);
    icon->setObjectName(latin1("tray"));
    delete left;
    QVERIFY(isChildGone);
    QVERIFY(found == icon);
}

void tst_TrayIcon::errorIsSharedByAllObjects()
{
    CSquishProxy second("second");
    QVERIFY(!find("nobody"));
    QCOMPARE(second.getLastError(), latin1("WidgetNotFoundError"));
    second.findTrayIcon(latin1("nothing"));
    QVERIFY(find("main"));
    QCOMPARE(second.getLastError(), latin1("NoError"));
    QVERIFY(!second.findWidgetByHierarchicalName(QStringList()));
    QCOMPARE(error(), latin1("InvalidWidgetPath"));
}

UNIT_TESTS(tst_trayicon, unit::withApplication<tst_TrayIcon>)
#include "tst_trayicon.moc"
