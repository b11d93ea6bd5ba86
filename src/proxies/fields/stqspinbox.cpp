#include "proxies/fields/stqspinbox.h"

#include "compat/variant.h"
#include "proxies/fields/spinboxeditfield.h"

void STQSpinBox::activate(const QVariant& value, const QVariant&)
{
    enter(value);
    confirm();
}

void STQSpinBox::enter(const QVariant& value)
{
    const int type = compat::typeOf(value);
    if (type != QMetaType::Int && type != QMetaType::QString)
        typeError("string, integer");
    clickInto(fields::spinBoxEditField(checkedWidget("QAbstractSpinBox")));
    clearField();
    typeText(value.toString());
}
