#pragma once

#include <QtCore/QByteArray>

class STApplicationProxy;

namespace agent {

class Request;

// The extensions that are commands on one widget which a locator finds. Sections 1 and 2 are the window and the locator,
// section 3 is the class of the commands. The acting ones check before they act whether a user could, and reply "9," and
// the reason if not; a last section "force" has them act as the command of their number does.

// No further sections. The snapshot of the widget, as the protocol describes it.
QByteArray takeSnapshot(const Request& request, STApplicationProxy& registry);
// No further sections. Puts the cursor onto the widget.
QByteArray locateLocated(const Request& request, STApplicationProxy& registry);
// Section 4: value, section 5: option, section 6: "force".
QByteArray activateLocated(const Request& request, STApplicationProxy& registry);
// Section 4: value, section 5: "force".
QByteArray enterLocated(const Request& request, STApplicationProxy& registry);
// Section 4: property name, section 5: argument.
QByteArray readLocated(const Request& request, STApplicationProxy& registry);
// Section 4: mouse command, section 5: "force", section 6: the item of the widget that the command is for, as +5 names it.
QByteArray mouseLocated(const Request& request, STApplicationProxy& registry);
} // namespace agent
