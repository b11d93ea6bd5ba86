#include "agent/wiretext.h"

namespace {

// The value of two hexadecimal digits, 0 when they are none.
ushort valueOf(const QString& digits)
{
    bool ok = false;
    const ushort value = digits.toUShort(&ok, 16);
    return ok ? value : 0;
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
    QString text;
    text.reserve((hex.size() + 1) / 2);
    for (int position = 0; position < hex.size(); position += 2)
        text += QChar(valueOf(hex.mid(position, 2)));
    return text;
}
