#include "agent/itemactions.h"

#include "agent/locatedwidget.h"
#include "agent/readiness.h"
#include "agent/request.h"
#include "agent/wirevalue.h"
#include "compat/embedding.h"
#include "locate/json.h"
#include "proxy/mousecommand.h"
#include "proxy/stapplicationproxy.h"
#include "proxy/sterror.h"
#include "proxy/textparts.h"

#include <QApplication>
#include <QPointer>
#include <QVariant>
#include <QWidget>

namespace agent {

namespace {

using ItemArea = STWidgetProxy::ItemArea;

QStringList wordsOf(const QString& command)
{
    const int sectionCount = 5;
    return proxy::firstParts(command, QLatin1Char(':'), sectionCount);
}

// An item as a request names it.
struct NamedItem
{
    QPointer<QWidget> widget;
    QString className;
    QVariant name;

    ItemArea show(STApplicationProxy& registry) const
    {
        if (!widget)
            proxy::raiseError(proxy::deadWidgetMessage);
        return registry.showItem(widget, className, name);
    }
};

NamedItem itemOf(QWidget* widget, const Request& request, int section)
{
    const QVariant name = valueFromText(request.utf8Text(section));
    if (!name.isValid())
        proxy::raiseError("Section %d is no value", section);
    return {widget, request.utf8Text(3), name};
}

// Only presses and clicks of the left button need an enabled item: a disabled one has a tool tip and a context menu, too.
bool needsEnabledItem(const QString& command)
{
    const QStringList words = wordsOf(command);
    return words.value(1) == QLatin1String("LeftButton") && words.value(0) != QLatin1String("MouseRelease")
        && words.value(0) != QLatin1String("MouseMove");
}

// Scrolls to the item and prepares it for the mouse command. Returns why a user could not perform the command there;
// empty when they could, and then `area` is the item's place.
QString prepareItem(const NamedItem& item, const QString& command, STApplicationProxy& registry, ItemArea& area)
{
    const QString unusable = whyNotUsable(*registry.proxyFor(item.widget, item.className));
    if (!unusable.isEmpty())
        return unusable;
    area = item.show(registry);
    if (!area.widget)
        proxy::raiseError(proxy::deadWidgetMessage);
    if (!area.isEnabled && needsEnabledItem(command))
        return proxy::disabledItem(item.name.toString());
    STWidgetProxy* part = registry.proxyFor(area.widget, QLatin1String("QWidget"));
    const QString obstacle = prepareForMouse(*part, {area.widget, mousePoint(area.rect, command)});
    if (!obstacle.isEmpty())
        return obstacle;
    const ItemArea now = item.show(registry);
    const bool hasMoved = now.widget != area.widget || now.rect != area.rect;
    return hasMoved ? QLatin1String("moving") : QString();
}

QByteArray scrollAndReply(QWidget* widget, const QRect& rect)
{
    const QPointer<QWidget> guarded(widget);
    const QString outside = scrollIntoView(guarded, rect);
    if (!outside.isEmpty())
        return notYet(outside);
    const QRect part = visiblePart(guarded, rect);
    return replyForRect(QRect(compat::mapToGlobal(guarded, part.topLeft()), part.size()));
}

// Runs `act` and returns its reply. For an error that can clear by itself, the reply is "9," and the reason.
template <class Act>
QByteArray withReason(Act act)
{
    try {
        return act();
    } catch (const STError& error) {
        if (error.notYet.isEmpty())
            throw;
        return notYet(error.notYet);
    }
}

} // namespace

QPoint mousePoint(const QRect& rect, const QString& command)
{
    const QStringList words = wordsOf(command);
    try {
        return proxy::pointAtShares(rect, words.value(2), words.value(3));
    } catch (const STError&) {
        return rect.center();
    }
}

QByteArray mouseOnItem(const Access& window, const Request& request, bool isForced, STApplicationProxy& registry)
{
    const Access access = locatedWidget(window, request);
    if (!access.widget)
        return access.refusal;
    const int itemSection = 6;
    const NamedItem item = itemOf(access.widget, request, itemSection);
    const QString command = valueFromText(request.utf8Text(4)).toString();
    const QByteArray reply = QByteArray("0,") + registry.resolveClassName(item.widget, item.className);
    if (isForced) {
        const ItemArea area = item.show(registry);
        registry.mouseActionAt(area, command);
        return reply;
    }
    return withReason([&] {
        ItemArea area = {nullptr, QRect(), false};
        const QString obstacle = prepareItem(item, command, registry, area);
        if (!obstacle.isEmpty())
            return notYet(obstacle);
        registry.mouseActionAt(area, command);
        return reply;
    });
}

QByteArray scrollToLocated(const Request& request, STApplicationProxy& registry)
{
    const Access access = locatedWidget(reachableWindow(windowName(request), QApplication::activeWindow()), request);
    if (!access.widget)
        return access.refusal;
    if (!access.widget->isVisible())
        return notYet(QLatin1String("hidden"));
    const int itemSection = 4;
    if (request.section(itemSection).isEmpty())
        return scrollAndReply(access.widget, access.widget->rect());
    const NamedItem item = itemOf(access.widget, request, itemSection);
    if (!access.widget->isEnabled())
        return notYet(QLatin1String("disabled"));
    return withReason([&] {
        const ItemArea area = item.show(registry);
        if (!area.widget)
            proxy::raiseError(proxy::deadWidgetMessage);
        return scrollAndReply(area.widget, area.rect);
    });
}

QByteArray readItem(const Request& request, STApplicationProxy& registry)
{
    const Access access = locatedWidget(anyWindow(windowName(request)), request);
    if (!access.widget)
        return access.refusal;
    const int itemSection = 4;
    const NamedItem item = itemOf(access.widget, request, itemSection);
    const STWidgetProxy::ItemState state = registry.itemState(item.widget, item.className, item.name);
    QByteArray reply = "0,j:";
    {
        locate::JsonObject object(reply);
        locate::appendJsonText(object.field("text"), state.text);
        QByteArray& states = object.field("states");
        states += '[';
        for (int i = 0; i < state.states.size(); ++i)
            states.append(i == 0 ? "\"" : ",\"").append(state.states.at(i).toLatin1()).append('"');
        states += ']';
    }
    return reply;
}

} // namespace agent
