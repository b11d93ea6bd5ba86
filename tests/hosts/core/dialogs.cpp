#include "corewindows.h"
#include "testhost.h"
#include "valuewidget.h"

#include <QAction>
#include <QDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>

namespace {

// A class of an application: its widgets are named like those of Qt's class.
class DerivedInputDialog : public QInputDialog
{
    Q_OBJECT
};

} // namespace

void openDialog(TestHost& host, int level)
{
    QDialog dialog;
    dialog.setObjectName(text("dialog") + QString::number(level));
    dialog.setWindowTitle(text("Save changes? ") + QString::number(level));
    new QVBoxLayout(&dialog);
    auto* next = addButton(host, &dialog, "next");
    host.onSignal(next, SIGNAL(clicked()), [&host, level] { openDialog(host, level + 1); });
    auto* accept = addButton(host, &dialog, "accept");
    QObject::connect(accept, SIGNAL(clicked()), &dialog, SLOT(accept()));
    host.journal(text("dialog result %1").arg(dialog.exec()));
}

void buildDialogs(TestHost& host)
{
    host.onRequest(text("openDialog"), [&host] { openDialog(host, 1); });
    host.onRequest(text("openUntitledDialog"), [] {
        auto* dialog = new QDialog;
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setModal(true);
        new QVBoxLayout(dialog);
        add(dialog, named(new QLabel(text("text")), "label"));
        dialog->setFixedSize(300, 200);
        dialog->show();
    });
    host.onRequest(text("openInputDialog"), [&host] {
        auto* dialog = named(new DerivedInputDialog, "input");
        dialog->setWindowTitle(text("Input"));
        dialog->sizeHint(); // makes its layout
        add(dialog, new ValueWidget)->setFixedHeight(20);
        add(dialog, new QPushButton(text("Help")));
        add(dialog, new QToolButton)->setDefaultAction(named(new QAction(text("Find"), dialog), "find"));
        auto* frame = new QWidget(dialog);
        new QVBoxLayout(frame);
        add(frame, new QLineEdit);
        frame->move(0, 200);
        host.onSignal(
            dialog, SIGNAL(accepted()), [&host, dialog] { host.journal(text("input ") + dialog->textValue()); });
        host.onRequest(text("renameOk"), [dialog] { dialog->setOkButtonText(text("Go on")); });
        dialog->open();
    });
    host.onRequest(text("openMenu"), [&host] {
        auto* menu = named(new QMenu, "popup");
        host.journalInput(menu);
        host.journalSignal(menu, SIGNAL(aboutToHide()), text("hidden"));
        menu->addAction(text("First"));
        menu->addAction(text("Second"));
        menu->popup(QPoint(700, 500));
    });
}

#include "dialogs.moc"
