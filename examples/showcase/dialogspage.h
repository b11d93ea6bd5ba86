#pragma once

#include <QWidget>

#include <memory>

class Journal;
class OrdersWindow;
class QDialog;
class QGridLayout;
class QLabel;

/// Opens every kind of dialog and the further windows, and shows what came of it.
class DialogsPage : public QWidget
{
    Q_OBJECT
public:
    DialogsPage(Journal& journal, QWidget* parent);
    ~DialogsPage() override;

public Q_SLOTS:
    void newOrder();
    void nameBlend();
    void emptyRoaster();
    void choosePriceList();
    void showOrders();
    void showOrder12();
    void showAbout();

private:
    void addRow(QGridLayout* grid, const char* buttonName, const QString& text, const QString& advice, QLabel* result);
    bool run(QDialog& dialog);

    Journal& m_journal;
    QLabel* m_order; // our children, as the following
    QLabel* m_blend;
    QLabel* m_answer;
    QLabel* m_file;
    std::unique_ptr<OrdersWindow> m_ordersWindow; // of no parent: a window beside the main window
};
