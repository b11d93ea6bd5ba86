#include "proxies/fields/stqlineedit.h"

#include "compat/variant.h"

#include <QLineEdit>

namespace {

const char readOnlyMessage[] = "enter, QLineEdit is read only";
const char validateMessage[] = "enter, QLineEdit validate error";

bool isConstrained(const QLineEdit* edit)
{
    return !edit->inputMask().isEmpty() || edit->validator();
}

} // namespace

void STQLineEdit::enter(const QVariant& value)
{
    if (compat::typeOf(value) != QMetaType::QString)
        typeError("string");
    if (lineEdit()->isReadOnly())
        proxy::raiseError(readOnlyMessage);
    clickInto(lineEdit()->rect());
    QString text = value.toString();
    const bool terminated = text.endsWith(QLatin1Char('\n'));
    if (terminated)
        text.chop(1);
    if (isConstrained(lineEdit())) {
        insertWhole(text);
    } else {
        if (!lineEdit()->text().isEmpty())
            clearField();
        typeText(text);
    }
    if (terminated)
        confirm();
}

void STQLineEdit::insertWhole(const QString& text)
{
    selectLine();
    lineEdit()->insert(text);
    if (lineEdit()->text() != text)
        proxy::raiseError(validateMessage);
}

QLineEdit* STQLineEdit::lineEdit()
{
    return static_cast<QLineEdit*>(checkedWidget("QLineEdit"));
}
