#pragma once

namespace preload {

// Notes where this library lies. To be called once, while the current directory is that of the process's
// start.
void rememberOwnFile();

// The library's absolute path without links; empty if it is not known.
const char* ownFile();

// Whether an entry of LD_PRELOAD, a path or a bare name, is what made the loader load this library.
bool isOwnEntry(const char* entry);

} // namespace preload
