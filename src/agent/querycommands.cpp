#include "agent/querycommands.h"

#include "agent/request.h"
#include "agent/widgetaccess.h"
#include "agent/wiretext.h"
#include "agent/wirevalue.h"
#include "compat/children.h"
#include "compat/embedding.h"
#include "compat/stacking.h"
#include "compat/variant.h"
#include "compat/widgets.h"
#include "identify/objectname.h"
#include "identify/widgetlookup.h"
#include "identify/widgetpath.h"
#include "identify/widgettree.h"
#include "proxy/stapplicationproxy.h"
#include "proxy/sterror.h"

#include <QApplication>
#include <QCursor>
#include <QIODevice>
#include <QPointer>
#include <QStringList>
#include <QSystemTrayIcon>
#include <QTextStream>
#include <QWidget>

#include <algorithm>

namespace agent {

namespace {

// Inner parts of composite widgets; the command reports the composite.
struct CompositePart
{
    const char* partClass; // exactly
    const char* compositeClass; // or derived from it
};

const CompositePart compositeParts[] = {
    {"QLineEdit", "QAbstractSpinBox"},
    {"QWidget", "QTextEdit"},
    {"QWidget", "QTreeWidget"},
    {"QWidget", "QListWidget"},
    {"QWidget", "QTableWidget"},
    {"QWidget", "QTreeView"},
    {"QWidget", "QListView"},
    {"QWidget", "QTableView"},
    {"QToolBoxButton", "QToolBox"},
    {"QAbstractScrollAreaWidget", "Q3ListView"},
    {"QAbstractScrollAreaWidget", "Q3ListBox"},
    {"QAbstractScrollAreaWidget", "Q3Table"},
    {"VCNumeric", "VCFrequency"},
};

QWidget* compositeOf(QWidget* widget)
{
    QWidget* parent = widget->parentWidget();
    if (!parent)
        return widget;
    for (const CompositePart& part : compositeParts) {
        if (identify::isA(widget, part.partClass) && parent->inherits(part.compositeClass))
            return parent;
    }
    return widget;
}

// The names from the window down to the widget.
QString pathFromWindow(const QWidget* widget)
{
    const QWidget* window = widget->window();
    QString path = identify::getName(widget);
    while (widget != window) {
        widget = widget->parentWidget();
        path.prepend(identify::getName(widget) + QLatin1Char('/'));
    }
    return path;
}

QByteArray objectReply(char code, const Request& request, const QByteArray& outcome)
{
    return QByteArray(1, code) + ",Object (" + request.section(2) + outcome;
}

int visibleCount(const QList<QWidget*>& widgets)
{
    return static_cast<int>(
        std::count_if(widgets.begin(), widgets.end(), [](const QWidget* widget) { return widget->isVisible(); }));
}

} // namespace

QByteArray listWindows(const Request&, STApplicationProxy&)
{
    QString reply = QLatin1String("0,l:");
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (const QWidget* widget : widgets) {
        if (!widget->isWindow() || !widget->isVisible())
            continue;
        const bool modal = widget->windowModality() != Qt::NonModal;
        reply += QLatin1Char('\f') + QLatin1String(widget->metaObject()->className())
            + QLatin1String(modal ? " (M) : \"" : " : \"") + widget->windowTitle() + QLatin1Char('"');
    }
    return reply.toLatin1();
}

QByteArray windowTree(const Request& request, STApplicationProxy&)
{
    const Access window = anyWindow(request.section(1));
    if (!window.widget)
        return window.refusal;
    QString reply = QLatin1String("0,l:");
    QTextStream stream(&reply, QIODevice::Append);
    identify::widgetTree(window.widget, 0, stream);
    stream.flush();
    return reply.toLatin1();
}

QByteArray identifyWidgetAtCursor(const Request&, STApplicationProxy& registry)
{
    QWidget* under = QApplication::widgetAt(QCursor::pos());
    if (!under)
        return "?,,,,";
    QWidget* widget = compositeOf(under);
    QWidget* window = widget->window();

    QString windowName = window->objectName();
    if (windowName.isEmpty() && window->windowModality() != Qt::NonModal)
        windowName = QLatin1String("ActiveModalWidget");

    const QString servedClass
        = registry.property(widget, QString(), QLatin1String("silkClassName"), QVariant()).toString();
    // A menu is a popup: tests address it as such, not by a path.
    if (servedClass == QLatin1String("QMenu"))
        return "?,QMenu,1,1,ActivePopupWidget," + windowName.toLatin1() + ','
            + encodehex(QLatin1String("Widget:ActivePopupWidget")).toLatin1();

    QList<QWidget*> namesakes;
    identify::widgetList(namesakes, window, identify::searchName(identify::getName(widget)));
    return (QStringList() << QLatin1String("?") << servedClass << QString::number(namesakes.size())
                          << QString::number(visibleCount(namesakes)) << pathFromWindow(widget) << windowName
                          << encodehex(window->windowTitle()))
        .join(QLatin1String(","))
        .toLatin1();
}

QByteArray locateWidget(const Request& request, STApplicationProxy&)
{
    const Access window = anyWindow(request.section(1));
    if (!window.widget)
        return window.refusal;
    const identify::WidgetPath path(request.text(2));
    const QString name = identify::searchName(path.lastElement());
    QList<QWidget*> candidates = compat::findChildren<QWidget>(window.widget, name);
    if (window.widget->objectName() == name)
        candidates.append(window.widget);

    const Access found = oneWidget(identify::chooseWidget(candidates, window.widget, path), request.section(2));
    return found.widget ? putCursorOnto(found.widget) : found.refusal;
}

QByteArray putCursorOnto(QWidget* target)
{
    const QPointer<QWidget> widget(target);
    const QByteArray reply = QByteArray("0,") + widget->metaObject()->className();
    compat::activateWindow(widget);
    if (widget)
        widget->window()->raise();
    if (widget)
        compat::setCursorPosition(compat::mapToGlobal(widget, QPoint(0, 0)));
    return reply;
}

QByteArray locateTrayIcon(const Request& request, STApplicationProxy&)
{
    // Never null: to findChildren() a null name means "any".
    const QString name = request.section(2).isEmpty() ? QString(QLatin1String("")) : request.text(2);
    const QList<QSystemTrayIcon*> icons = compat::findChildren<QSystemTrayIcon>(qApp, name);
    const QSystemTrayIcon* visible = nullptr;
    int count = 0;
    for (const QSystemTrayIcon* icon : icons) {
        if (icon->isVisible()) {
            visible = icon;
            ++count;
        }
    }
    if (count == 1) {
        const QRect rect = visible->geometry();
        if (rect.left() > rect.right() || rect.top() > rect.bottom())
            proxy::raiseError("Rectangle not defined");
        return replyForRect(rect);
    }
    if (icons.isEmpty())
        return objectReply('2', request, ") not found");
    if (count > 1)
        return objectReply('7', request, ") visible," + QByteArray::number(count));
    return objectReply('6', request, ") not visible");
}

} // namespace agent
