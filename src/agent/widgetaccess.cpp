#include "agent/widgetaccess.h"

#include "identify/widgetlookup.h"
#include "identify/windowlookup.h"

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
        return refused(windowReply("4", name, ") not active modal"));
    default:
        return access;
    }
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
