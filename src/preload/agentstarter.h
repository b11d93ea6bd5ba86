#pragma once

namespace preload {

// Creates the agent if this thread runs the event loop of a QApplication, the first time that it is called
// there; the QApplication's destructor deletes it. Does nothing in every other thread and process, and is
// cheap there.
void startAgentOnce();

} // namespace preload
