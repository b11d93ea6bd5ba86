#include "corewindows.h"
#include "testhost.h"

#include <QApplication>
#include <QCursor>
#include <QIcon>
#include <QLabel>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QtCore/QProcess>
#include <QtCore/QStringList>

// What is around the windows: tray icons, the cursor, the focus, a timer, a child process.
void buildSurroundings(TestHost& host)
{
    host.onRequest(text("addTrayIcons"), [] {
        QPixmap pixmap(16, 16);
        pixmap.fill(Qt::red);
        const struct
        {
            const char* name;
            bool visible;
        } icons[] = {{"tray", false}, {"double", true}, {"double", true}, {"shown", true}, {"among", false},
            {"among", true}, {"among", false}};
        for (const auto& icon : icons)
            named(new QSystemTrayIcon(QIcon(pixmap), qApp), icon.name)->setVisible(icon.visible);
    });
    host.onRequest(text("reportTrayIcon"), [&host] {
        const QRect rect = qApp->findChild<QSystemTrayIcon*>(text("shown"))->geometry();
        host.journal(text("tray %1,%2,%3,%4").arg(rect.left()).arg(rect.top()).arg(rect.right()).arg(rect.bottom()));
    });
    host.onRequest(text("cursorToEmptyDesktop"), [] { QCursor::setPos(QPoint(1270, 1010)); });
    host.onRequest(text("cursorToUnnamed"), [&host] {
        QCursor::setPos(host.findWidget(text("several"))->findChild<QLabel*>()->mapToGlobal(QPoint(2, 2)));
    });
    host.onRequest(text("reportCursor"),
        [&host] { host.journal(text("cursor %1,%2").arg(QCursor::pos().x()).arg(QCursor::pos().y())); });
    host.onRequest(text("clearFocus"), [] {
        if (QApplication::focusWidget())
            QApplication::focusWidget()->clearFocus();
    });
    host.onRequest(text("startTicking"), [&host] {
        auto* timer = new QTimer(&host);
        host.onSignal(timer, SIGNAL(timeout()), [&host] { host.journal(text("tick")); });
        timer->start(10);
    });
    host.onRequest(text("startChild"), [&host] {
        auto* child = new QProcess(&host);
        child->start(text("sleep"), QStringList(text("60")));
        child->waitForStarted();
        host.onRequest(text("endChild"), [child] {
            child->kill();
            child->waitForFinished();
        });
    });
}
