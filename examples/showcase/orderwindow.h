#pragma once

#include <QWidget>

class Journal;

/// A window for one order, deleted when it closes.
class OrderWindow : public QWidget
{
    Q_OBJECT
public:
    OrderWindow(Journal& journal, int number, QWidget* parent);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    Journal& m_journal;
};
