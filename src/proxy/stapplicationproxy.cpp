#include "proxy/stapplicationproxy.h"

#include "proxy/proxytable.h"
#include "proxy/stwidgetproxy.h"

#include <QWidget>

namespace {

const char disabledMessage[] = "Error: widget \"%s\" of class \"%s\" is disabled.";
const char unsupportedMessage[] = "neither class \"%s\" nor one of its base classes is supported";
const char notDerivedMessage[] = "Widget is not derived from class ";

} // namespace

STApplicationProxy::STApplicationProxy()
{
    for (std::size_t i = 0; i < proxyTableSize; ++i)
        proxies.insert(QString::fromLatin1(proxyTable[i].qtClassName), proxyTable[i].make());
}

STApplicationProxy::~STApplicationProxy()
{
    qDeleteAll(proxies);
}

const char* STApplicationProxy::resolveClassName(QWidget* widget, const QString& requested)
{
    for (const QMetaObject* meta = widget->metaObject(); meta; meta = meta->superClass()) {
        const QString name = QString::fromLatin1(meta->className());
        if ((requested.isEmpty() || requested == name) && proxies.value(name))
            return meta->className();
    }
    // The text is the format itself: a "%%" in the request arrives as "%".
    raiseError(QLatin1String(notDerivedMessage) + requested);
}

STWidgetProxy* STApplicationProxy::proxyFor(QWidget* widget, const QString& requested)
{
    const char* className = resolveClassName(widget, requested);
    STWidgetProxy* proxy = proxies.value(QString::fromLatin1(className));
    if (!proxy)
        raiseError(unsupportedMessage, className);
    proxy->bind(widget, className);
    return proxy;
}

STWidgetProxy* STApplicationProxy::preparedProxy(QWidget* widget, const QString& className)
{
    STWidgetProxy* proxy = proxyFor(widget, className);
    const QWidget* target = proxy->checkedWidget(nullptr);
    if (!target->isEnabled())
        raiseError(disabledMessage, target->objectName(), target->metaObject()->className());
    proxy->prepareWidget();
    proxy->processEventsEnabled = true;
    return proxy;
}

void STApplicationProxy::activate(
    QWidget* widget, const QString& className, const QVariant& value, const QVariant& option)
{
    preparedProxy(widget, className)->activate(value, option);
}

void STApplicationProxy::enter(QWidget* widget, const QString& className, const QVariant& value)
{
    preparedProxy(widget, className)->enter(value);
}

void STApplicationProxy::mouseAction(QWidget* widget, const QString& className, const QVariant& command)
{
    preparedProxy(widget, className)->mouseAction(command);
}

QVariant STApplicationProxy::property(
    QWidget* widget, const QString& className, const QString& name, const QVariant& argument)
{
    return proxyFor(widget, className)->property(name.toLatin1().constData(), argument);
}
