#pragma once

#include <QtCore/QByteArray>

class STApplicationProxy;

namespace agent {

class Request;

// An extension. Sections: window, locator. Replies with all that the window, or what the locator finds, shows, as JSON.
QByteArray takeSnapshot(const Request& request, STApplicationProxy& registry);

} // namespace agent
