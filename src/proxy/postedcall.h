#pragma once

#include <functional>

namespace proxy {

// Has the event loop call the function, after the events that were posted before. What it calls may open a dialog with an
// event loop of its own: later calls are made there.
void postCall(const std::function<void()>& function);

} // namespace proxy
