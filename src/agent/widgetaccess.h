#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

class QWidget;

namespace identify {
struct WidgetLookup;
}

namespace agent {

// A window or widget that a request names, or the reply that says why there is none. Names and paths stand in the
// replies as the request had them.
struct Access
{
    QWidget* widget = nullptr; // null: `refusal` is the reply
    QByteArray refusal;
};

// A name, and the bytes by which the request wrote it, which replies repeat.
struct WrittenName
{
    QString text;
    QByteArray bytes;
};

// The one window of that name, whatever else is open. Refuses with code 2 or 3.
Access anyWindow(const WrittenName& name);
Access anyWindow(const QByteArray& latin1Name);

// The one window of that name, unless a popup other than it and `exemptWindow`, or another modal widget, is open: code 4.
Access reachableWindow(const WrittenName& name, const QWidget* exemptWindow);
Access reachableWindow(const QByteArray& latin1Name, const QWidget* exemptWindow);

// The same for commands that are about the window itself. While a modal widget is active they refuse every other window,
// also its own popup, in which widgets can be used.
Access frontWindow(const QByteArray& name);

// The widget that the lookup of the path found. Refuses with code 5, 6 or 7.
Access oneWidget(const identify::WidgetLookup& lookup, const QByteArray& path);

} // namespace agent
