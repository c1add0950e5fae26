// Packs and unpacks from a command line, for the scripts that compare with other programs.
//
// - "zip_driver pack ARCHIVE BASE" reads the files' paths from its input, one a line, in UTF-8.
// - "zip_driver unpack ARCHIVE [PASSWORD]" extracts into the current folder.
//
// Prints the memory it took. Packing ends with 0 when everything succeeded. Unpacking cannot tell,
// because the last entry fails in any case, so it prints how many entries succeeded.
#include <base/Encoding.h>
#include <qor_utils/LogOutput.h>
#include <Utils_Statics/ZipCompress.h>
#include <Utils_Statics/ZipExtract.h>

#include <windows.h>
#include <psapi.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

namespace {

void PrintMemory()
{
    PROCESS_MEMORY_COUNTERS used = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &used, sizeof used);
    std::printf("peak working set %lu KiB\n",
                static_cast<unsigned long>(used.PeakWorkingSetSize / 1024));
}

int Pack(const wchar_t* archive, const wchar_t* basePath)
{
    ZipCompress zip;
    zip.SetBasePath(basePath);
    bool packed = zip.Create(archive);
    for (std::string path; std::getline(std::cin, path);)
        packed = zip.AddFile(base::WideFromUtf8(path).c_str()) && packed;
    zip.Close();
    PrintMemory();
    return packed ? 0 : 1;
}

int Unpack(const wchar_t* archive, const char* password)
{
    ZipExtract zip;
    if (!zip.Open(archive)) return 1;
    int extracted = 0;
    while (zip.ExtractNext(password))
        ++extracted;
    std::printf("extracted %d and the last\n", extracted);
    PrintMemory();
    return 0;
}

void PrintMessage(const qor_utils::LogMessage& message, void*)
{
    std::fprintf(stderr, "%s: %ls\n", message.source, message.text);
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    qor_utils::SetLogHook(PrintMessage, nullptr);
    const std::vector<std::wstring> words(arguments, arguments + count);
    if (count == 4 && words[1] == L"pack") return Pack(arguments[2], arguments[3]);
    if (count == 3 && words[1] == L"unpack") return Unpack(arguments[2], nullptr);
    if (count == 4 && words[1] == L"unpack")
        return Unpack(arguments[2], base::BytesFromWide(CP_ACP, words[3]).c_str());
    std::fprintf(stderr, "see the top of zip_driver.cpp\n");
    return 2;
}
