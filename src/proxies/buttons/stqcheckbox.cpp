#include "proxies/buttons/stqcheckbox.h"

#include "compat/variant.h"

#include <QAbstractButton>

void STQCheckBox::activate(const QVariant& value, const QVariant&)
{
    if (compat::typeOf(value) != QMetaType::Bool)
        typeError("bool");
    if (static_cast<QAbstractButton*>(checkedWidget("QAbstractButton"))->isChecked() != value.toBool())
        STQButton::activate(QVariant(), QVariant());
}
