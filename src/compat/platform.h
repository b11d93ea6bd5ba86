#pragma once

// Marks the functions that a library without Qt exports.
#ifdef _WIN32
#define QTDRIVER_ENTRY_POINT __declspec(dllexport)
#else
#define QTDRIVER_ENTRY_POINT __attribute__((visibility("default")))
#endif

// Services of the operating system that the agent needs. No Qt here: the two forms of this file's functions
// (platform_posix.cpp, platform_windows.cpp) are compiled by themselves for the platform they serve.
namespace compat {

// Keeps processes that the application starts from inheriting a socket. The descriptor is the one that
// QAbstractSocket::socketDescriptor() gives; a failure is ignored.
void setSocketNotInheritable(long long descriptor);

// Whether reading from a descriptor would not block: there is something to read, its other end is closed, or it is
// invalid. Always true on Windows, whose event loops report no input that is not there.
bool hasInput(long long descriptor);

// Blocks the calling thread; no events are processed meanwhile.
void sleepMilliseconds(int milliseconds);

// Processor time that this process has used so far, whatever else the machine does. Not std::clock(), which on Windows
// measures elapsed time.
long long processorMilliseconds();

// Sets a variable in the environment of this process and of those that it starts, in the 8-bit encoding of the system.
void setEnvironmentVariable(const char* name, const char* value);

// Separator between the folders of a path, as the system itself writes it.
extern const char directorySeparator;

} // namespace compat
