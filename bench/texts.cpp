// Entering texts of as many characters. The floor posts the same keys with Qt's own calls and handles their events; for
// the field with a validator, which gets its text in one piece, it is QLineEdit::insert().

#include "onscreen.h"
#include "pairs.h"
#include "proxy/keysequence.h"
#include "proxy/stapplicationproxy.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QValidator>

#include <memory>

namespace {

class AnyText : public QValidator
{
public:
    State validate(QString&, int&) const override { return Acceptable; }
};

struct TextWindow
{
    TextWindow()
    {
        auto* layout = new QVBoxLayout(&window);
        for (QLineEdit* field : {&line, &validated}) {
            field->setMaxLength(1000000);
            layout->addWidget(field);
        }
        validated.setValidator(&anyText);
        layout->addWidget(&text);
        window.setWindowTitle(QString::fromLatin1("Texts"));
        showActive(window);
    }

    QWidget window;
    QLineEdit line;
    QLineEdit validated;
    QTextEdit text;
    AnyText anyText;
    STApplicationProxy registry;
};

TextWindow& textWindow()
{
    static auto* const window = new TextWindow; // kept: a static would outlive the application
    return *window;
}

QString sampleText(int size)
{
    const int lineLength = 50;
    QString text(size, QLatin1Char('x'));
    for (int i = lineLength - 1; i < size; i += lineLength)
        text[i] = QLatin1Char(' ');
    return text;
}

void handleEvents()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
}

void typeByQt(QWidget* field, const QString& text)
{
    field->setFocus();
    for (const QChar character : text) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QCoreApplication::postEvent(
                field, new QKeyEvent(type, character.toUpper().unicode(), Qt::NoModifier, QString(character)));
            handleEvents();
        }
    }
}

template <class Field>
MakeMeasured makeOurs(Field TextWindow::*field)
{
    return [field](int size) -> Measured {
        Field* edit = &(textWindow().*field);
        const QString text = sampleText(size);
        return [edit, text] {
            edit->clear();
            textWindow().registry.enter(edit, QString(), text);
        };
    };
}

template <class Field>
MakeMeasured makeTypingFloor(Field TextWindow::*field)
{
    return [field](int size) -> Measured {
        Field* edit = &(textWindow().*field);
        const QString text = sampleText(size);
        return [edit, text] {
            edit->clear();
            typeByQt(edit, text);
        };
    };
}

// As "+type" does it.
Measured makeTypedText(int size)
{
    const QString text = sampleText(size);
    return [text] {
        QTextEdit* edit = &textWindow().text;
        edit->clear();
        edit->setFocus();
        int position = 0;
        const auto keys = std::make_shared<proxy::KeySequence>(edit, [&] {
            return position < text.size() ? proxy::Keyboard::type(proxy::takeKeyStroke(text, position))
                                          : proxy::KeyEvents();
        });
        keys->run([] {});
    };
}

Measured makeInsertFloor(int size)
{
    const QString text = sampleText(size);
    return [text] {
        textWindow().validated.clear();
        textWindow().validated.insert(text);
        handleEvents();
    };
}

} // namespace

void registerTexts()
{
    registerPair(
        "type_line", Clock::Wall, {10, 100, 1000}, makeOurs(&TextWindow::line), makeTypingFloor(&TextWindow::line));
    registerPair(
        "type_text", Clock::Wall, {10, 100, 1000}, makeOurs(&TextWindow::text), makeTypingFloor(&TextWindow::text));
    registerPair("type_keys", Clock::Wall, {10, 100, 1000}, makeTypedText, makeTypingFloor(&TextWindow::text));
    registerPair(
        "insert_validated", Clock::Wall, {10, 100, 1000, 10000}, makeOurs(&TextWindow::validated), makeInsertFloor);
}
