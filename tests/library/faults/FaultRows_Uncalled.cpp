// Functions that can fail, but that the script never comes to call.
#include "FaultRows.h"

namespace faults {

const std::vector<Exempt>& UncalledFunctions()
{
    static const std::vector<Exempt> uncalled = {
        {"It is called during a crash, where crash-faults makes it fail.",
         {"ConvertFiberToThread", "ConvertThreadToFiberEx", "CreateProcessW",
          "FileTimeToSystemTime", "GetExitCodeProcess", "GetProcessTimes", "GetUserNameW",
          "GlobalMemoryStatusEx", "K32GetProcessMemoryInfo", "ReadProcessMemory", "ResumeThread",
          "SetEvent", "SetFilePointer", "VirtualFree", "VirtualQuery", "WaitForSingleObject",
          "WritePrivateProfileStringW"}},
        {"It prepares the crash report, once in a process, or ends one.",
         {"AddVectoredExceptionHandler", "CreateEventW", "CreateFiberEx", "GetModuleHandleExW",
          "SetThreadStackGuarantee", "TerminateProcess", "VirtualAlloc"}},
        {"It is of movies with a codec, which cine_store_avi_codec_test records.",
         {"AVIMakeCompressedStream", "ICClose", "ICGetInfo", "ICInfo", "ICOpen", "ICSendMessage"}},
        {"It is called only after another call has failed, or where an exception has left a "
         "handler.",
         {"DeleteFileW", "GdipBitmapGetPixel", "GdipBitmapSetPixel",
          "GdipGetGenericFontFamilySansSerif", "ValidateRect"}},
        {"It is called only while another thread is in the hook of the log.",
         {"SleepConditionVariableSRW"}},
        {"It copies a text that a name of an application or a callback takes.", {"_wcsdup"}},
        {"It walks from a child window to the main one, for a message of the child.",
         {"GetParent"}},
        {"It needs a bitmap among the resources of the program.", {"LoadBitmapW"}},
        {"It is a virtual function of GDI+'s own headers, or theirs alone.",
         {"GdipCloneBrush", "GdipCloneImage"}},
        {"It is of the start and the end of a module.",
         {"FreeLibrary", "GetModuleHandleA", "GetProcAddress", "LoadLibraryA", "TlsAlloc",
          "VirtualProtect", "vfprintf"}},
        {"It is of a library that is compiled in, in a way that nobody asks for.",
         {"GetDynamicTimeZoneInformation", "LoadLibraryW", "_chsize", "_gmtime64", "_localtime64",
          "_wremove", "_wrename", "fputc", "fputwc", "fseek", "ftell", "gmtime", "localtime",
          "realloc", "setlocale", "strftime", "time", "wcsftime"}},
    };
    return uncalled;
}

} // namespace faults
