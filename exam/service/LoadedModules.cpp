#include "service/LoadedModules.h"

#include "service/VersionText.h"

#include <base/FilePath.h>

#include <windows.h>
#include <psapi.h>

namespace exam {

namespace {

std::vector<HMODULE> Handles()
{
    std::vector<HMODULE> modules(256);
    for (;;) {
        const auto room = static_cast<DWORD>(modules.size() * sizeof(HMODULE));
        DWORD needed = 0;
        if (!EnumProcessModules(GetCurrentProcess(), modules.data(), room, &needed)) return {};
        modules.resize(needed / sizeof(HMODULE));
        if (needed <= room) return modules;
    }
}

LoadedModule Describe(HMODULE handle)
{
    const std::wstring path = base::ModuleFile(handle);
    LoadedModule module{path.substr(path.rfind(L'\\') + 1), {}, {}};
    CMiniVersion version(path.size() < 520 ? path.c_str() : nullptr);
    unsigned short numbers[4] = {};
    version.GetFileVersion(numbers);
    module.version = NumbersText(numbers);
    if (module.version == L"0.0.0.0") module.version.clear();
    module.description = TextOf(version, &CMiniVersion::GetFileDescription);
    version.Release();
    return module;
}

} // namespace

std::vector<LoadedModule> LoadedModules()
{
    std::vector<LoadedModule> modules;
    for (const HMODULE handle : Handles())
        modules.push_back(Describe(handle));
    return modules;
}

} // namespace exam
