#pragma once

#include <QtCore/QByteArray>

class STApplicationProxy;

namespace agent {

class Request;

// An extension of the protocol: a request whose first section is "+" and a name. Its further sections are texts, in UTF-8
// as hexadecimal.
using ExtensionFunction = QByteArray (*)(const Request& request, STApplicationProxy& registry);

// The extension with that name, which begins with "+"; null when there is none.
ExtensionFunction extensionNamed(const QByteArray& name);

} // namespace agent
