#pragma once

namespace compat {

// Has the processor fetch memory that is read soon, without waiting for it. No more than a hint: it may be ignored, and any
// address will do.
inline void prefetch(const void* address)
{
#ifdef __GNUC__
    __builtin_prefetch(address);
    // GCC 12 removes calls of a function that only prefetches, since that has no effect. This statement counts as one.
    asm volatile("" : : "r"(address));
#else
    static_cast<void>(address);
#endif
}

} // namespace compat
