#include "proxies/containers/stqfiledialog.h"

#include "compat/children.h"
#include "compat/variant.h"
#include "proxy/postedcall.h"

#include <QAbstractItemView>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>

namespace {

// The list of files, whose selection is also that of the table of details.
const QLatin1String listName("listView");

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
    forgetSelection();
    confirm();
}

// While a name is typed, Qt selects the file that the typed part names: the folder that the dialog shows for the empty
// name, and for "inner/..". The dialog returns the selected file rather than the typed name. Qt corrects the selection
// between a user's keys, but not between keys that are posted together.
void STQFileDialog::forgetSelection()
{
    const QPointer<QAbstractItemView> view(
        compat::findChildren<QAbstractItemView>(checkedWidget("QFileDialog"), listName).value(0));
    proxy::postCall([view] {
        if (view && view->selectionModel())
            view->selectionModel()->clearSelection();
    });
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
