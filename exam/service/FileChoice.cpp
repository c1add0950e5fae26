#include "service/FileChoice.h"

#include <base/Owner.h>
#include <Utils_Statics/GetStr.h>

#include <objbase.h>
#include <commdlg.h>
#include <shlobj.h>

namespace exam {

namespace {

constexpr std::size_t longestPath = 32768;

struct ItemListTraits
{
    using Handle = PIDLIST_ABSOLUTE;
    static Handle Empty() noexcept { return nullptr; }
    static void Release(Handle list) noexcept { CoTaskMemFree(list); }
};

int CALLBACK ShowFirst(HWND dialog, UINT message, LPARAM, LPARAM folder) noexcept
{
    if (message == BFFM_INITIALIZED) SendMessageW(dialog, BFFM_SETSELECTIONW, TRUE, folder);
    return 0;
}

} // namespace

std::wstring ChooseFile(HWND owner, const CString& name, const wchar_t* pattern)
{
    std::wstring filter = name.GetString();
    filter += L'\0';
    filter += pattern;
    filter += L'\0';
    filter += GetStr("exam.files.all").GetString();
    filter += std::wstring(L"\0*.*\0", 5);
    std::wstring path(longestPath, L'\0');
    OPENFILENAMEW choice = {};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = owner;
    choice.lpstrFilter = filter.c_str();
    choice.lpstrFile = path.data();
    choice.nMaxFile = static_cast<DWORD>(path.size());
    choice.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    return GetOpenFileNameW(&choice) ? path.c_str() : L"";
}

std::wstring ChooseFolder(HWND owner, const CString& title, const std::wstring& folder)
{
    BROWSEINFOW choice = {};
    choice.hwndOwner = owner;
    choice.lpszTitle = title;
    choice.ulFlags = BIF_RETURNONLYFSDIRS;
    choice.lpfn = ShowFirst;
    choice.lParam = reinterpret_cast<LPARAM>(folder.c_str());
    const base::Owner<ItemListTraits> chosen(SHBrowseForFolderW(&choice));
    wchar_t path[MAX_PATH] = {};
    return chosen && SHGetPathFromIDListW(chosen.get(), path) ? path : L"";
}

std::vector<std::wstring> TakeDropped(HDROP dropped)
{
    std::vector<std::wstring> paths;
    const UINT count = DragQueryFileW(dropped, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        std::wstring path(DragQueryFileW(dropped, i, nullptr, 0) + 1, L'\0');
        path.resize(DragQueryFileW(dropped, i, path.data(), static_cast<UINT>(path.size())));
        paths.push_back(path);
    }
    DragFinish(dropped);
    return paths;
}

} // namespace exam
