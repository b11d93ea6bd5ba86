#pragma once

// Marks the functions that a library without Qt exports.
#ifdef _WIN32
#define QTDRIVER_ENTRY_POINT __declspec(dllexport)
#else
#define QTDRIVER_ENTRY_POINT __attribute__((visibility("default")))
#endif
