#include "agent/wiretext.h"

#include <algorithm>

namespace agent {

namespace {

// The value of a hexadecimal digit, -1 when it is none.
int digitValue(QChar digit)
{
    const ushort code = digit.unicode();
    if (code >= '0' && code <= '9')
        return code - '0';
    const ushort lowerCase = code | 0x20;
    return lowerCase >= 'a' && lowerCase <= 'f' ? lowerCase - 'a' + 10 : -1;
}

// Qt 5 takes the control character U+0085 for a space, too.
bool isSpace(QChar character)
{
    return character.isSpace() && character.unicode() != 0x85;
}

// The value of two characters as QString::toUShort() of Qt 4.8 reads them, which accepts a sign before a digit and a
// space on either side; 0 when they are no number.
ushort numberOf(QChar first, QChar second)
{
    const int high = digitValue(first);
    const int low = digitValue(second);
    if (high >= 0 && low >= 0)
        return static_cast<ushort>(high * 16 + low);
    if (high >= 0)
        return static_cast<ushort>(isSpace(second) ? high : 0);
    return static_cast<ushort>(low >= 0 && (isSpace(first) || first == QLatin1Char('+')) ? low : 0);
}

} // namespace

QString encodehex(const QString& text)
{
    QString hex;
    hex.reserve(text.size() * 2);
    for (const QChar character : text)
        hex += QString::number(character.unicode(), 16).rightJustified(2, QLatin1Char('0'));
    return hex;
}

QString decodehex(const QString& hex)
{
    QString text((hex.size() + 1) / 2, QChar());
    const QChar* digits = hex.constData();
    const QChar* const end = digits + hex.size();
    for (QChar& character : text) {
        const QChar second = digits + 1 < end ? digits[1] : QChar(QLatin1Char(' '));
        character = numberOf(digits[0], second);
        digits += 2;
    }
    return text;
}

QString decodeUtf8Hex(const QByteArray& hex, bool* ok)
{
    *ok = hex.size() % 2 == 0
        && std::all_of(hex.begin(), hex.end(), [](char digit) { return digitValue(QLatin1Char(digit)) >= 0; });
    const QByteArray utf8 = *ok ? QByteArray::fromHex(hex) : QByteArray();
    return QString::fromUtf8(utf8.constData(), static_cast<int>(utf8.size())); // with the size: a NUL is a character
}

} // namespace agent
