#pragma once

#include <QtCore/QByteArray>

#include <functional>

class STApplicationProxy;

namespace agent {

// Executes one request line and returns its one reply line, both without line end. Never throws.
QByteArray executeCommand(const QByteArray& line, STApplicationProxy& registry);

// The reply that the function makes, or the one to the error that it raises. Never throws.
QByteArray replyOf(const std::function<QByteArray()>& execute);

} // namespace agent
