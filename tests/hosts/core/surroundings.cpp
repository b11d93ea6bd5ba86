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

namespace {

void addTrayIcons()
{
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
}

// A program that lives as long as its input is open.
void startChild(TestHost& host)
{
    auto* child = new QProcess(&host);
    child->start(QCoreApplication::applicationDirPath() + latin1("/emptyhost"), QStringList(latin1("--late")));
    child->waitForStarted();
    host.onRequest(latin1("endChild"), [child] {
        child->kill();
        child->waitForFinished();
    });
}

} // namespace

// Surroundings of the windows: tray icons, the cursor, the focus, a timer, a child process.
void buildSurroundings(TestHost& host)
{
    host.onRequest(latin1("addTrayIcons"), [] { addTrayIcons(); });
    host.onRequest(latin1("reportTrayIcon"), [&host] {
        const QRect rect = qApp->findChild<QSystemTrayIcon*>(latin1("shown"))->geometry();
        host.journal(latin1("tray %1,%2,%3,%4").arg(rect.left()).arg(rect.top()).arg(rect.right()).arg(rect.bottom()));
    });
    host.onRequest(latin1("cursorToEmptyDesktop"), [] { QCursor::setPos(QPoint(1270, 1010)); });
    host.onRequest(latin1("cursorToUnnamed"), [&host] {
        QCursor::setPos(host.findWidget(latin1("several"))->findChild<QLabel*>()->mapToGlobal(QPoint(2, 2)));
    });
    host.onRequest(latin1("reportCursor"),
        [&host] { host.journal(latin1("cursor %1,%2").arg(QCursor::pos().x()).arg(QCursor::pos().y())); });
    host.onRequest(latin1("clearFocus"), [] {
        if (QApplication::focusWidget())
            QApplication::focusWidget()->clearFocus();
    });
    host.onRequest(latin1("startTicking"), [&host] {
        auto* timer = new QTimer(&host);
        host.onSignal(timer, SIGNAL(timeout()), [&host] { host.journal(latin1("tick")); });
        timer->start(10);
    });
    host.onRequest(latin1("startChild"), [&host] { startChild(host); });
}
