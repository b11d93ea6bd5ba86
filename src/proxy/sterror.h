#pragma once

#include <QtCore/QString>

#include <initializer_list>

// The one exception of the proxy layer. Its message goes to the test as it stands.
struct STError
{
    explicit STError(const QString& text, const QString& reason = QString())
        : message(text)
        , notYet(reason)
    {
    }
    virtual ~STError() = default;
    STError(const STError&) = default;
    STError& operator=(const STError&) = default;

    QString message;
    // Why the same may succeed a little later; empty where it will not.
    QString notYet;
};

namespace proxy {

// Raised wherever the widget that a command is about turns out to be gone.
extern const char deadWidgetMessage[];

// One value for "%s" or "%d".
struct FormatArgument
{
    FormatArgument(int number)
        : text(QString::number(number))
    {
    }
    FormatArgument(const char* latin1)
        : text(QString::fromLatin1(latin1, static_cast<int>(qstrnlen(latin1, maximumLength))))
    {
    }
    FormatArgument(const QString& string)
        : text(string.left(maximumLength))
    {
    }

    QString text;

    // A message is never longer than this, so longer texts are not copied.
    static const int maximumLength = 2047;
};

// Formats by printf's rules as far as messages need them: "%s" and "%d" take the next argument, "%%" is one percent
// sign. A conversion that has no argument, or is of another kind, stays as written: formats can hold text that a
// test sent, so they must never reach memory. The result is cut to FormatArgument::maximumLength characters,
// and the format and each argument end before their first U+0000, as texts do in C.
QString formatMessage(const QString& format, std::initializer_list<FormatArgument> arguments);

// Throws an STError whose message is the formatted text.
template <class... Arguments>
[[noreturn]] void raiseError(const char* format, const Arguments&... arguments)
{
    throw STError(formatMessage(QString::fromLatin1(format), {FormatArgument(arguments)...}));
}

// The same for an error that can clear by itself; `reason` says what has to change.
template <class... Arguments>
[[noreturn]] void raiseNotYet(const QString& reason, const char* format, const Arguments&... arguments)
{
    throw STError(formatMessage(QString::fromLatin1(format), {FormatArgument(arguments)...}), reason);
}

// Reasons of that kind: an item, a tab or a menu entry of this text, number or path is missing, disabled or hidden.
QString missingItem(const QString& item);
QString missingItem(int number);
QString disabledItem(const QString& item);
QString hiddenItem(const QString& item);
// The reason where another widget would get the mouse.
QString coveredBy(const QString& other);

// The same as raiseError() for a format that was put together from several texts and has no arguments.
[[noreturn]] inline void raiseError(const QString& format)
{
    throw STError(formatMessage(format, {}));
}

} // namespace proxy
