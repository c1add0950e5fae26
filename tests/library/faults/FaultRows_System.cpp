// Functions of the system that can fail.
#include <winsock2.h>

#include "FaultRows.h"

#include <windows.h>
#include <objbase.h>
#include <mmsystem.h>
#include <oleauto.h>
#include <psapi.h>
#include <shellapi.h>
#include <shlwapi.h>
#include <winver.h>

// The functions' types are enough; the attributes that say more are of no use here.
#pragma GCC diagnostic ignored "-Wignored-attributes"

#define ROW(name, value, when)                                                                     \
    MakeRow<decltype(&name), #name, static_cast<std::intptr_t>(value), When::when>()
#define FAILS(name, value) ROW(name, value, instead)
#define FAILS_AFTER(name, value) ROW(name, value, after)

namespace faults {

std::vector<Row> SystemRows()
{
    return {
        FAILS(GetUserNameW, 0),
        FAILS(RegCreateKeyExW, ERROR_ACCESS_DENIED),
        FAILS(RegOpenKeyExW, ERROR_ACCESS_DENIED),
        FAILS(RegQueryValueExW, ERROR_ACCESS_DENIED),
        FAILS(RegSetValueExW, ERROR_ACCESS_DENIED),
        FAILS(RegDeleteTreeW, ERROR_ACCESS_DENIED),
        FAILS(RegDeleteValueW, ERROR_ACCESS_DENIED),
        FAILS_AFTER(RegCloseKey, ERROR_ACCESS_DENIED),
        FAILS(AddVectoredExceptionHandler, 0),
        FAILS_AFTER(CloseHandle, 0),
        FAILS_AFTER(ConvertFiberToThread, 0),
        FAILS(ConvertThreadToFiberEx, 0),
        FAILS(CreateEventW, 0),
        FAILS(CreateFiberEx, 0),
        FAILS(CreateFileW, -1),
        FAILS(CreateProcessW, 0),
        FAILS(DeleteFileW, 0),
        FAILS(ExpandEnvironmentStringsW, 0),
        FAILS(FileTimeToDosDateTime, 0),
        FAILS(FileTimeToLocalFileTime, 0),
        FAILS(FileTimeToSystemTime, 0),
        FAILS_AFTER(FindClose, 0),
        FAILS(FindFirstFileW, -1),
        FAILS(FindNextFileW, 0),
        FAILS(FindResourceW, 0),
        FAILS(FlushFileBuffers, 0),
        FAILS_AFTER(FreeLibrary, 0),
        FAILS(GetDiskFreeSpaceExW, 0),
        FAILS(GetDriveTypeW, DRIVE_UNKNOWN),
        FAILS(GetDynamicTimeZoneInformation, -1),
        FAILS(GetExitCodeProcess, 0),
        FAILS(GetFileAttributesExW, 0),
        FAILS(GetFileAttributesW, -1),
        FAILS(GetFileSizeEx, 0),
        FAILS(GetFullPathNameW, 0),
        FAILS(GetLogicalDriveStringsW, 0),
        FAILS(GetModuleFileNameW, 0),
        FAILS(GetModuleHandleA, 0),
        FAILS(GetModuleHandleExW, 0),
        FAILS(GetModuleHandleW, 0),
        FAILS(GetProcAddress, 0),
        FAILS(GetProcessTimes, 0),
        FAILS(GetStringTypeW, 0),
        FAILS(GlobalMemoryStatusEx, 0),
        FAILS(HeapSetInformation, 0),
        FAILS(K32GetProcessMemoryInfo, 0),
        FAILS(LoadLibraryA, 0),
        FAILS(LoadLibraryW, 0),
        FAILS(LoadResource, 0),
        FAILS(LockResource, 0),
        FAILS(MoveFileExW, 0),
        FAILS(MultiByteToWideChar, 0),
        FAILS(ReadFile, 0),
        FAILS(ReadProcessMemory, 0),
        FAILS(ReplaceFileW, 0),
        FAILS(ResumeThread, -1),
        FAILS(SearchPathW, 0),
        FAILS(SetCurrentDirectoryW, 0),
        FAILS(SetEvent, 0),
        FAILS(SetFileAttributesW, 0),
        FAILS(SetFilePointer, -1),
        FAILS(SetThreadPriority, 0),
        FAILS(SetThreadStackGuarantee, 0),
        FAILS(SizeofResource, 0),
        FAILS(SleepConditionVariableSRW, 0),
        FAILS(TerminateProcess, 0),
        FAILS(TlsAlloc, -1),
        FAILS(TlsSetValue, 0),
        FAILS(VirtualAlloc, 0),
        FAILS_AFTER(VirtualFree, 0),
        FAILS(VirtualProtect, 0),
        FAILS(VirtualQuery, 0),
        FAILS(WaitForSingleObject, -1),
        FAILS(WriteFile, 0),
        FAILS(WritePrivateProfileStringW, 0),
        FAILS(lstrcpynW, 0),
        FAILS(CoCreateInstance, E_FAIL),
        FAILS(CoSetProxyBlanket, E_FAIL),
        FAILS(SysAllocString, 0),
        FAILS(SystemTimeToVariantTime, 0),
        FAILS_AFTER(VariantClear, E_FAIL),
        FAILS(VariantTimeToSystemTime, 0),
        FAILS(SHFileOperationW, ERROR_ACCESS_DENIED),
        FAILS(PathFileExistsW, 0),
        FAILS(SHCreateMemStream, 0),
        FAILS(GetFileVersionInfoSizeW, 0),
        FAILS(GetFileVersionInfoW, 0),
        FAILS(VerQueryValueW, 0),
        FAILS_AFTER(timeKillEvent, TIMERR_NOCANDO),
        FAILS(timeSetEvent, 0),
        FAILS_AFTER(WSACleanup, SOCKET_ERROR),
        FAILS(WSAStartup, WSASYSNOTREADY),
        FAILS(gethostbyname, 0),
        FAILS(gethostname, SOCKET_ERROR),
        FAILS(inet_ntoa, 0),
    };
}

} // namespace faults
