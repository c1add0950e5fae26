#include "service/ArchiveCommands.h"

#include "base/Console.h"
#include "service/StudyArchive.h"

#include <base/Encoding.h>

#include <filesystem>

namespace exam {

namespace {

void Name(std::size_t, std::size_t, const std::wstring& name)
{
    WriteOut(L"  " + name + L"\n");
}

bool Told(const ArchiveResult& result, const std::wstring& done)
{
    if (result.problem.empty())
        WriteOut(std::to_wstring(result.files) + L" files " + done + L"\n");
    else
        WriteError(L"exam: " + result.problem + L"\n");
    return result.problem.empty();
}

} // namespace

bool PackCommand(const std::wstring& archive, const std::wstring& folder, bool overwrite)
{
    std::error_code error;
    if (!overwrite && std::filesystem::exists(archive, error)) {
        WriteError(L"exam: " + archive + L" is there already; --overwrite replaces it\n");
        return false;
    }
    return Told(PackFolder(archive, folder, Name), L"packed into " + archive);
}

bool UnpackCommand(const std::wstring& archive, const std::wstring& folder,
                   const std::wstring& password)
{
    return Told(UnpackArchive(archive, folder, base::BytesFromWide(CP_ACP, password), Name),
                L"unpacked into " + folder);
}

} // namespace exam
