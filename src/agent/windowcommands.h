#pragma once

#include <QtCore/QString>

class Request;
class STApplicationProxy;

// The commands on a window as a whole. Each replies with the window's title.

// Sections: window. Says whether the user could reach it.
QString checkWindow(const Request& request, STApplicationProxy& registry);
// Sections: window, x, y: the new position of the window's frame on the screen, in pixels.
QString moveWindow(const Request& request, STApplicationProxy& registry);
// Sections: window, width, height: the new size of what is inside the frame, in pixels.
QString resizeWindow(const Request& request, STApplicationProxy& registry);
