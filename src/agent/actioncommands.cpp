#include "agent/actioncommands.h"

#include "agent/request.h"
#include "agent/widgetaccess.h"
#include "agent/wiretext.h"
#include "agent/wirevalue.h"
#include "identify/widgetlookup.h"
#include "identify/widgetpath.h"
#include "proxy/hiddenkeys.h"
#include "proxy/stapplicationproxy.h"

#include <QApplication>
#include <QVariant>
#include <QWidget>

namespace agent {

namespace {

QVariant typedValue(const Request& request, int section)
{
    return valueFromText(decodehex(request.text(section)));
}

enum class FocusWidgetElement { Special, Ordinary };

// The widget at the request's path in a window.
Access widgetIn(const Access& window, const Request& request, FocusWidgetElement focusElement)
{
    if (!window.widget)
        return window;
    const identify::WidgetPath path(request.text(2));
    identify::WidgetLookup lookup;
    if (path.lastElement() == identify::activePopupWidget)
        lookup = identify::currentWidget(QApplication::activePopupWidget());
    else if (path.lastElement() == identify::focusWidget && focusElement == FocusWidgetElement::Special)
        lookup = identify::currentWidget(QApplication::focusWidget());
    else
        lookup = identify::findWidget(window.widget, path);
    return oneWidget(lookup, request.section(2));
}

// Resolves the widget, has `act` run on it and replies with the class that serves it. The class is read first: the
// widget may not live through the action.
template <class Act>
QByteArray actOnWidget(const Access& window, const Request& request, STApplicationProxy& registry, Act act)
{
    const Access access = widgetIn(window, request, FocusWidgetElement::Special);
    if (!access.widget)
        return access.refusal;
    const QString requestedClass = request.text(3);
    const QVariant servedClass
        = registry.property(access.widget, requestedClass, QLatin1String("silkClassName"), QVariant());
    const QVariant value = typedValue(request, 4);
    act(access.widget, requestedClass, value);
    return "0," + servedClass.toString().toLatin1();
}

} // namespace

QByteArray activateWidget(const Request& request, STApplicationProxy& registry)
{
    return actOnWidget(reachableWindow(request.section(1), QApplication::activeWindow()), request, registry,
        [&](QWidget* widget, const QString& className, const QVariant& value) {
            registry.activate(widget, className, value, typedValue(request, 5));
        });
}

QByteArray enterWidget(const Request& request, STApplicationProxy& registry)
{
    const proxy::HiddenKeys hiddenKeys; // for a later +hidden
    return actOnWidget(reachableWindow(request.section(1), QApplication::activeWindow()), request, registry,
        [&](QWidget* widget, const QString& className, const QVariant& value) {
            registry.enter(widget, className, value);
        });
}

QByteArray mouseWidget(const Request& request, STApplicationProxy& registry)
{
    // A mouse reaches any window while a popup is open: it closes the popup. A modal widget still blocks.
    const Access window = QApplication::activePopupWidget() ? anyWindow(request.section(1))
                                                            : reachableWindow(request.section(1), nullptr);
    return actOnWidget(
        window, request, registry, [&](QWidget* widget, const QString& className, const QVariant& value) {
            registry.mouseAction(widget, className, value);
        });
}

QByteArray readProperty(const Request& request, STApplicationProxy& registry)
{
    const Access access = widgetIn(anyWindow(request.section(1)), request, FocusWidgetElement::Ordinary);
    if (!access.widget)
        return access.refusal;
    const QVariant argument = stringFromText(request.text(5));
    return replyForValue(registry.property(access.widget, request.text(3), request.text(4), argument));
}

} // namespace agent
