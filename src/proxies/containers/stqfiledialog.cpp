#include "proxies/containers/stqfiledialog.h"

#include "compat/children.h"
#include "compat/variant.h"

#include <QFileDialog>
#include <QLineEdit>

namespace {

const char notFoundMessage[] = "activate, fileNameEdit not found";

} // namespace

void STQFileDialog::activate(const QVariant& value, const QVariant&)
{
    if (compat::typeOf(value) != QMetaType::QString)
        typeError("string");
    // The field is looked up anew each time: a click changes the focus, to which the application may react.
    for (int click = 0; click < 2; ++click) {
        const QLineEdit* field = fileNameEdit();
        clickCenter(field, field->rect());
    }
    if (!fileNameEdit()->text().isEmpty())
        clearField();
    typeText(value.toString());
    confirm();
}

QLineEdit* STQFileDialog::fileNameEdit()
{
    const QWidget* dialog = checkedWidget("QFileDialog");
    const QList<QLineEdit*> fields = compat::findChildren<QLineEdit>(dialog, QLatin1String("fileNameEdit"));
    // A dialog that the operating system shows instead of Qt can have a field, but nowhere on the screen.
    if (fields.isEmpty() || dialog->testAttribute(Qt::WA_DontShowOnScreen))
        proxy::raiseError(notFoundMessage);
    return fields.first();
}
