// File dialogs of Qt's own, opened as applications do; see tests/protocol/test_file_dialogs.py. The variable
// FOLDER of the environment is the folder that they start in.

#include "deleteonrestore.h"
#include "testhost.h"

#include <QApplication>
#include <QCompleter>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtCore/QFile>

#include <functional>

namespace {

struct Application
{
    TestHost& host;
    QWidget* window;
    QString folder;
};

QLineEdit* fileNameEdit(const QFileDialog* dialog)
{
    return dialog->findChild<QLineEdit*>(QLatin1String("fileNameEdit"));
}

void setUp(const Application& application, QFileDialog* dialog)
{
    dialog->setObjectName(QLatin1String("dialog"));
    dialog->setWindowTitle(QLatin1String("Choose"));
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setDirectory(application.folder);
    application.host.journalValue(dialog, SIGNAL(fileSelected(QString)), QLatin1String("selected"));
    application.host.journalInput(fileNameEdit(dialog));
}

// A button, which asks for a file in a dialog and reports what it got: "file PATH" or "no file".
void addButton(const Application& application, const char* name, QFileDialog::AcceptMode acceptMode,
    QFileDialog::FileMode fileMode, const char* suggestion)
{
    auto* button = new QPushButton(QLatin1String(name), application.window);
    button->setObjectName(QLatin1String(name));
    application.window->layout()->addWidget(button);
    application.host.onSignal(button, SIGNAL(clicked()), [=] {
        QFileDialog dialog(application.window);
        setUp(application, &dialog);
        dialog.setAcceptMode(acceptMode);
        dialog.setFileMode(fileMode);
        dialog.selectFile(QLatin1String(suggestion));
        const bool accepted = dialog.exec() == QDialog::Accepted;
        application.host.journal(
            accepted ? QLatin1String("file ") + dialog.selectedFiles().value(0) : QString::fromLatin1("no file"));
    });
}

// "do NAME" shows a dialog beside the window, changed by `change` before.
void addRequest(const Application& application, const char* name, const std::function<void(QFileDialog*)>& change)
{
    application.host.onRequest(QLatin1String(name), [=] {
        auto* dialog = new QFileDialog(application.window); // the window's, until it is closed
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setFileMode(QFileDialog::AnyFile);
        setUp(application, dialog);
        change(dialog);
        dialog->show();
    });
}

// Deletes the dialog at the press into its file name field.
class DeleteOnPress : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() != QEvent::MouseButtonPress)
            return false;
        delete parent(); // and this object, and the one that gets the event
        return true;
    }
};

// Takes the name of the field away as soon as the field gets the focus.
class RenameOnFocus : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::FocusIn)
            watched->setObjectName(QLatin1String("renamed"));
        return false;
    }
};

void addRequests(const Application& application)
{
    addRequest(application, "show", [](QFileDialog*) {});
    addRequest(
        application, "journalled", [application](QFileDialog* dialog) { application.host.journalInput(dialog); });
    addRequest(application, "showDisabled", [](QFileDialog* dialog) { dialog->setEnabled(false); });
    addRequest(application, "showWithoutField",
        [](QFileDialog* dialog) { fileNameEdit(dialog)->setObjectName(QLatin1String("renamed")); });
    addRequest(application, "showElsewhere", [](QFileDialog* dialog) {
        dialog->setOption(QFileDialog::DontUseNativeDialog, false);
        dialog->setAttribute(Qt::WA_DontShowOnScreen);
    });
    addRequest(application, "showWithTwoFields", [](QFileDialog* dialog) {
        auto* second = new QLineEdit(dialog);
        second->setObjectName(QLatin1String("fileNameEdit"));
        second->setEnabled(false);
    });
    addRequest(application, "showDoomed",
        [](QFileDialog* dialog) { fileNameEdit(dialog)->installEventFilter(new DeleteOnPress(dialog)); });
    addRequest(application, "showRenaming", [](QFileDialog* dialog) {
        auto* other = new QPushButton(dialog);
        dialog->layout()->addWidget(other);
        other->setObjectName(QLatin1String("other"));
        fileNameEdit(dialog)->installEventFilter(new RenameOnFocus(dialog));
    });
    application.host.onRequest(QLatin1String("focusOther"),
        [application] { application.window->findChild<QPushButton*>(QLatin1String("other"))->setFocus(); });
    application.host.onRequest(QLatin1String("complete"), [application] {
        QLineEdit* field = fileNameEdit(application.window->findChild<QFileDialog*>());
        field->setText(QLatin1String("rep"));
        field->completer()->setCompletionPrefix(QLatin1String("rep"));
        field->completer()->complete();
        application.host.journal(QLatin1String(QApplication::activePopupWidget() ? "popup" : "no popup"));
    });
    application.host.onRequest(QLatin1String("minimize"), [application] {
        auto* dialog = application.window->findChild<QFileDialog*>();
        (new DeleteOnRestore(dialog))->setParent(application.window);
        dialog->showMinimized();
    });
}

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(QLatin1String("main"));
    window->setWindowTitle(QLatin1String("Files"));
    new QVBoxLayout(window);
    const Application application = {host, window, QFile::decodeName(qgetenv("FOLDER"))};

    addButton(application, "open", QFileDialog::AcceptOpen, QFileDialog::ExistingFile, "");
    // As where a program asks for a folder of documents that is not there.
    addButton(application, "openSuggested", QFileDialog::AcceptOpen, QFileDialog::ExistingFile, "Documents");
    addButton(application, "openSeveral", QFileDialog::AcceptOpen, QFileDialog::ExistingFiles, "Documents");
    addButton(application, "save", QFileDialog::AcceptSave, QFileDialog::AnyFile, "old.txt");
    addRequests(application);
    auto* notes = new QLineEdit;
    notes->setObjectName(QLatin1String("notes"));
    window->layout()->addWidget(notes);
    window->move(60, 60);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
