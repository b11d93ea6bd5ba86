#include "proxies/fields/stqdatetimeedit.h"

#include "compat/variant.h"
#include "proxies/clipboardpaste.h"
#include "proxies/fields/spinboxeditfield.h"

#include <QDateTimeEdit>

namespace {

const char readOnlyMessage[] = "%s, QDateTimeEdit is read only";
const char validateMessage[] = "%s, QDateTimeEdit validate error";

} // namespace

void STQDateTimeEdit::activate(const QVariant& value, const QVariant&)
{
    paste(value, "activate");
    confirm();
}

void STQDateTimeEdit::enter(const QVariant& value)
{
    paste(value, "enter");
}

void STQDateTimeEdit::paste(const QVariant& value, const char* operation)
{
    if (compat::typeOf(value) != QMetaType::QString)
        typeError("string");
    if (dateTimeEdit()->isReadOnly())
        proxy::raiseError(readOnlyMessage, operation);
    clickInto(fields::spinBoxEditField(dateTimeEdit()));
    proxies::pasteText(value.toString(), [this] {
        selectLine();
        keyClick(Qt::Key_V, Qt::ControlModifier);
    });
    if (dateTimeEdit()->text() != value.toString())
        proxy::raiseError(validateMessage, operation);
}

QDateTimeEdit* STQDateTimeEdit::dateTimeEdit()
{
    return static_cast<QDateTimeEdit*>(checkedWidget("QDateTimeEdit"));
}
