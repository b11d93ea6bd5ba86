#include "identify/widgettree.h"

#include <QTextStream>
#include <QWidget>

namespace identify {

namespace {

void appendTree(const QWidget* widget, int depth, QString& text)
{
    text += QLatin1Char('\f');
    text += QString::number(depth);
    text += QLatin1String(widget->isVisible() ? " V " : " N ");
    text += QLatin1String(widget->metaObject()->className());
    text += QLatin1String(" : \"");
    text += widget->objectName();
    text += QLatin1Char('"');
    for (const QObject* child : widget->children()) {
        if (child && child->isWidgetType()) // null: it is being deleted with its parent
            appendTree(static_cast<const QWidget*>(child), depth + 1, text);
    }
}

} // namespace

void widgetTree(const QWidget* widget, int depth, QTextStream& out)
{
    // The stream gets the text in one piece: each write to it costs more than a whole record does here.
    QString text;
    appendTree(widget, depth, text);
    out << text;
}

} // namespace identify
