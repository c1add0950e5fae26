#pragma once

#include <windows.h>

namespace guardheap {

// The module an address belongs to; null when to none.
HMODULE ModuleOf(const void* code);

// Whether a module came with the program: everything outside the Windows directory but this DLL
// itself. What belongs to the system keeps its own heap.
bool IsOfProgram(HMODULE module);

// Leads one import of a module from msvcrt.dll to a function of this DLL.
struct Redirection
{
    const char* name;
    void* function;
};

// Redirects the imports of a module of the program; of another module nothing changes. May be
// repeated.
void RedirectImports(HMODULE module, const Redirection* redirections, int count);

// The same for all modules that are loaded now.
void RedirectAllImports(const Redirection* redirections, int count);

} // namespace guardheap
