#pragma once

#include <QtCore/QByteArray>

class STApplicationProxy;

namespace agent {

class Request;

// The commands on a window as a whole. Each replies with the window's title.

// Sections: window. Says whether the user could reach it.
QByteArray checkWindow(const Request& request, STApplicationProxy& registry);
// Sections: window, x, y: the new position of the window's frame on the screen, in pixels.
QByteArray moveWindow(const Request& request, STApplicationProxy& registry);
// Sections: window, width, height: the new size of what is inside the frame, in pixels.
QByteArray resizeWindow(const Request& request, STApplicationProxy& registry);

} // namespace agent
