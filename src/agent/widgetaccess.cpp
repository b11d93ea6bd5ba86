#include "agent/widgetaccess.h"

#include "identify/widgetlookup.h"
#include "identify/windowlookup.h"

#include <QApplication>

namespace agent {

namespace {

Access refused(const QByteArray& reply)
{
    Access access;
    access.refusal = reply;
    return access;
}

// `name` is as long as the request may be: the reply is made of it in one piece.
QByteArray reply(const char* beginning, const QByteArray& name, const QByteArray& outcome)
{
    QByteArray text(beginning);
    text.reserve(static_cast<int>(text.size() + name.size() + outcome.size()));
    return text.append(name).append(outcome);
}

Access notModal(const QByteArray& name)
{
    return refused(reply("4,Window (", name, ") not active modal"));
}

WrittenName fromLatin1(const QByteArray& name)
{
    return {QString::fromLatin1(name.constData(), static_cast<int>(name.size())), name};
}

} // namespace

Access anyWindow(const QByteArray& latin1Name)
{
    return anyWindow(fromLatin1(latin1Name));
}

Access anyWindow(const WrittenName& name)
{
    QWidget* window = nullptr;
    const int count = identify::findWindow(window, name.text);
    if (count < 1)
        return refused(reply("2,Window (", name.bytes, ") not found"));
    if (count > 1)
        return refused(reply("3,Window (", name.bytes, ") visible," + QByteArray::number(count)));
    Access access;
    access.widget = window;
    return access;
}

Access reachableWindow(const QByteArray& latin1Name, const QWidget* exemptWindow)
{
    return reachableWindow(fromLatin1(latin1Name), exemptWindow);
}

Access reachableWindow(const WrittenName& name, const QWidget* exemptWindow)
{
    const Access access = anyWindow(name);
    if (!access.widget)
        return access;
    switch (identify::activityError(access.widget, exemptWindow)) {
    case identify::WindowNotActivePopupError:
        return refused(reply("4,Window (", name.bytes, ") not active popup"));
    case identify::WindowNotActiveModalError:
        return notModal(name.bytes);
    default:
        return access;
    }
}

Access frontWindow(const QByteArray& name)
{
    const Access access = reachableWindow(name, nullptr);
    const QWidget* modal = QApplication::activeModalWidget();
    return !access.widget || !modal || access.widget == modal ? access : notModal(name);
}

Access oneWidget(const identify::WidgetLookup& lookup, const QByteArray& path)
{
    switch (lookup.error) {
    case identify::WidgetAmbiguousError:
        return refused(reply("7,Widget (", path, ") visible," + QByteArray::number(lookup.visibleCount)));
    case identify::WidgetNotVisibleError:
        return refused(reply("6,Widget (", path, ") not visible"));
    case identify::WidgetNotFoundError:
        return refused(reply("5,Widget (", path, ") not found"));
    default:
        Access access;
        access.widget = lookup.widget;
        return access;
    }
}

} // namespace agent
