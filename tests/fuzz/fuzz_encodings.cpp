// The two encodings of the wire, hexadecimal text and typed values, and the splitting of a request into sections. The
// input is a text. Rules: what is encoded comes back, and bytes that nobody encoded do no harm.

#include "agent/request.h"
#include "agent/wiretext.h"
#include "agent/wirevalue.h"
#include "compat/variant.h"
#include "fuzzing.h"

#include <QtCore/QRect>
#include <QtCore/QRegularExpression>

using fuzzing::check;
using fuzzing::printable;

namespace {

bool isLatin1(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) { return character.unicode() <= 0xFF; });
}

int digitOf(QChar character)
{
    return QLatin1String("0123456789abcdef").indexOf(character.toLower());
}

void checkHexadecimalText(const QString& text)
{
    const QString encoded = agent::encodehex(text);
    if (isLatin1(text)) {
        check(agent::decodehex(encoded) == text, "decodehex(encodehex(x)) == x", printable(text));
        check(agent::decodehex(encoded.toUpper()) == text, "digits of either case", printable(text));
    }
    const QString decoded = agent::decodehex(text);
    check(decoded.size() == (text.size() + 1) / 2, "a character for each pair", printable(text));
    for (int i = 0; i + 1 < text.size(); i += 2) {
        const int code = decoded.at(i / 2).unicode();
        const int high = digitOf(text.at(i));
        const int low = digitOf(text.at(i + 1));
        check(code <= 0xFF, "only characters up to U+00FF", printable(text));
        check(high < 0 || low < 0 || code == 16 * high + low, "the value of two digits", printable(text));
    }
}

// The value of a text by the rules of the protocol, read by other means than the agent's.
QVariant expectedValue(const QString& text)
{
    static const QRegularExpression integer(QStringLiteral("\\Ai:(-?[0-9]{1,12})\\z"));
    if (text.startsWith(QLatin1String("s:")))
        return text.mid(2);
    if (text == QLatin1String("b:true") || text == QLatin1String("b:false"))
        return text.size() == 6;
    const QRegularExpressionMatch match = integer.match(text);
    const qint64 number = match.captured(1).toLongLong();
    return match.hasMatch() && number == static_cast<qint32>(number) ? QVariant(static_cast<int>(number)) : QVariant();
}

void checkRequestValue(const QString& text)
{
    const QVariant value = agent::valueFromText(text);
    // Blanks of all kinds, a plus sign and leading zeros are Qt's to judge.
    static const QRegularExpression lenientInteger(
        QStringLiteral("\\Ai:-?0|\\Ai:[\\s\\x85]*\\+|\\Ai:[\\s\\x85]|[\\s\\x85]\\z"),
        QRegularExpression::UseUnicodePropertiesOption);
    const QVariant expected = expectedValue(text);
    const bool judgedByQt = text.startsWith(QLatin1String("i:")) && lenientInteger.match(text).hasMatch();
    check(judgedByQt || (value == expected && value.isValid() == expected.isValid()), "the value of a request's text",
        printable(text));
    if (compat::typeOf(value) == QMetaType::Int)
        check(agent::valueFromText(QLatin1String("i:") + value.toString()) == value, "integers come back",
            printable(text));
    check(agent::stringFromText(text).isValid() == text.startsWith(QLatin1String("s:")), "an argument is a text",
        printable(text));
}

void checkReply(const QVariant& value, const QString& expected)
{
    const QString reply = QString::fromLatin1(agent::replyForValue(value));
    check(reply == expected, "the reply for a value", printable(reply) + QLatin1Char('\n') + printable(expected));
}

void checkReplies(const QString& text)
{
    const QString reply = QString::fromLatin1(agent::replyForValue(text));
    check(reply.startsWith(QLatin1String("0,u:")), "a text is replied as such", printable(reply));
    const QString back = QString::fromUtf8(QByteArray::fromHex(reply.mid(4).toLatin1()));
    check(back == QString::fromUtf8(text.toUtf8()), "texts come back", printable(text));

    const QStringList items = text.split(QLatin1Char('\f'));
    const QString list = QLatin1String("0,l:\f") + items.join(QLatin1String("\f"));
    checkReply(items, QString::fromLatin1(list.toLatin1())); // what is not Latin-1 is lost

    bool ok = false;
    const double number = text.toDouble(&ok);
    if (ok && number == number)
        checkReply(number, QLatin1String("0,u:") + QLatin1String(QByteArray::number(number, 'g', 15).toHex()));
    checkReply(text.size() % 2 == 0, QLatin1String(text.size() % 2 == 0 ? "0,b:true" : "0,b:false"));
    checkReply(text.size(), QLatin1String("0,i:") + QString::number(text.size()));
    const int left = items.first().toInt();
    checkReply(QRect(left / 2, 3, items.size(), 4),
        QString::fromLatin1("0,r:%1,3,%2,6").arg(left / 2).arg(left / 2 + items.size() - 1));
}

void checkSections(const QByteArray& line)
{
    const agent::Request request(line);
    const QString text = QString::fromLatin1(line.constData(), line.size());
    check(request.line() == line, "the whole line", printable(text));
    const int sectionsToLookAt = 8;
    for (int i = 0; i < sectionsToLookAt; ++i)
        check(request.text(i) == text.section(QLatin1Char(','), i, i), "a section", printable(text));
}

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    const QString text = fuzzing::textOf(data, size);
    checkHexadecimalText(text);
    checkRequestValue(text);
    checkRequestValue(agent::decodehex(text));
    checkReplies(text);
    checkSections(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    return 0;
}
