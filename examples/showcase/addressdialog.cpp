#include "addressdialog.h"

#include "journal.h"
#include "named.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

AddressDialog::AddressDialog(Journal& journal, QWidget* parent)
    : QDialog(parent)
    , m_street(named(new QLineEdit(this), "streetEdit"))
{
    setWindowTitle(tr("Delivery address"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, this);
    named(buttons->button(QDialogButtonBox::Ok), "acceptAddressButton")->setText(tr("Deliver here"));
    named(buttons->button(QDialogButtonBox::Cancel), "cancelAddressButton")->setText(tr("Cancel"));
    auto* form = new QFormLayout(this);
    form->addRow(tr("Street:"), m_street);
    form->addRow(buttons);
    setMinimumWidth(320);

    journal.watch(this);
    connect(buttons, SIGNAL(accepted()), SLOT(accept()));
    connect(buttons, SIGNAL(rejected()), SLOT(reject()));
}

QString AddressDialog::street() const
{
    return m_street->text();
}
