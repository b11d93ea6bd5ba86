#pragma once

#include <QMenu>
#include <QSystemTrayIcon>

class Journal;
class QWidget;

/// The roastery in the system tray.
class TrayIcon : public QSystemTrayIcon
{
public:
    /// \a window is what the icon's menu shows and closes.
    TrayIcon(Journal& journal, QWidget& window, QObject* parent);

private:
    QMenu m_menu;
};
