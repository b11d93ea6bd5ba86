#include "proxies/fields/stqtextedit.h"

#include "compat/variant.h"

#include <QTextEdit>

namespace {

const char readOnlyMessage[] = "enter, QTextEdit is read only";

} // namespace

void STQTextEdit::enter(const QVariant& value)
{
    if (compat::typeOf(value) != QMetaType::QString)
        typeError("string");
    if (textEdit()->isReadOnly())
        proxy::raiseError(readOnlyMessage);
    clickInto(textEdit()->rect());
    if (!textEdit()->toPlainText().isEmpty()) {
        keyClick(Qt::Key_Home, Qt::ControlModifier);
        keyClick(Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
        keyClick(Qt::Key_Backspace, Qt::NoModifier);
    }
    typeText(value.toString());
}

QTextEdit* STQTextEdit::textEdit()
{
    return static_cast<QTextEdit*>(checkedWidget("QTextEdit"));
}
