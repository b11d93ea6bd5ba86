#include "proxy/sterror.h"

const char deadWidgetMessage[] = "Internal error, proxy without widget";

namespace {

// What a function of C sees of a text: all before the first U+0000, if there is one.
QString asCText(const QString& text)
{
    return text.left(text.indexOf(QChar(0)));
}

} // namespace

QString formatMessage(const QString& wholeFormat, std::initializer_list<FormatArgument> arguments)
{
    constexpr int maximumLength = 2047;
    const FormatArgument* next = arguments.begin();
    const QString format = asCText(wholeFormat);
    QString message;
    message.reserve(format.size());
    for (int i = 0; i < format.size(); ++i) {
        const QChar conversion = format.at(i) == QLatin1Char('%') && i + 1 < format.size() ? format.at(i + 1) : QChar();
        const bool takesArgument = conversion == QLatin1Char('s') || conversion == QLatin1Char('d');
        if (takesArgument && next != arguments.end()) {
            message += asCText((next++)->text);
            ++i;
        } else {
            message += format.at(i);
            if (conversion == QLatin1Char('%'))
                ++i;
        }
    }
    return message.left(maximumLength);
}
