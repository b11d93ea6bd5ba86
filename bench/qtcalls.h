#pragma once

#include <QtCore/QByteArray>

class QWidget;

// Makes the calls of Qt that a command needs, as an application would make them without the agent: the floor of the
// command's work, as the echo is the floor of its round trip. False for an unknown command.
bool callQt(const QByteArray& command, QWidget* window);
