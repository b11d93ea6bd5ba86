#include "proxy/latemovefilter.h"

#include <QMouseEvent>
#include <QWidget>

void LateMoveFilter::protect(QWidget* pressed)
{
    stop();
    widget = pressed;
    widget->installEventFilter(this);
}

void LateMoveFilter::stop()
{
    if (widget)
        widget->removeEventFilter(this);
    widget = nullptr;
}

bool LateMoveFilter::eventFilter(QObject*, QEvent* event)
{
    return event->type() == QEvent::MouseMove && event->spontaneous()
        && static_cast<QMouseEvent*>(event)->buttons() == Qt::NoButton;
}
