#pragma once

namespace preload {

// Takes this library's entry, and no other, out of the environment variable LD_PRELOAD, which goes when none
// is left.
void removeOwnPreloadEntry();

} // namespace preload
