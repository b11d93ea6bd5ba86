#include "trayicon.h"

#include "journal.h"
#include "look.h"
#include "named.h"

#include <QAction>

TrayIcon::TrayIcon(Journal& journal, QWidget& window, QObject* parent)
    : QSystemTrayIcon(Look::bean(), parent)
{
    named(this, "trayIcon");
    setToolTip(QObject::tr("Roastery"));
    named(&m_menu, "trayMenu");
    QAction* showAction = named(m_menu.addAction(QObject::tr("Show the roastery")), "trayShowAction");
    QAction* quitAction = named(m_menu.addAction(QObject::tr("Quit")), "trayQuitAction");
    setContextMenu(&m_menu);

    journal.watch(this);
    journal.watch(&m_menu);
    QObject::connect(showAction, SIGNAL(triggered()), &window, SLOT(showNormal()));
    QObject::connect(quitAction, SIGNAL(triggered()), &window, SLOT(close()));
}
