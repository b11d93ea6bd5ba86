#pragma once

#include "preload/filepath.h"

// Services of the operating system for this process. Two files define them: process_posix.cpp and process_windows.cpp.
namespace preload {

unsigned long long currentThreadId();

// From any fixed start; it never goes back.
long long monotonicMilliseconds();

// Takes a variable out of the environment of this process and of those that it starts.
void unsetVariable(const char* name);

// Loads a library for the rest of the process, with all its functions found, or not at all. `reason` gets the system's
// words for a failure.
bool loadLibrary(const char* path, char (&reason)[pathSize]);

} // namespace preload
