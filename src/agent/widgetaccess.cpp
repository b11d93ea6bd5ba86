#include "agent/widgetaccess.h"

#include "identify/widgetlookup.h"
#include "identify/windowlookup.h"

#include <QApplication>

namespace {

Access refused(const QString& reply)
{
    Access access;
    access.refusal = reply;
    return access;
}

QString windowReply(const char* code, const QString& name, const char* outcome)
{
    return QLatin1String(code) + QLatin1String(",Window (") + name + QLatin1String(outcome);
}

Access notModal(const QString& name)
{
    return refused(windowReply("4", name, ") not active modal"));
}

} // namespace

Access anyWindow(const QString& name)
{
    QWidget* window = nullptr;
    const int count = findWindow(window, name);
    if (count < 1)
        return refused(windowReply("2", name, ") not found"));
    if (count > 1)
        return refused(windowReply("3", name, ") visible,") + QString::number(count));
    Access access;
    access.widget = window;
    return access;
}

Access reachableWindow(const QString& name, const QWidget* excused)
{
    const Access access = anyWindow(name);
    if (!access.widget)
        return access;
    switch (activityError(access.widget, excused)) {
    case WindowNotActivePopupError:
        return refused(windowReply("4", name, ") not active popup"));
    case WindowNotActiveModalError:
        return notModal(name);
    default:
        return access;
    }
}

Access frontWindow(const QString& name)
{
    const Access access = reachableWindow(name, nullptr);
    const QWidget* modal = QApplication::activeModalWidget();
    return !access.widget || !modal || access.widget == modal ? access : notModal(name);
}

Access oneWidget(const WidgetLookup& lookup, const QString& path)
{
    const QString subject = QLatin1String(",Widget (") + path;
    switch (lookup.error) {
    case WidgetAmbiguousError:
        return refused(QLatin1Char('7') + subject + QLatin1String(") visible,") + QString::number(lookup.visibleCount));
    case WidgetNotVisibleError:
        return refused(QLatin1Char('6') + subject + QLatin1String(") not visible"));
    case WidgetNotFoundError:
        return refused(QLatin1Char('5') + subject + QLatin1String(") not found"));
    default:
        Access access;
        access.widget = lookup.widget;
        return access;
    }
}
