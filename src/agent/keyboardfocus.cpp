#include "agent/keyboardfocus.h"

#include "compat/embedding.h"
#include "compat/stacking.h"

#include <QApplication>
#include <QGraphicsView>
#include <QPointer>
#include <QWidget>

namespace agent {

namespace {

// The widget that gets the focus when this one is to have it.
const QWidget* focusTaker(const QWidget* widget)
{
    while (widget->focusProxy())
        widget = widget->focusProxy();
    return widget;
}

bool hasFocus(const QWidget* widget)
{
    const QWidget* focus = widget->window()->focusWidget();
    return focus && (focus == focusTaker(widget) || widget->isAncestorOf(focus));
}

} // namespace

const char focusLostReason[] = "gives the keyboard focus away";

QString focusRefusal(const QWidget* widget)
{
    const QWidget* taker = focusTaker(widget);
    const QWidget* popup = compat::popupInFrontOf(widget);
    if (!widget->isEnabled() || !taker->isEnabled())
        return QLatin1String("disabled");
    if (!taker->isVisible())
        return QLatin1String("hidden");
    if (popup && widget->window() != popup)
        return QLatin1String("behind a popup");
    const bool refuses = taker->focusPolicy() == Qt::NoFocus && !hasFocus(widget);
    return refuses ? QString::fromLatin1("takes no keyboard focus") : QString();
}

bool takeFocus(QWidget* widget, Qt::FocusReason reason)
{
    const QPointer<QWidget> guarded(widget);
    const QPointer<QWidget> view(compat::viewAround(widget));
    if (view && !view->hasFocus())
        compat::setFocus(view, reason);
    if (guarded && !hasFocus(widget))
        compat::setFocus(widget, reason);
    return guarded && hasFocus(guarded);
}

} // namespace agent
