#include "agent/readiness.h"

#include "compat/embedding.h"
#include "compat/reachable.h"
#include "compat/stacking.h"
#include "compat/waiting.h"
#include "proxy/heldmouse.h"
#include "proxy/sterror.h"

#include <QApplication>
#include <QGraphicsView>
#include <QPointer>
#include <QScrollArea>

namespace agent {

namespace {

QWidget* living(const QPointer<QWidget>& widget)
{
    if (!widget)
        proxy::raiseError(proxy::deadWidgetMessage);
    return widget;
}

// Class and object name, as far as there is one.
QString described(const QWidget* widget)
{
    return (QLatin1String(widget->metaObject()->className()) + QLatin1Char(' ') + widget->objectName()).trimmed();
}

QString coveredBy(const QWidget* other)
{
    return proxy::coveredBy(described(other));
}

QRect placeInWindow(const QWidget* widget)
{
    return QRect(widget->mapTo(widget->window(), QPoint(0, 0)), widget->size());
}

bool handleEventsAndDetectMove(const QPointer<QWidget>& widget)
{
    const QRect place = placeInWindow(widget);
    const QRect windowPlace = widget->window()->geometry();
    compat::processEvents();
    living(widget);
    return placeInWindow(widget) != place || widget->window()->geometry() != windowPlace;
}

// The outermost ancestor that does not contain a point of the widget; null where none of them cuts the point off.
const QWidget* clippingWidget(const QWidget* widget, QPoint point)
{
    const QWidget* clipping = nullptr;
    for (const QWidget* around = widget;; around = around->parentWidget()) {
        if (!around->rect().contains(point) && around != widget)
            clipping = around;
        if (around->isWindow())
            return clipping;
        point = around->mapToParent(point);
    }
}

QScrollArea* areaAround(const QWidget* viewport)
{
    auto* area = qobject_cast<QScrollArea*>(viewport->parentWidget());
    return area && area->viewport() == viewport ? area : nullptr;
}

bool isInside(const QWidget* widget, const QWidget* outer)
{
    return widget && outer && (widget == outer || outer->isAncestorOf(widget));
}

// Scrolls the areas around the widget, the innermost first. That runs the application's code, which may give the widget
// another parent.
void scrollTo(const QPointer<QWidget>& widget, const QRect& rect)
{
    QPointer<QWidget> around(widget.data());
    while (around && !around->isWindow()) {
        const QPointer<QScrollArea> area(areaAround(around));
        const bool isScrolled = area && isInside(widget, area->widget()); // the area's own parts are not
        if (isScrolled && !around->rect().contains(rect.translated(widget->mapTo(around, QPoint(0, 0))))) {
            const int margin = 1; // without one, Qt 4 leaves the last pixel out
            area->ensureWidgetVisible(widget, margin, margin);
            if (area && isInside(widget, area->widget())) {
                const QPoint inside = widget->mapTo(area->widget(), rect.center());
                area->ensureVisible(inside.x(), inside.y(), 0, 0);
            }
        }
        around = around ? around->parentWidget() : nullptr;
    }
    living(widget);
}

// Why the mouse would miss the widget at a point, as far as its own window goes; empty if it would not.
QString findObstacleInWindow(const QWidget* widget, const QPoint& point)
{
    const QWidget* window = widget->window();
    const QWidget* under = window->childAt(widget->mapTo(const_cast<QWidget*>(window), point));
    if (!under)
        under = window;
    if (under == widget || widget->isAncestorOf(under))
        return QString();
    return under->isAncestorOf(widget) ? QLatin1String("not reached by the mouse") : coveredBy(under);
}

bool belongsTo(const QWidget* widget, const QWidget* owner)
{
    while (widget && widget != owner)
        widget = widget->parentWidget();
    return widget != nullptr;
}

// Whether a popup is the widget's own: the list of a combo box, a menu of a button, or a field's list of completions,
// whose focus proxy is the field.
bool isPopupOf(const QWidget* popup, const QWidget* widget)
{
    return belongsTo(popup, widget) || belongsTo(popup->focusProxy(), widget);
}

QString waitAndFindObstacle(const QPointer<QWidget>& widget, const QPoint& point);

// The same for a widget that a graphics view embeds: another item of the scene can be in front, or another widget in
// front of the view.
QString findObstacleInView(const QWidget* widget, const QPoint& point, QGraphicsView* view)
{
    const QPoint globalPosition = compat::mapToGlobal(widget, point);
    const QWidget* under = compat::embeddedWidgetAt(view->viewport(), globalPosition);
    if (!under)
        return coveredBy(view);
    if (!isInside(under, widget))
        return coveredBy(under);
    const QPoint position = view->viewport()->mapFromGlobal(globalPosition);
    const QString covers = findObstacleInWindow(view->viewport(), position);
    return covers.isEmpty() ? waitAndFindObstacle(view->viewport(), position) : covers;
}

// The same as far as other windows go: an open popup gets all input, and another window can be above this one. Waits
// for the window manager to raise this one.
QString waitAndFindObstacle(const QPointer<QWidget>& widget, const QPoint& point)
{
    const QWidget* popup = QApplication::activePopupWidget();
    if (popup && popup != widget->window())
        return isPopupOf(popup, widget) ? QString() : coveredBy(popup);
    if (proxy::HeldMouse::instance().isWithinMove())
        return QString(); // a picture of what is dragged may be in front
    if (QGraphicsView* view = compat::viewAround(widget))
        return findObstacleInView(widget, point, view);
    const QPoint position = compat::mapToGlobal(widget, point);
    compat::waitUntilInFront(widget, position);
    living(widget);
    const QWidget* under = compat::widgetAt(position);
    if (!under)
        return QLatin1String("hidden by another window");
    return under->window() == widget->window() ? findObstacleInWindow(widget, point) : coveredBy(under);
}

} // namespace

QString whyNotUsable(STWidgetProxy& proxy)
{
    const QWidget* target = proxy.checkedWidget(nullptr);
    if (!target->isVisible())
        return QLatin1String("hidden");
    return target->isEnabled() ? QString() : QLatin1String("disabled");
}

QString scrollIntoView(QWidget* target, const QRect& rect)
{
    const QPointer<QWidget> widget(target);
    scrollTo(widget, rect);
    const QWidget* clipping = clippingWidget(widget, rect.center());
    if (QGraphicsView* view = clipping ? nullptr : compat::viewAround(widget)) {
        const QPointer<QWidget> viewport(view->viewport());
        const QRect shown = compat::scrollViewTo(view, widget, rect);
        living(widget);
        return scrollIntoView(living(viewport), shown);
    }
    if (!clipping)
        return QString();
    return clipping->isWindow() ? QLatin1String("outside its window") : QLatin1String("outside ") + described(clipping);
}

QRect visiblePart(const QWidget* widget, QRect rect)
{
    QPoint offset;
    for (const QWidget* around = widget;; around = around->parentWidget()) {
        rect = rect.intersected(around->rect().translated(-offset));
        if (around->isWindow())
            return rect;
        offset = around->mapToParent(offset);
    }
}

QString prepareForMouse(STWidgetProxy& proxy, const STWidgetProxy::MousePlace& place)
{
    const QString unusable = whyNotUsable(proxy);
    if (!unusable.isEmpty())
        return unusable;
    const QPointer<QWidget> widget(place.widget);
    if (handleEventsAndDetectMove(widget))
        return QLatin1String("moving");
    const QString outside = scrollIntoView(widget, QRect(place.point, QSize(1, 1)));
    if (!outside.isEmpty())
        return outside;
    const QString covers = findObstacleInWindow(widget, place.point);
    if (!covers.isEmpty())
        return covers;
    proxy.prepareWidget();
    living(widget);
    return waitAndFindObstacle(widget, place.point);
}

} // namespace agent
