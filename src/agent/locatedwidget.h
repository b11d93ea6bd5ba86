#pragma once

#include "agent/widgetaccess.h"

namespace agent {

class Request;

// Section 1 of an extension's request: the window's name, and how it was written.
WrittenName windowName(const Request& request);

// The one widget in the window that the locator in section 2 finds; the window itself when the section is empty. Refuses
// with code 5, 6 or 7, or as the window was refused.
Access locatedWidget(const Access& window, const Request& request);

// The refusal with code 9: nothing has been done, and the same request may succeed a little later.
QByteArray notYet(const QString& reason);

} // namespace agent
