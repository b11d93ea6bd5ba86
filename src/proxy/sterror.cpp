#include "proxy/sterror.h"

#include <algorithm>

namespace proxy {

const char deadWidgetMessage[] = "Internal error, proxy without widget";

namespace {

// The length of the text for a function of C: up to the first U+0000, if there is one.
int lengthInC(const QString& text)
{
    const int end = static_cast<int>(text.indexOf(QChar(0)));
    return end < 0 ? static_cast<int>(text.size()) : end;
}

QString aboutItem(const QString& item, const char* what)
{
    return QLatin1String("item \"") + item.left(FormatArgument::maximumLength) + QLatin1String("\" ")
        + QLatin1String(what);
}

} // namespace

QString missingItem(const QString& item)
{
    return aboutItem(item, "not there yet");
}

QString missingItem(int number)
{
    return missingItem(QString::number(number));
}

QString disabledItem(const QString& item)
{
    return aboutItem(item, "disabled");
}

QString hiddenItem(const QString& item)
{
    return aboutItem(item, "hidden");
}

QString coveredBy(const QString& other)
{
    return QLatin1String("covered by ") + other;
}

QString formatMessage(const QString& format, std::initializer_list<FormatArgument> arguments)
{
    const int maximumLength = FormatArgument::maximumLength;
    const FormatArgument* next = arguments.begin();
    const int end = lengthInC(format);
    QString message;
    message.reserve(std::min(end, maximumLength));
    for (int i = 0; i < end && message.size() < maximumLength; ++i) {
        const QChar conversion = format.at(i) == QLatin1Char('%') && i + 1 < end ? format.at(i + 1) : QChar();
        const bool takesArgument = conversion == QLatin1Char('s') || conversion == QLatin1Char('d');
        if (takesArgument && next != arguments.end()) {
            message += next->text.left(lengthInC(next->text));
            ++next;
            ++i;
        } else {
            message += format.at(i);
            if (conversion == QLatin1Char('%'))
                ++i;
        }
    }
    return message.left(maximumLength);
}

} // namespace proxy
