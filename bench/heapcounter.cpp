#include "heapcounter.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <malloc.h>

// The C library's own functions, which the definitions below replace.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
}

namespace {

std::atomic<long> allocations(0);
std::atomic<long> used(0);
std::atomic<long> peak(0);

void* counted(void* memory)
{
    if (!memory)
        return nullptr;
    allocations.fetch_add(1, std::memory_order_relaxed);
    const long size = static_cast<long>(malloc_usable_size(memory));
    const long now = used.fetch_add(size, std::memory_order_relaxed) + size;
    if (now > peak.load(std::memory_order_relaxed))
        peak.store(now, std::memory_order_relaxed);
    return memory;
}

void uncount(void* memory)
{
    if (memory)
        used.fetch_sub(static_cast<long>(malloc_usable_size(memory)), std::memory_order_relaxed);
}

} // namespace

extern "C" {

void* malloc(std::size_t size)
{
    return counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size)
{
    return counted(__libc_calloc(count, size));
}

void* realloc(void* memory, std::size_t size)
{
    uncount(memory);
    return counted(__libc_realloc(memory, size));
}

void* memalign(std::size_t alignment, std::size_t size)
{
    return counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return counted(__libc_memalign(alignment, size));
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size)
{
    *memory = counted(__libc_memalign(alignment, size));
    return *memory ? 0 : ENOMEM;
}

void free(void* memory)
{
    uncount(memory);
    __libc_free(memory);
}

} // extern "C"

void resetHeapUse()
{
    allocations = 0;
    used = 0;
    peak = 0;
}

HeapUse heapUse()
{
    return {allocations, used, peak};
}
