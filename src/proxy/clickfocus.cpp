#include "proxy/clickfocus.h"

#include "compat/embedding.h"

#include <QWidget>

namespace proxy {

bool acceptsClickFocus(const QWidget* widget)
{
    const QWidget* proxy = widget->focusProxy();
    return (widget->focusPolicy() & Qt::ClickFocus) == Qt::ClickFocus
        || (proxy && (proxy->focusPolicy() & Qt::ClickFocus) == Qt::ClickFocus);
}

QWidget* embeddedFocusTaker(const QWidget* target, const QPoint& position)
{
    QWidget* widget = compat::embeddedWidgetAt(target, position);
    while (widget && !(widget->isEnabled() && acceptsClickFocus(widget)))
        widget = widget->isWindow() ? nullptr : widget->parentWidget();
    return widget;
}

} // namespace proxy
