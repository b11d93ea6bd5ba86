// Password fields that get what was typed in other ways than by a click or the Tab key; see tests/e2e/test_secret_fields.py.

#include "testhost.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QEventLoop>
#include <QItemDelegate>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

namespace {

QLineEdit* addField(QWidget* window, const char* name, QLineEdit::EchoMode mode = QLineEdit::Normal)
{
    auto* field = new QLineEdit;
    field->setObjectName(QLatin1String(name));
    field->setEchoMode(mode);
    window->layout()->addWidget(field);
    return field;
}

// A widget of the application's own, which gives the focus to the field in it.
void addComposite(QWidget* window)
{
    auto* composite = new QWidget;
    composite->setObjectName(QLatin1String("vault"));
    new QVBoxLayout(composite);
    window->layout()->addWidget(composite);
    composite->setFocusProxy(addField(composite, "vaultEdit", QLineEdit::Password));
    composite->setFocusPolicy(Qt::StrongFocus);
}

void addBox(QWidget* window)
{
    auto* box = new QComboBox;
    box->setObjectName(QLatin1String("pinBox"));
    box->setEditable(true);
    box->lineEdit()->setObjectName(QLatin1String("pinBoxEdit"));
    box->lineEdit()->setEchoMode(QLineEdit::Password);
    window->layout()->addWidget(box);
}

// A dialog with an event loop of its own, within the key that opens it; its button opens another one.
void ask(TestHost& host, QWidget* parent, int number)
{
    QDialog dialog(parent);
    dialog.setObjectName(QString::fromLatin1("asked%1").arg(number));
    new QVBoxLayout(&dialog);
    addField(&dialog, "askedEdit")->setFocus(); // or it would wait for the windowing system, which may take its time
    auto* button = new QPushButton(QLatin1String("Ask again"));
    dialog.layout()->addWidget(button);
    host.onSignal(button, SIGNAL(clicked()), [&host, &dialog, number] { ask(host, &dialog, number + 1); });
    dialog.exec();
}

// A blank on the button opens the dialog, and so does the letter q where no field takes it.
void addAskingButton(TestHost& host, QWidget* window)
{
    auto* button = new QPushButton(QLatin1String("Ask"));
    button->setObjectName(QLatin1String("askButton"));
    window->layout()->addWidget(button);
    host.onSignal(button, SIGNAL(clicked()), [&host, window] { ask(host, window, 0); });
    auto* shortcut = new QShortcut(QKeySequence(QLatin1String("Q")), window);
    host.onSignal(shortcut, SIGNAL(activated()), [&host, window] { ask(host, window, 0); });
}

// A text that ends in a w waits in an event loop, as for a server, until it is told to go on.
void addWaitingField(TestHost& host, QWidget* window)
{
    QLineEdit* field = addField(window, "waitEdit");
    auto* loop = new QEventLoop(field);
    host.onSignal(field, SIGNAL(textChanged(QString)), [&host, field, loop] {
        if (!field->text().endsWith(QLatin1Char('w')))
            return;
        host.journal(QLatin1String("waiting"));
        loop->exec();
        host.journal(QString::fromLatin1("waited '%1'").arg(field->text()));
    });
    host.onRequest(QLatin1String("goOn"), [loop] { loop->quit(); });
}

// Its editors hide their text.
class SecretDelegate : public QItemDelegate
{
public:
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        auto* editor = new QLineEdit(parent);
        editor->setEchoMode(QLineEdit::Password);
        editor->setMaxLength(40);
        return editor;
    }
};

void addList(QWidget* window)
{
    auto* list = new QListWidget;
    list->setObjectName(QLatin1String("keyList"));
    list->setMaximumHeight(60);
    list->addItem(QLatin1String("key"));
    list->item(0)->setFlags(list->item(0)->flags() | Qt::ItemIsEditable);
    list->setEditTriggers(QAbstractItemView::AnyKeyPressed | QAbstractItemView::EditKeyPressed);
    list->setItemDelegate(new SecretDelegate);
    list->itemDelegate()->setParent(list);
    list->setCurrentRow(0);
    window->layout()->addWidget(list);
}

// The window with one field is in front, and the other one has the fields that hide their text.
void addSecondWindow(TestHost& host)
{
    auto* second = new QWidget;
    second->setObjectName(QLatin1String("second"));
    new QVBoxLayout(second);
    QLineEdit* field = addField(second, "behindEdit", QLineEdit::NoEcho);
    second->setGeometry(400, 60, 200, 100);
    field->setFocus();
    host.onRequest(QLatin1String("showSecond"), [second] { second->show(); });
}

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(QLatin1String("login"));
    new QVBoxLayout(window);
    QLineEdit* user = addField(window, "userEdit");
    QLineEdit* slow = addField(window, "slowEdit");
    QLineEdit* pin = addField(window, "pinEdit", QLineEdit::Password);
    host.onSignal(user, SIGNAL(returnPressed()), [pin] { pin->setFocus(); });
    host.onSignal(slow, SIGNAL(returnPressed()), [pin] { QTimer::singleShot(0, pin, SLOT(setFocus())); });
    auto* notes = new QPlainTextEdit;
    notes->setObjectName(QLatin1String("notesEdit"));
    notes->setMaximumHeight(60);
    window->layout()->addWidget(notes);
    addComposite(window);
    addBox(window);
    addField(window, "unlitEdit", QLineEdit::Password)->hide();
    addField(window, "greyEdit", QLineEdit::Password)->setEnabled(false);
    addAskingButton(host, window);
    addWaitingField(host, window);
    addList(window);
    addSecondWindow(host);
    window->move(60, 60);
    window->show();
    user->setFocus();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
