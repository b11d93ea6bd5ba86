#pragma once

#include <QWidget>

class Journal;
class QLabel;
class QListWidget;

/// A second window: the orders, and hidden twins of what it shows.
class OrdersWindow : public QWidget
{
    Q_OBJECT
public:
    explicit OrdersWindow(Journal& journal);

protected:
    void closeEvent(QCloseEvent* event) override;

private Q_SLOTS:
    void confirm();
    void openOrder();

private:
    QWidget* makeButtons();

    Journal& m_journal;
    QListWidget* m_orders; // our children, as the following
    QLabel* m_status;
};
