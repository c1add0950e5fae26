// The target reads the version of an executable file, by its path.
#include <fuzz/Input.h>
#include <fuzz/InputFile.h>
#include <fuzz/Require.h>
#include <Utils_Statics/CMiniVersion.h>

#include <cwchar>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const fuzz::Input input(data, size);
    CMiniVersion version(fuzz::InputFile(input.Rest()).c_str());
    constexpr int capacity = 520;
    unsigned short text[capacity] = {};
    for (const auto get : {&CMiniVersion::GetCompanyName, &CMiniVersion::GetFileDescription,
                           &CMiniVersion::GetProductName}) {
        (version.*get)(text, capacity);
        const std::wstring_view view(reinterpret_cast<const wchar_t*>(text), capacity);
        fuzz::Require(view.find(L'\0') != std::wstring_view::npos, "a text ends in its room");
    }
    version.Release();
    return 0;
}
