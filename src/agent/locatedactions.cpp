#include "agent/locatedactions.h"

#include "agent/itemactions.h"
#include "agent/locatedwidget.h"
#include "agent/querycommands.h"
#include "agent/readiness.h"
#include "agent/request.h"
#include "agent/wirevalue.h"
#include "compat/variant.h"
#include "locate/snapshot.h"
#include "proxy/hiddenkeys.h"
#include "proxy/stapplicationproxy.h"
#include "proxy/sterror.h"

#include <QApplication>
#include <QPointer>
#include <QVariant>
#include <QWidget>

namespace agent {

namespace {

QVariant typedValue(const Request& request, int section)
{
    return valueFromText(request.utf8Text(section));
}

// Whether the request asks to act without the checks.
bool isForced(const Request& request, int section)
{
    const QString word = request.utf8Text(section);
    if (!word.isEmpty() && word != QLatin1String("force"))
        proxy::raiseError("Section %d is neither \"force\" nor empty", section);
    return !word.isEmpty();
}

using MousePlace = STWidgetProxy::MousePlace;

// Looks for the item that the value names before anything is opened, scrolled or selected for it. Raises only errors that
// can clear by themselves; the action raises the others.
void lookForItem(STWidgetProxy& proxy, const QVariant& value)
{
    try {
        proxy.lookForItem(value);
    } catch (const STError& error) {
        if (!error.notYet.isEmpty())
            throw;
    }
}

MousePlace itemPlace(STWidgetProxy& proxy, const QVariant& value)
{
    const QWidget* widget = proxy.checkedWidget(nullptr);
    if (widget->isVisible() && widget->isEnabled()) // a widget that is not is the first thing to report
        lookForItem(proxy, value);
    return proxy.activationPlace();
}

MousePlace fieldPlace(STWidgetProxy& proxy, const QVariant&)
{
    return proxy.activationPlace();
}

MousePlace mousePlace(STWidgetProxy& proxy, const QVariant& command)
{
    QWidget* widget = proxy.checkedWidget(nullptr);
    return {widget, mousePoint(widget->rect(), command.toString())};
}

QWidget* required(const QPointer<QWidget>& widget)
{
    if (!widget)
        proxy::raiseError(proxy::deadWidgetMessage);
    return widget;
}

// Resolves the widget, looks whether a user could use it, has `act` run on it and replies with the class that serves it.
template <class Act>
QByteArray actOnLocated(const Access& window, const Request& request, int forceSection, STApplicationProxy& registry,
    MousePlace (*placeOf)(STWidgetProxy&, const QVariant&), Act act)
{
    const Access access = locatedWidget(window, request);
    if (!access.widget)
        return access.refusal;
    const QPointer<QWidget> widget(access.widget);
    const QString className = request.utf8Text(3);
    const QByteArray served
        = registry.property(widget, className, QLatin1String("silkClassName"), QVariant()).toString().toLatin1();
    const QVariant value = typedValue(request, 4);
    if (isForced(request, forceSection)) {
        act(widget, className, value);
        return "0," + served;
    }
    try {
        STWidgetProxy* proxy = registry.proxyFor(widget, className);
        const QString obstacle = prepareForMouse(*proxy, placeOf(*proxy, value));
        if (!obstacle.isEmpty())
            return notYet(obstacle);
        act(required(widget), className, value);
    } catch (const STError& error) {
        if (error.notYet.isEmpty())
            throw;
        return notYet(error.notYet);
    }
    return "0," + served;
}

Access windowForAction(const Request& request)
{
    return reachableWindow(windowName(request), QApplication::activeWindow());
}

} // namespace

QByteArray takeSnapshot(const Request& request, STApplicationProxy&)
{
    const Access access = locatedWidget(anyWindow(windowName(request)), request);
    if (!access.widget)
        return access.refusal;
    const QByteArray json = locate::snapshot(access.widget);
    if (json.isEmpty())
        proxy::raiseError(proxy::deadWidgetMessage);
    return "0,j:" + json;
}

QByteArray locateLocated(const Request& request, STApplicationProxy&)
{
    const Access access = locatedWidget(anyWindow(windowName(request)), request);
    return access.widget ? putCursorOnto(access.widget) : access.refusal;
}

QByteArray activateLocated(const Request& request, STApplicationProxy& registry)
{
    const QVariant option = typedValue(request, 5);
    const int forceSection = 6;
    return actOnLocated(windowForAction(request), request, forceSection, registry, itemPlace,
        [&](QWidget* widget, const QString& className, const QVariant& value) {
            if (isForced(request, forceSection))
                registry.activate(widget, className, value, option);
            else
                registry.activateFound(widget, className, value, option);
        });
}

QByteArray enterLocated(const Request& request, STApplicationProxy& registry)
{
    const int forceSection = 5;
    const proxy::HiddenKeys hiddenKeys;
    const QByteArray reply = actOnLocated(windowForAction(request), request, forceSection, registry, fieldPlace,
        [&](QWidget* widget, const QString& className, const QVariant& value) {
            registry.enter(widget, className, value);
        });
    return proxy::HiddenKeys::wereSeen() && reply.startsWith("0,") ? reply + ",hidden" : reply;
}

QByteArray mouseLocated(const Request& request, STApplicationProxy& registry)
{
    // As for the command: a mouse reaches any window while a popup is open.
    const Access window = QApplication::activePopupWidget() ? anyWindow(windowName(request))
                                                            : reachableWindow(windowName(request), nullptr);
    const int forceSection = 5;
    const int itemSection = 6;
    if (!request.utf8Text(itemSection).isEmpty())
        return mouseOnItem(window, request, isForced(request, forceSection), registry);
    return actOnLocated(window, request, forceSection, registry, mousePlace,
        [&](QWidget* widget, const QString& className, const QVariant& value) {
            if (className == QLatin1String("QWidget") && compat::typeOf(value) == QMetaType::QString)
                registry.mouseActionAt({widget, widget->rect(), true}, value.toString());
            else
                registry.mouseAction(widget, className, value);
        });
}

QByteArray readLocated(const Request& request, STApplicationProxy& registry)
{
    const Access access = locatedWidget(anyWindow(windowName(request)), request);
    if (!access.widget)
        return access.refusal;
    const QVariant argument = stringFromText(request.utf8Text(5));
    return replyForValue(registry.property(access.widget, request.utf8Text(3), request.utf8Text(4), argument));
}

} // namespace agent
