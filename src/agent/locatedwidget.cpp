#include "agent/locatedwidget.h"

#include "agent/request.h"
#include "locate/description.h"
#include "locate/locator.h"
#include "locate/search.h"
#include "proxy/sterror.h"

#include <QPointer>
#include <QWidget>

#include <vector>

namespace agent {

namespace {

QByteArray descriptions(const QWidget* window, const std::vector<QPointer<QWidget>>& widgets)
{
    const locate::WidgetDescriber describer(window);
    QByteArray json = "[";
    for (const QPointer<QWidget>& widget : widgets) {
        if (!widget)
            continue;
        if (json.size() > 1)
            json += ',';
        describer.append(json, widget);
    }
    return json + ']';
}

QByteArray refusal(const QWidget* window, const locate::SearchResult& result, const QByteArray& locator)
{
    struct Row
    {
        locate::Outcome outcome;
        const char* code;
        const char* text;
    };
    static const Row rows[] = {
        {locate::Outcome::None, "5", ") not found,"},
        {locate::Outcome::Hidden, "6", ") not visible,"},
        {locate::Outcome::Several, "7", ") visible,"},
    };
    QByteArray reply;
    for (const Row& row : rows) {
        if (row.outcome == result.outcome)
            reply = QByteArray(row.code) + ",Widget (" + locator + row.text;
    }
    if (result.outcome == locate::Outcome::Several)
        reply += QByteArray::number(result.count) + ',';
    return reply + (window ? descriptions(window, result.widgets) : "[]");
}

locate::SearchResult searchFor(QWidget* window, const QString& locator)
{
    try {
        return locate::search(window, locate::parseLocator(locator));
    } catch (const locate::LocatorError& error) {
        proxy::raiseError("Invalid locator: %s at %d", error.reason, error.at);
    }
}

} // namespace

WrittenName windowName(const Request& request)
{
    return {request.utf8Text(1), request.section(1)};
}

Access locatedWidget(const Access& window, const Request& request)
{
    const QString locator = request.utf8Text(2);
    if (!window.widget || locator.isEmpty())
        return window;
    const QPointer<QWidget> guarded(window.widget); // reading a property runs code that may delete it
    const locate::SearchResult result = searchFor(window.widget, locator);
    if (result.outcome == locate::Outcome::One && !result.widgets.front())
        proxy::raiseError(proxy::deadWidgetMessage);
    const bool isOne = result.outcome == locate::Outcome::One;
    Access access;
    access.widget = isOne ? result.widgets.front().data() : nullptr;
    if (!isOne)
        access.refusal = refusal(guarded, result, request.section(2));
    return access;
}

QByteArray notYet(const QString& reason)
{
    return "9," + reason.toLatin1();
}

} // namespace agent
