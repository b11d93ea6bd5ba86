#include "locate/values.h"

#include "compat/variant.h"
#include "locate/json.h"

#include <QAbstractSlider>
#include <QLCDNumber>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSpinBox>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

namespace locate {

namespace {

// One more than JsonObject::addUnlessEmpty() takes, so that it shows a longer text as cut.
const int maximumCharacters = 1001;

// Not QTextDocument::toPlainText(), which copies the whole text.
QString beginningOf(QTextDocument* document)
{
    QTextCursor cursor(document);
    cursor.setPosition(qMin(maximumCharacters, document->characterCount() - 1), QTextCursor::KeepAnchor);
    return cursor.selectedText().replace(QChar(QChar::ParagraphSeparator), QLatin1Char('\n'));
}

template <class Widget>
void addNumber(JsonObject& object, const QWidget* widget)
{
    object.add("value", qint64(static_cast<const Widget*>(widget)->value()));
}

template <class Widget>
void addFraction(JsonObject& object, const QWidget* widget)
{
    object.field("value") += compat::textOf(static_cast<const Widget*>(widget)->value()).toLatin1();
}

template <class Widget>
void addDocument(JsonObject& object, const QWidget* widget)
{
    object.addUnlessEmpty("value", beginningOf(static_cast<const Widget*>(widget)->document()));
}

void addLine(JsonObject& object, const QWidget* widget)
{
    object.addUnlessEmpty("value", shownOf(*static_cast<const QLineEdit*>(widget)));
}

// Dates and times, and boxes of the application's own.
void addShownText(JsonObject& object, const QWidget* widget)
{
    object.addUnlessEmpty("value", static_cast<const QAbstractSpinBox*>(widget)->text());
}

struct ValueRow
{
    const char* className;
    ValueWriter add;
};

// Each class before its base classes.
const ValueRow valueRows[] = {
    {"QLineEdit", addLine},
    {"QSpinBox", addNumber<QSpinBox>},
    {"QDoubleSpinBox", addFraction<QDoubleSpinBox>},
    {"QAbstractSpinBox", addShownText},
    {"QTextEdit", addDocument<QTextEdit>},
    {"QPlainTextEdit", addDocument<QPlainTextEdit>},
    {"QAbstractSlider", addNumber<QAbstractSlider>},
    {"QProgressBar", addNumber<QProgressBar>},
    {"QLCDNumber", addFraction<QLCDNumber>},
};

} // namespace

QString shownOf(const QLineEdit& line)
{
    const bool isSecret = line.echoMode() != QLineEdit::Normal && !line.text().isEmpty();
    return isSecret ? QString(QLatin1String("***")) : line.text();
}

ValueWriter valueWriterFor(const QWidget* widget)
{
    for (const ValueRow& row : valueRows) {
        if (widget->inherits(row.className))
            return row.add;
    }
    return nullptr;
}

} // namespace locate
