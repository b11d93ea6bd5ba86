#include "orderwindow.h"

#include "journal.h"
#include "named.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QStringList>

OrderWindow::OrderWindow(Journal& journal, int number, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , m_journal(journal)
{
    setObjectName(QString::fromLatin1("order%1Window").arg(number));
    setWindowTitle(tr("Roastery - Order %1").arg(number));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* status = named(new QComboBox(this), "statusCombo");
    status->addItems(tr("Received,Roasting,Packed,Sent").split(QLatin1Char(',')));
    auto* closeButton = named(new QPushButton(tr("Close"), this), "closeOrderButton");

    auto* form = new QFormLayout(this);
    form->addRow(tr("Order:"), named(new QLabel(QString::number(number), this), "numberLabel"));
    form->addRow(tr("Beans:"), new QLabel(tr("Sidamo, medium roast"), this));
    form->addRow(tr("Status:"), status);
    form->addRow(closeButton);
    resize(320, sizeHint().height());

    m_journal.watch(this);
    connect(closeButton, SIGNAL(clicked()), SLOT(close()));
}

void OrderWindow::closeEvent(QCloseEvent* event)
{
    m_journal.record("closed", objectName());
    QWidget::closeEvent(event);
}
