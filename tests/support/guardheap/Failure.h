#pragma once

#include <windows.h>

#include <cstddef>

namespace guardheap {

// The status a process ends with after a wrong free or a damaged block: STATUS_HEAP_CORRUPTION.
constexpr DWORD heapCorruption = 0xC0000374u;

// Says on stderr what is wrong with a pointer and the block it belongs to (null: none), and where
// the call came from; ends the process. Nothing is allocated, and no handler can swallow it.
[[noreturn]] void StopForBlock(const char* problem, const void* pointer, const void* block,
                               std::size_t size);

// From now on an access to a page of the region that is not accessible, and an undefined-behaviour
// trap of a module of the program, are said on stderr and end the process with the code of the
// exception. All other exceptions pass.
void StopAtFaults();

} // namespace guardheap
