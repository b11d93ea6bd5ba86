#pragma once

#include <QtCore/QByteArray>

class QWidget;

// What Qt itself is asked for by each of the twelve commands, as an application would do it without the agent: the floor
// under the command's work, beside the echo, which is the floor under its way there and back. False for an unknown
// command.
bool callQt(const QByteArray& command, QWidget* window);
