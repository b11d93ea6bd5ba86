#pragma once

namespace preload {

// Whether the agent is to be started now: true for the first call in a thread that runs the event loop of a
// QApplication. Cheap in every other thread and process.
bool claimStart();

// Creates the agent. The QApplication's destructor deletes it.
void startAgent();

// Deletes the agent that there was, and creates a new one. To be called by the event loop.
void restartAgent();

// Whether the process has a QApplication of this Qt, in whichever thread.
bool hasWidgetsApplication();

// Whether the agent that startAgent() has created has a connection.
bool isAgentConnected();

// Loads the agent's library, which lies beside this one, into a process that has loaded the widgets library of its Qt.
// Returns its path; null, after explain(), if that failed.
const char* loadAgent();

} // namespace preload
