// A hook that the platform loads into the application. It counts there what no other process can
// count on every platform.
#include "Probe.h"

#include <test_support/ResourceCounts.h>

#include <winternl.h>

#include <string_view>

namespace {

struct OpenHandles
{
    DWORD files = 0;
    DWORD others = 0;
};

// Wine keeps a key of such a name open: the first each time that it is asked for a video codec, the
// other each time that a file is chosen in its dialog.
bool IsKeptKey(HANDLE handle)
{
    alignas(UNICODE_STRING) char bytes[2048];
    ULONG size = 0;
    constexpr auto nameInformation = static_cast<OBJECT_INFORMATION_CLASS>(1);
    if (NtQueryObject(handle, nameInformation, bytes, sizeof bytes, &size) < 0) return false;
    const auto& name = *reinterpret_cast<const UNICODE_STRING*>(bytes);
    const std::wstring_view text(name.Buffer, name.Length / sizeof(wchar_t));
    return text.ends_with(L"\\Drivers32") || text.ends_with(L"\\ComDlg32\\LastVisitedMRU");
}

OpenHandles CountHandles()
{
    OpenHandles count;
    for (std::uintptr_t value = 4; value <= std::uintptr_t{4} * 4096; value += 4) {
        const auto handle = reinterpret_cast<HANDLE>(value);
        DWORD flags = 0;
        if (!GetHandleInformation(handle, &flags)) continue;
        if (GetFileType(handle) == FILE_TYPE_DISK)
            ++count.files;
        else
            count.others += !IsKeptKey(handle);
    }
    return count;
}

void Leave(HWND window, const wchar_t* name, DWORD count)
{
    SetPropW(window, name, reinterpret_cast<HANDLE>(std::uintptr_t{count}));
}

} // namespace

extern "C" __declspec(dllexport) LRESULT CALLBACK
    CountOnRequest(int code, WPARAM wParam, LPARAM lParam)
{
    static const UINT request = RegisterWindowMessageW(soak::probeMessage);
    const auto* const sent = reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code == HC_ACTION && sent->message == request) {
        const OpenHandles handles = CountHandles();
        Leave(sent->hwnd, soak::handlesProperty, handles.others);
        Leave(sent->hwnd, soak::filesProperty, handles.files);
        Leave(sent->hwnd, soak::drawingProperty, test_support::DrawingObjectCount());
        Leave(sent->hwnd, soak::userProperty, test_support::UserObjectCount());
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}
