#include "compat/embedding.h"

#include <QtCore/QPointer>

#if QT_VERSION >= 0x050000
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsProxyWidget>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>
#else
#include <QtGui/QApplication>
#include <QtGui/QGraphicsProxyWidget>
#include <QtGui/QGraphicsScene>
#include <QtGui/QGraphicsView>
#endif

namespace compat {

QGraphicsView* viewAround(const QWidget* widget)
{
    const QGraphicsProxyWidget* item = widget->window()->graphicsProxyWidget();
    const QList<QGraphicsView*> views = item && item->scene() ? item->scene()->views() : QList<QGraphicsView*>();
    return views.isEmpty() ? nullptr : views.first();
}

QPoint mapToGlobal(const QWidget* widget, const QPoint& point)
{
#if QT_VERSION < 0x050000
    if (const QGraphicsView* view = viewAround(widget)) {
        const QWidget* window = widget->window();
        const QPointF pointInScene
            = window->graphicsProxyWidget()->mapToScene(widget->mapTo(const_cast<QWidget*>(window), point));
        return mapToGlobal(view->viewport(), view->mapFromScene(pointInScene));
    }
#endif
    return widget->mapToGlobal(point);
}

QWidget* embeddedWidgetAt(const QWidget* viewport, const QPoint& globalPosition)
{
    const auto* view = qobject_cast<const QGraphicsView*>(viewport->parentWidget());
    if (!view || view->viewport() != viewport || !view->isInteractive())
        return nullptr;
    const QPoint point = viewport->mapFromGlobal(globalPosition);
    const QList<QGraphicsItem*> items = view->items(point);
    for (QGraphicsItem* item : items) {
        if (item->acceptedMouseButtons() == Qt::NoButton)
            continue;
        auto* proxy = qobject_cast<QGraphicsProxyWidget*>(item->toGraphicsObject());
        if (!proxy || !proxy->widget())
            return nullptr;
        QWidget* child = proxy->widget()->childAt(proxy->mapFromScene(view->mapToScene(point)).toPoint());
        return child ? child : proxy->widget();
    }
    return nullptr;
}

QRect scrollViewTo(QGraphicsView* view, const QWidget* widget, const QRect& rect)
{
    const QPointer<QGraphicsView> guarded(view);
    const QWidget* window = widget->window();
    const QRect place(widget->mapTo(const_cast<QWidget*>(window), rect.topLeft()), rect.size());
    const QRectF inScene = window->graphicsProxyWidget()->mapRectToScene(place);
    if (!view->viewport()->rect().contains(view->mapFromScene(inScene).boundingRect()))
        view->ensureVisible(inScene, 0, 0);
    return guarded ? guarded->mapFromScene(inScene).boundingRect() : QRect();
}

QWidget* popupInFrontOf(const QWidget* widget)
{
    QWidget* popup = QApplication::activePopupWidget();
    const QGraphicsView* view = popup ? nullptr : viewAround(widget);
    const QList<QGraphicsItem*> items = view ? view->scene()->items() : QList<QGraphicsItem*>();
    for (QGraphicsItem* item : items) {
        const auto* proxy = qobject_cast<QGraphicsProxyWidget*>(item->toGraphicsObject());
        if (proxy && proxy->widget() && proxy->isVisible() && proxy->widget()->windowType() == Qt::Popup)
            return proxy->widget();
    }
    return popup;
}

bool hasKeyboardFocus(const QWidget* widget)
{
    const QWidget* focus = QApplication::focusWidget();
    if (focus == widget || !focus || !qobject_cast<const QGraphicsView*>(focus))
        return focus && focus == widget;
    const QGraphicsView* view = viewAround(widget);
    return view == focus && !widget->focusProxy() && widget->hasFocus();
}

} // namespace compat
