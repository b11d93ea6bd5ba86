// The formatting of error messages. The first line of the input is the format, each further one an argument. Rules: the
// message is the one that a slow and obvious formatter makes, and a conversion without an argument is no danger.

#include "fuzzing.h"
#include "proxy/sterror.h"

namespace {

const int maximumLength = 2047;

QString expectedMessage(const QString& format, QStringList arguments)
{
    QString rest = fuzzing::shown(format);
    QString message;
    while (!rest.isEmpty()) {
        const QString head = rest.left(2);
        const bool converts = head == QLatin1String("%s") || head == QLatin1String("%d");
        if (converts && !arguments.isEmpty()) {
            message += fuzzing::shown(arguments.takeFirst());
            rest = rest.mid(2);
        } else {
            message += rest.left(1);
            rest = rest.mid(head == QLatin1String("%%") ? 2 : 1);
        }
    }
    return message.left(maximumLength);
}

QString formatted(const QString& format, const QStringList& arguments)
{
    switch (arguments.size()) {
    case 0:
        return proxy::formatMessage(format, {});
    case 1:
        return proxy::formatMessage(format, {proxy::FormatArgument(arguments.at(0))});
    default:
        return proxy::formatMessage(
            format, {proxy::FormatArgument(arguments.at(0)), proxy::FormatArgument(arguments.at(1))});
    }
}

} // namespace

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
    const QStringList lines = fuzzing::linesOf(data, size);
    const QString& format = lines.first();
    const QStringList arguments = lines.mid(1, 2);
    fuzzing::checkEqual(formatted(format, arguments), expectedMessage(format, arguments), "the message of a format",
        fuzzing::printable(lines.join(QLatin1String("\n"))));
    return 0;
}
