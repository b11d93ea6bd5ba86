#pragma once

namespace preload {

// Has the event loop of this thread, when it runs, call a function once. Returns false, after explain(), if that is not
// possible. Only for a process that has loaded the widgets library of this Qt.
bool callInEventLoop(void (*function)());

} // namespace preload
