// The search for tray icons, and the error that it shares with the search by hierarchical name.

#include "searchwindows.h"

#include <QtTest/QtTest>

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
    void errorIsSharedByAllObjects();
};

void tst_TrayIcon::trayIconsAreFoundByName()
{
    std::unique_ptr<QSystemTrayIcon> ofApplication(new QSystemTrayIcon(qApp));
    ofApplication->setObjectName(text("tray"));
    auto* ofWidget = new QSystemTrayIcon(left);
    ofWidget->setObjectName(text("status"));
    (new QObject(left))->setObjectName(text("object"));

    QCOMPARE(proxy->findTrayIcon(text("tray")), static_cast<QObject*>(ofApplication.get()));
    QCOMPARE(error(), text("NoError"));
    QCOMPARE(proxy->findTrayIcon(text("status")), static_cast<QObject*>(ofWidget));
    QVERIFY(!proxy->findTrayIcon(text("object")));
    QCOMPARE(error(), text("WidgetNotFoundError"));
    QVERIFY(!proxy->findTrayIcon(QString())); // not any, but one without name
    QCOMPARE(error(), text("WidgetNotFoundError"));

    ofWidget->setObjectName(text("tray"));
    QVERIFY(!proxy->findTrayIcon(text("tray")));
    QCOMPARE(error(), text("WidgetAmbiguousError"));
    ofApplication.reset();
    QCOMPARE(proxy->findTrayIcon(text("tray")), static_cast<QObject*>(ofWidget));
}

void tst_TrayIcon::errorIsSharedByAllObjects()
{
    CSquishProxy second("second");
    QVERIFY(!find("nobody"));
    QCOMPARE(second.getLastError(), text("WidgetNotFoundError"));
    second.findTrayIcon(text("nothing"));
    QVERIFY(find("main"));
    QCOMPARE(second.getLastError(), text("NoError"));
    QVERIFY(!second.findWidgetByHierarchicalName(QStringList()));
    QCOMPARE(error(), text("InvalidWidgetPath"));
}

QTEST_MAIN(tst_TrayIcon)
#include "tst_trayicon.moc"
