// Password fields that get what was typed in other ways than by a click or the Tab key; see tests/e2e/test_secret_fields.py.

#include "testhost.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
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

// Its dialog runs an event loop of its own, within the key that presses the button.
void addAskingButton(TestHost& host, QWidget* window)
{
    auto* button = new QPushButton(QLatin1String("Ask"));
    button->setObjectName(QLatin1String("askButton"));
    window->layout()->addWidget(button);
    host.onSignal(button, SIGNAL(clicked()), [window] {
        QDialog dialog(window);
        dialog.setObjectName(QLatin1String("asked"));
        dialog.exec();
    });
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
