#pragma once

#include <QtCore/QByteArray>

class STApplicationProxy;

namespace agent {

class Request;

// The commands on one widget. Sections 1 to 3 are window, path and class (the class under which the widget is to be
// served; empty for its own). The acting ones reply with the class under which it was served. A last path element
// "ActivePopupWidget" stands for the open popup, and for the acting commands "FocusWidget" for the focus widget.

// Section 4: value, section 5: option; typed values in hexadecimal.
QByteArray activateWidget(const Request& request, STApplicationProxy& registry);
// Section 4: value; a typed value in hexadecimal.
QByteArray enterWidget(const Request& request, STApplicationProxy& registry);
// Section 4: mouse command; a typed value in hexadecimal. Works behind an open popup, too.
QByteArray mouseWidget(const Request& request, STApplicationProxy& registry);
// Section 4: property name, section 5: argument, "s:" and text; not in hexadecimal. Works behind popups and modal
// widgets. Replies with the value.
QByteArray readProperty(const Request& request, STApplicationProxy& registry);

} // namespace agent
