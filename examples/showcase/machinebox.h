#pragma once

#include <QGroupBox>

class Journal;
class QAction;
class QProgressBar;
class QTimer;
class QToolButton;

/// The tool buttons, and a command that takes its time.
class MachineBox : public QGroupBox
{
    Q_OBJECT
public:
    MachineBox(Journal& journal, QWidget* parent);

private Q_SLOTS:
    void chooseSize(QAction* size);
    void startRoast();
    void continueRoast();

private:
    void addSizes();

    Journal& m_journal;
    QToolButton* m_sizeButton; // our children, as the following
    QProgressBar* m_roastProgress;
    QTimer* m_roastTimer;
};
