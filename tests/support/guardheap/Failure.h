#pragma once

#include <windows.h>

#include <cstddef>

namespace guardheap {

// The status of a process that ended after a wrong free or a damaged block: STATUS_HEAP_CORRUPTION.
constexpr DWORD heapCorruption = 0xC0000374u;

// Reports on stderr what is wrong with a pointer, the block it belongs to (null: none) and the
// caller; then ends the process. Nothing is allocated, and no handler can swallow it.
[[noreturn]] void StopForBlock(const char* problem, const void* pointer, const void* block,
                               std::size_t size);

// True when a module came with the program: it lies outside the Windows directory and is not this
// DLL itself. The system's modules keep their own heap.
bool IsOfProgram(HMODULE module);

// Reports from now on two kinds of exception on stderr and ends the process with the exception's
// code: an access to an inaccessible page of the region, and an undefined-behaviour trap in a
// module of the program. All other exceptions pass.
void StopAtFaults();

} // namespace guardheap
