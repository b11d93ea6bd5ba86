#include "orderdialog.h"

#include "addressdialog.h"
#include "journal.h"
#include "named.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

OrderDialog::OrderDialog(Journal& journal, QWidget* parent)
    : QDialog(parent)
    , m_journal(journal)
    , m_customer(named(new QLineEdit(this), "dialogCustomerEdit"))
    , m_cups(named(new QSpinBox(this), "dialogCupSpin"))
    , m_street(named(new QLineEdit(this), "dialogStreetEdit"))
{
    setWindowTitle(tr("New order"));
    m_cups->setRange(1, 40);
    m_street->setReadOnly(true);
    auto* addressButton = named(new QPushButton(tr("Address..."), this), "addressButton");
    addressButton->setAutoDefault(false); // the return key orders
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, this);
    named(buttons->button(QDialogButtonBox::Ok), "acceptOrderButton")->setText(tr("Order"));
    named(buttons->button(QDialogButtonBox::Cancel), "cancelOrderButton")->setText(tr("Cancel"));

    auto* street = new QHBoxLayout;
    street->addWidget(m_street);
    street->addWidget(addressButton);
    auto* form = new QFormLayout(this);
    form->addRow(tr("Customer:"), m_customer);
    form->addRow(tr("Cups:"), m_cups);
    form->addRow(tr("Deliver to:"), street);
    form->addRow(buttons);
    setMinimumWidth(380);

    m_journal.watch(this);
    connect(addressButton, SIGNAL(clicked()), SLOT(askAddress()));
    connect(buttons, SIGNAL(accepted()), SLOT(accept()));
    connect(buttons, SIGNAL(rejected()), SLOT(reject()));
}

QString OrderDialog::order() const
{
    const QString order = tr("%1 for %2").arg(QString::number(m_cups->value()), m_customer->text());
    return m_street->text().isEmpty() ? order : order + QLatin1String(", ") + m_street->text();
}

void OrderDialog::askAddress()
{
    auto* dialog = named(new AddressDialog(m_journal, this), "addressDialog"); // deleted below
    const bool accepted = dialog->exec() == QDialog::Accepted;
    m_journal.record(accepted ? "accepted" : "rejected", dialog->objectName(), accepted ? dialog->street() : QString());
    if (accepted)
        m_street->setText(dialog->street());
    dialog->deleteLater();
}
