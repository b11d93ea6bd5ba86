#include "identify/widgettree.h"

#include <QTextStream>
#include <QWidget>

void widgetTree(const QWidget* widget, int depth, QTextStream& out)
{
    out << '\f' << depth << (widget->isVisible() ? " V " : " N ") << widget->metaObject()->className() << " : \""
        << widget->objectName() << '"';
    for (const QObject* child : widget->children()) {
        if (child->isWidgetType())
            widgetTree(static_cast<const QWidget*>(child), depth + 1, out);
    }
}
