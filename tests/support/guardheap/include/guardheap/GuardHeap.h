#pragma once

// What the tests of the guard-page heap ask it. Programs never need to call it: linking it is
// enough.
#ifdef guardheap_dll_EXPORTS
#define GUARDHEAP_API extern "C" __declspec(dllexport)
#else
#define GUARDHEAP_API extern "C" __declspec(dllimport)
#endif

// Whether an address lies in a block that ends at an inaccessible page and is in use. Any thread.
GUARDHEAP_API bool GuardheapIsGuarded(const void* address);

// How many blocks may have guard pages at a time; further ones come from the C run-time's heap.
GUARDHEAP_API unsigned GuardheapBlockLimit();
