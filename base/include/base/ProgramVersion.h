#pragma once

#include <windows.h>

#include <cstring>
#include <string>

namespace base {

/// The version of the running program, such as "1.2.3", from its version resource; empty when it
/// has none.
inline std::wstring ProgramVersion()
{
    const HRSRC place = FindResourceW(nullptr, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
    const HGLOBAL resource = place ? LoadResource(nullptr, place) : nullptr;
    const void* const block = resource ? LockResource(resource) : nullptr;
    // The numbers follow three words and the name "VS_VERSION_INFO", at the next multiple of four.
    constexpr DWORD begin = 40;
    VS_FIXEDFILEINFO numbers{};
    if (!block || SizeofResource(nullptr, place) < begin + sizeof numbers) return {};
    std::memcpy(&numbers, static_cast<const char*>(block) + begin, sizeof numbers);
    if (numbers.dwSignature != VS_FFI_SIGNATURE) return {};
    return std::to_wstring(HIWORD(numbers.dwProductVersionMS)) + L"." +
           std::to_wstring(LOWORD(numbers.dwProductVersionMS)) + L"." +
           std::to_wstring(HIWORD(numbers.dwProductVersionLS));
}

} // namespace base
