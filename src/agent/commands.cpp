#include "agent/commands.h"

#include "agent/actioncommands.h"
#include "agent/extensions.h"
#include "agent/querycommands.h"
#include "agent/request.h"
#include "agent/windowcommands.h"
#include "proxy/sterror.h"

namespace agent {

namespace {

struct CommandRow
{
    const char* number;
    bool takesNoArguments; // a line with anything behind the number is another, unknown command
    QByteArray (*execute)(const Request& request, STApplicationProxy& registry);
};

const CommandRow commandRows[] = {
    {"1", true, listWindows},
    {"2", false, windowTree},
    {"3", true, identifyWidgetAtCursor},
    {"4", false, locateWidget},
    {"5", false, activateWidget},
    {"6", false, enterWidget},
    {"7", false, readProperty},
    {"8", false, checkWindow},
    {"9", false, mouseWidget},
    {"10", false, moveWindow},
    {"11", false, resizeWindow},
    {"12", false, locateTrayIcon},
};

QByteArray executeRequest(const Request& request, STApplicationProxy& registry)
{
    const QByteArray number = request.section(0);
    for (const CommandRow& row : commandRows) {
        if (number == row.number && (!row.takesNoArguments || request.line() == number))
            return row.execute(request, registry);
    }
    if (const ExtensionFunction extension = extensionNamed(number))
        return extension(request, registry);
    return "8,Command not found";
}

} // namespace

QByteArray executeCommand(const QByteArray& line, STApplicationProxy& registry)
{
    return replyOf([&] { return executeRequest(Request(line), registry); });
}

QByteArray replyOf(const std::function<QByteArray()>& execute)
{
    try {
        return execute();
    } catch (const STError& error) {
        return "8,Exception : " + error.message.toLatin1();
    } catch (...) {
        return "8,Exception : Unknown exception";
    }
}

} // namespace agent
