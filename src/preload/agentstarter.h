#pragma once

namespace preload {

// Whether the agent is to be started now: true for the first call in a thread that runs the event loop of a
// QApplication. Cheap in every other thread and process.
bool claimStart();

// Creates the agent. The QApplication's destructor deletes it.
void startAgent();

// Loads the agent's library, which lies beside this one, into a process that has loaded the widgets library of its Qt.
// Returns its path; null, after explain(), if that failed.
const char* loadAgent();

} // namespace preload
