#pragma once

#include <QtCore/QByteArray>

class QWidget;
class STApplicationProxy;

namespace agent {

class Request;

// The commands that find things. Each returns the reply line.

// Sections: none. The visible windows: class name, " (M)" if modal, title.
QByteArray listWindows(const Request& request, STApplicationProxy& registry);
// Sections: window. The window's widgets, depth first.
QByteArray windowTree(const Request& request, STApplicationProxy& registry);
// Sections: none. Class, number of widgets of this name, how many of them are visible, path, window name and, in
// hexadecimal, window title of the widget under the cursor.
QByteArray identifyWidgetAtCursor(const Request& request, STApplicationProxy& registry);
// Sections: window, path. Puts the cursor on the widget's top-left corner and replies with its class name. Unlike
// the widget commands it knows object names only, no derived ones.
QByteArray locateWidget(const Request& request, STApplicationProxy& registry);
// The second half of that command, for the widget that it has found; returns its reply.
QByteArray putCursorOnto(QWidget* widget);
// Sections: ignored, object name. The screen rectangle of a tray icon.
QByteArray locateTrayIcon(const Request& request, STApplicationProxy& registry);

} // namespace agent
