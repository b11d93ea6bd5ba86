#include "scenes.h"

#include "faultinjector.h"
#include "testhost.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSystemTrayIcon>

namespace {

QDialog* fileDialog(QWidget* parent)
{
    auto* dialog = new QFileDialog(parent, words("Open a file"));
    dialog->setOption(QFileDialog::DontUseNativeDialog, true);
    dialog->setOption(QFileDialog::ReadOnly, true); // random clicks create and delete nothing
    for (QAbstractItemView* view : dialog->findChildren<QAbstractItemView*>())
        view->setDragEnabled(false); // Qt goes on with the view when the drag is over, and the dialog may be gone
    return dialog;
}

QDialog* inputDialog(QWidget* parent)
{
    auto* dialog = new QInputDialog(parent);
    dialog->setLabelText(words("Name"));
    return dialog;
}

QDialog* messageBox(QWidget* parent)
{
    return new QMessageBox(
        QMessageBox::Question, words("Question"), words("Really?"), QMessageBox::Yes | QMessageBox::No, parent);
}

QDialog* (*const makers[])(QWidget* parent) = {fileDialog, fileDialog, inputDialog, messageBox};
const int makerCount = sizeof(makers) / sizeof(makers[0]);

void openDialog(Stage& stage, QWidget* parent)
{
    QDialog* dialog = makers[stage.chance.below(makerCount)](parent);
    if (dialog->windowTitle().isEmpty())
        dialog->setWindowTitle(words("Dialog"));
    own(dialog)->setObjectName(words("dialog"));
    dialog->setProperty("nestedByTheApplication", true);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setModal(stage.chance.oneIn(3));
    stage.addStray(dialog);
    FaultInjector::connectSignals(stage, dialog);
    dialog->show();
}

} // namespace

void buildDialogs(Stage& stage, QWidget* centre)
{
    const QPointer<QMainWindow> window(stage.window());
    put(centre, new QLineEdit, "line");
    auto* embedded = put(centre, static_cast<QFileDialog*>(fileDialog(nullptr)), "embedded");
    embedded->setWindowFlags(Qt::Widget);
    auto* button = put(centre, new QPushButton(words("Open")), "open");
    stage.host.onSignal(button, SIGNAL(clicked()), [=, &stage] {
        if (window && !stage.isQuiet())
            openDialog(stage, stage.chance.oneIn(2) ? window.data() : nullptr);
    });
    if (!qApp->findChild<QSystemTrayIcon*>()) {
        auto* icon = new QSystemTrayIcon(QIcon(), qApp);
        icon->setObjectName(words("tray"));
    }

    stage.addTrick([=, &stage](QObject*) { openDialog(stage, window); });
    stage.addTrick([=, &stage](QObject*) { openDialog(stage, nullptr); });
    stage.addTrick([](QObject*) {
        const QList<QSystemTrayIcon*> icons = qApp->findChildren<QSystemTrayIcon*>();
        for (QSystemTrayIcon* icon : icons)
            icon->setVisible(!icon->isVisible());
    });
}
