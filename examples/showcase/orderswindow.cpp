#include "orderswindow.h"

#include "journal.h"
#include "named.h"
#include "orderwindow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

OrdersWindow::OrdersWindow(Journal& journal)
    : m_journal(journal)
    , m_orders(named(new QListWidget(this), "ordersList"))
    , m_status(nullptr)
{
    setObjectName(QLatin1String("ordersWindow"));
    setWindowTitle(tr("Roastery - Orders"));
    // The hidden twins come first: a search that does not look at visibility finds them.
    named(new QLabel(tr("Hidden status"), this), "orderStatus")->hide();
    named(new QPushButton(tr("Confirm"), this), "confirmButton")->hide();
    named(new QPushButton(tr("Refund"), this), "refundButton")->hide(); // without a visible twin
    m_status = named(new QLabel(tr("Nothing confirmed"), this), "orderStatus");
    for (int number = 11; number <= 14; ++number)
        m_orders->addItem(tr("Order %1").arg(number));
    m_orders->setCurrentRow(1);

    auto* column = new QVBoxLayout(this);
    column->addWidget(m_orders);
    column->addWidget(m_status);
    column->addWidget(makeButtons());
    resize(360, 280);
}

QWidget* OrdersWindow::makeButtons()
{
    auto* row = new QWidget(this);
    auto* confirmButton = named(new QPushButton(tr("Confirm"), row), "confirmButton");
    auto* openButton = named(new QPushButton(tr("Open"), row), "openOrderButton");
    auto* closeButton = named(new QPushButton(tr("Close"), row), "closeOrdersButton");
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(confirmButton);
    layout->addWidget(openButton);
    layout->addStretch();
    layout->addWidget(closeButton);

    m_journal.watch(this);
    connect(confirmButton, SIGNAL(clicked()), SLOT(confirm()));
    connect(openButton, SIGNAL(clicked()), SLOT(openOrder()));
    connect(closeButton, SIGNAL(clicked()), SLOT(close()));
    return row;
}

void OrdersWindow::confirm()
{
    m_status->setText(tr("Order %1 confirmed").arg(m_orders->currentRow() + 11));
}

void OrdersWindow::openOrder()
{
    auto* window = new OrderWindow(m_journal, m_orders->currentRow() + 11, this);
    m_journal.record("opened", window->objectName());
    window->show();
}

void OrdersWindow::closeEvent(QCloseEvent* event)
{
    m_journal.record("closed", objectName());
    QWidget::closeEvent(event);
}
