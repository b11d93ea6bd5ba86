#include "agent/extensions.h"

#include "agent/inputextensions.h"
#include "agent/itemactions.h"
#include "agent/locatedactions.h"
#include "agent/request.h"
#include "agent/wirevalue.h"

#include <QStringList>
#include <QVariant>

namespace agent {

namespace {

QByteArray listExtensions(const Request& request, STApplicationProxy& registry);

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
};

// Sections: none. The names of all extensions: a test asks once what this agent can do.
QByteArray listExtensions(const Request&, STApplicationProxy&)
{
    QStringList names;
    for (const ExtensionRow& row : extensionRows)
        names.append(QLatin1String(row.name));
    return replyForValue(names);
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
