#include "locate/json.h"

namespace locate {

void appendJsonText(QByteArray& json, const QString& text)
{
    static const char digits[] = "0123456789abcdef";
    json += '"';
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (code == '"' || code == '\\') {
            json += '\\';
            json += static_cast<char>(code);
        } else if (code >= 0x20 && code < 0x7f) {
            json += static_cast<char>(code);
        } else {
            const char escaped[] = {
                '\\', 'u', digits[code >> 12], digits[code >> 8 & 15], digits[code >> 4 & 15], digits[code & 15], '\0'};
            json += escaped;
        }
    }
    json += '"';
}

void appendNumber(QByteArray& json, qint64 number)
{
    char digits[24]; // more than any number has
    char* const end = digits + sizeof digits;
    char* begin = end;
    const bool isNegative = number < 0;
    quint64 rest = isNegative ? 0 - static_cast<quint64>(number) : static_cast<quint64>(number);
    do {
        *--begin = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest > 0);
    if (isNegative)
        *--begin = '-';
    json.append(begin, static_cast<int>(end - begin));
}

QByteArray& JsonObject::field(const char* key)
{
    if (!isEmpty)
        json += ',';
    isEmpty = false;
    return json.append('"').append(key).append("\":");
}

void JsonObject::addUnlessEmpty(const char* key, const QString& text)
{
    const int maximumLength = 1000;
    if (text.size() > maximumLength)
        appendJsonText(field(key), text.left(maximumLength) + QChar(0x2026));
    else if (!text.isEmpty())
        appendJsonText(field(key), text);
}

} // namespace locate
