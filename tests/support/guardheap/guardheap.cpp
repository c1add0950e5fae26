// The DLL of the guard-page heap.
#include <windows.h>

// What modules import so that the loader brings this DLL with them.
extern "C" __declspec(dllexport) int guardheap_version() { return 1; }

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }
