#include "agent/extensions.h"

#include "agent/inputextensions.h"
#include "agent/itemactions.h"
#include "agent/locatedactions.h"
#include "agent/request.h"
#include "agent/wirevalue.h"
#include "proxy/hiddenkeys.h"
#include "proxy/sterror.h"
#include "record/recorder.h"

#include <QStringList>
#include <QVariant>

namespace agent {

namespace {

QByteArray listExtensions(const Request& request, STApplicationProxy& registry);
QByteArray tellHiddenKeys(const Request& request, STApplicationProxy& registry);
QByteArray recordEvents(const Request& request, STApplicationProxy& registry);
QByteArray takeEvents(const Request& request, STApplicationProxy& registry);

struct ExtensionRow
{
    const char* name;
    ExtensionFunction execute;
};

const ExtensionRow extensionRows[] = {
    {"+extensions", listExtensions},
    {"+2", takeSnapshot},
    {"+4", locateLocated},
    {"+5", activateLocated},
    {"+6", enterLocated},
    {"+7", readLocated},
    {"+9", mouseLocated},
    {"+scroll", scrollToLocated},
    {"+item", readItem},
    {"+press", pressKeys},
    {"+type", typeText},
    {"+wheel", turnWheel},
    {"+clipboard", clipboardText},
    {"+focus", focusWidget},
    {"+hidden", tellHiddenKeys},
    {"+record", recordEvents},
    {"+events", takeEvents},
};

// Sections: none. The names of all extensions: a test asks once what this agent can do.
QByteArray listExtensions(const Request&, STApplicationProxy&)
{
    QStringList names;
    for (const ExtensionRow& row : extensionRows)
        names.append(QLatin1String(row.name));
    return replyForValue(names);
}

// Sections: none. Whether the last request that enters a value has typed into a field that hides its text, as the editor of
// an item view can be, which is not there before.
QByteArray tellHiddenKeys(const Request&, STApplicationProxy&)
{
    return replyForValue(proxy::HiddenKeys::wereSeen());
}

// Section 1: "start" or "stop"; section 2: empty, or "passwords" to record keys in fields that hide their text, too.
QByteArray recordEvents(const Request& request, STApplicationProxy&)
{
    const QString mode = request.utf8Text(1);
    const QString option = request.utf8Text(2);
    if (!option.isEmpty() && option != QLatin1String("passwords"))
        proxy::raiseError("Unknown option \"%s\"", option);
    if (mode == QLatin1String("start"))
        record::Recorder::instance().start(
            option.isEmpty() ? record::Recorder::Passwords::Hidden : record::Recorder::Passwords::Recorded);
    else if (mode == QLatin1String("stop"))
        record::Recorder::instance().stop();
    else
        proxy::raiseError("Unknown mode \"%s\"", mode);
    return "0,";
}

// Sections: none. The events recorded since the last such request, as JSON.
QByteArray takeEvents(const Request&, STApplicationProxy&)
{
    return "0,j:" + record::Recorder::instance().take();
}

} // namespace

ExtensionFunction extensionNamed(const QByteArray& name)
{
    for (const ExtensionRow& row : extensionRows) {
        if (name == row.name)
            return row.execute;
    }
    return nullptr;
}

} // namespace agent
