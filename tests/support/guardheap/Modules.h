#pragma once

#include <windows.h>

namespace guardheap {

// The module that an address belongs to; null when there is none.
HMODULE ModuleOf(const void* code);

// True when a module came with the program: it lies outside the Windows directory and is not this
// DLL itself. The system's modules keep their own heap.
bool IsOfProgram(HMODULE module);

// Redirects one import of a module from msvcrt.dll to a function of this DLL.
struct Redirection
{
    const char* name;
    void* function;
};

// Redirects the imports of a module of the program; other modules are left alone. May be repeated.
void RedirectImports(HMODULE module, const Redirection* redirections, int count);

// Redirects the imports of all modules that are loaded now.
void RedirectAllImports(const Redirection* redirections, int count);

} // namespace guardheap
