#pragma once

// Queries for the tests of the guard-page heap. Programs need not call them: linking the heap is
// enough.
#ifdef guardheap_dll_EXPORTS
#define GUARDHEAP_API extern "C" __declspec(dllexport)
#else
#define GUARDHEAP_API extern "C" __declspec(dllimport)
#endif

// True when an address lies in a block that is in use and ends at an inaccessible page. Any thread
// may call it.
GUARDHEAP_API bool GuardheapIsGuarded(const void* address);

// The number of blocks that may have guard pages at a time; further ones come from the C run-time's
// heap.
GUARDHEAP_API unsigned GuardheapBlockLimit();
