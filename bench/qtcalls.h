#pragma once

#include <QtCore/QByteArray>

class QWidget;

// The calls of Qt that each of the twelve commands needs, as an application would make them without the agent: the floor
// under the command's work, beside the echo, which is the floor under its way there and back. False for an unknown
// command.
bool callQt(const QByteArray& command, QWidget* window);
