#pragma once

#include <QtCore/QByteArray>

class STApplicationProxy;

namespace agent {

// Executes one request line and returns its one reply line, both without line end. Never throws.
QByteArray executeCommand(const QByteArray& line, STApplicationProxy& registry);

} // namespace agent
