#pragma once

// The process's use of the heap since the last reset. All threads count; the application has one that
// works.
struct HeapUse
{
    long allocations; // calls that gave memory
    long retained; // bytes more (or less) in use than at the reset
    long peak; // most bytes more in use than at the reset, at any time
};

void resetHeapUse();
HeapUse heapUse();
