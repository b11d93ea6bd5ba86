#pragma once

#include <QWidget>

class Journal;
class QLabel;

/// Everything that is clicked: push, tool, radio and check buttons, a command link, and the tasting pad.
class ButtonsPage : public QWidget
{
    Q_OBJECT
public:
    ButtonsPage(Journal& journal, QWidget* parent);

private Q_SLOTS:
    void brew();
    void serve();

private:
    QWidget* makeCounter();
    QWidget* makeRoasts();
    QWidget* makeExtras();
    QWidget* makeDelivery();
    QWidget* makePad();

    Journal& m_journal;
    int m_cups;
    QLabel* m_clickCount; // our child
};
