#pragma once

namespace preload {

// Has the event loop of this thread, when it runs, call a function once. False if that is not possible, and why has been
// explained. Only for a process that has loaded the widgets library of this Qt.
bool callInEventLoop(void (*function)());

} // namespace preload
