#include "proxy/stapplicationproxy.h"

#include "proxy/proxytable.h"

#include <QWidget>

#include <algorithm>

namespace {

const char disabledMessage[] = "Error: widget \"%s\" of class \"%s\" is disabled.";
const char unsupportedMessage[] = "neither class \"%s\" nor one of its base classes is supported";
const char notDerivedMessage[] = "Widget is not derived from class ";

} // namespace

STApplicationProxy::STApplicationProxy()
{
    std::for_each(proxy::proxyTable, proxy::proxyTable + proxy::proxyTableSize,
        [this](const proxy::ProxyTableRow& row) { proxies.emplace(row.qtClassName, row.make()); });
}

STApplicationProxy::~STApplicationProxy()
{
    for (const auto& proxy : proxies)
        delete proxy.second;
}

const char* STApplicationProxy::resolveClassName(QWidget* widget, const QString& requested)
{
    for (const QMetaObject* meta = widget->metaObject(); meta; meta = meta->superClass()) {
        const char* className = meta->className();
        if ((requested.isEmpty() || requested == QLatin1String(className)) && proxies.count(className) > 0)
            return className;
    }
    // The text is the format itself: a "%%" in the request arrives as "%".
    proxy::raiseError(QLatin1String(notDerivedMessage) + requested);
}

STWidgetProxy* STApplicationProxy::proxyFor(QWidget* widget, const QString& requested)
{
    const char* className = resolveClassName(widget, requested);
    const auto proxy = proxies.find(className);
    if (proxy == proxies.end())
        proxy::raiseError(unsupportedMessage, className);
    proxy->second->bind(widget, className);
    return proxy->second;
}

STWidgetProxy* STApplicationProxy::prepareProxy(QWidget* widget, const QString& className)
{
    STWidgetProxy* proxy = proxyFor(widget, className);
    const QWidget* target = proxy->checkedWidget(nullptr);
    if (!target->isEnabled())
        proxy::raiseError(disabledMessage, target->objectName(), target->metaObject()->className());
    proxy->prepareWidget();
    proxy->startProcessingEvents();
    return proxy;
}

void STApplicationProxy::activate(
    QWidget* widget, const QString& className, const QVariant& value, const QVariant& option)
{
    prepareProxy(widget, className)->activate(value, option);
}

void STApplicationProxy::activateFound(
    QWidget* widget, const QString& className, const QVariant& value, const QVariant& option)
{
    prepareProxy(widget, className)->activateFound(value, option);
}

void STApplicationProxy::enter(QWidget* widget, const QString& className, const QVariant& value)
{
    prepareProxy(widget, className)->enter(value);
}

void STApplicationProxy::mouseAction(QWidget* widget, const QString& className, const QVariant& command)
{
    prepareProxy(widget, className)->mouseAction(command);
}

STWidgetProxy::ItemArea STApplicationProxy::showItem(QWidget* widget, const QString& className, const QVariant& item)
{
    return prepareProxy(widget, className)->showItem(item);
}

void STApplicationProxy::mouseActionAt(const STWidgetProxy::ItemArea& area, const QString& command)
{
    if (!area.widget)
        proxy::raiseError(proxy::deadWidgetMessage);
    prepareProxy(area.widget, QLatin1String("QWidget"))
        ->mouseActionIn(area.rect, command, STWidgetProxy::MouseStyle::LikeUser);
}

STWidgetProxy::ItemState STApplicationProxy::itemState(QWidget* widget, const QString& className, const QVariant& item)
{
    return proxyFor(widget, className)->itemState(item);
}

void STApplicationProxy::wheelAction(QWidget* widget, const QString& command)
{
    prepareProxy(widget, QString())->wheelAction(command);
}

void STApplicationProxy::prepare(QWidget* widget)
{
    prepareProxy(widget, QString());
}

QVariant STApplicationProxy::property(
    QWidget* widget, const QString& className, const QString& name, const QVariant& argument)
{
    return proxyFor(widget, className)->property(name.toLatin1().constData(), argument);
}
