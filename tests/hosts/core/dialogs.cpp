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
    dialog.setObjectName(latin1("dialog") + QString::number(level));
    dialog.setWindowTitle(latin1("Save changes? ") + QString::number(level));
    new QVBoxLayout(&dialog);
    auto* next = addButton(host, &dialog, "next");
    host.onSignal(next, SIGNAL(clicked()), [&host, level] { openDialog(host, level + 1); });
    auto* accept = addButton(host, &dialog, "accept");
    QObject::connect(accept, SIGNAL(clicked()), &dialog, SLOT(accept()));
    host.journal(latin1("dialog result %1").arg(dialog.exec()));
}

void buildDialogs(TestHost& host)
{
    host.onRequest(latin1("openDialog"), [&host] { openDialog(host, 1); });
    host.onRequest(latin1("openUntitledDialog"), [] {
        auto* dialog = new QDialog;
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setModal(true);
        new QVBoxLayout(dialog);
        add(dialog, named(new QLabel(latin1("text")), "label"));
        dialog->setFixedSize(300, 200);
        dialog->show();
    });
    host.onRequest(latin1("openInputDialog"), [&host] {
        auto* dialog = named(new DerivedInputDialog, "input");
        dialog->setWindowTitle(latin1("Input"));
        dialog->sizeHint(); // makes its layout
        add(dialog, new ValueWidget)->setFixedHeight(20);
        add(dialog, new QPushButton(latin1("Help")));
        add(dialog, new QToolButton)->setDefaultAction(named(new QAction(latin1("Find"), dialog), "find"));
        auto* frame = new QWidget(dialog);
        new QVBoxLayout(frame);
        add(frame, new QLineEdit);
        frame->move(0, 200);
        host.onSignal(
            dialog, SIGNAL(accepted()), [&host, dialog] { host.journal(latin1("input ") + dialog->textValue()); });
        host.onRequest(latin1("renameOk"), [dialog] { dialog->setOkButtonText(latin1("Go on")); });
        dialog->open();
    });
    host.onRequest(latin1("openMenu"), [&host] {
        auto* menu = named(new QMenu, "popup");
        host.journalInput(menu);
        host.journalSignal(menu, SIGNAL(aboutToHide()), latin1("hidden"));
        menu->addAction(latin1("First"));
        menu->addAction(latin1("Second"));
        menu->popup(QPoint(700, 500));
    });
}

#include "dialogs.moc"
