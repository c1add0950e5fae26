#include "service/ServiceMenu.h"

#include "service/CrashOnPurpose.h"

#include <base/Owner.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

namespace exam {

namespace {

struct MenuTraits
{
    using Handle = HMENU;
    static HMENU Empty() noexcept { return nullptr; }
    static void Release(HMENU menu) noexcept { DestroyMenu(menu); }
};

} // namespace

void ShowServiceMenu(HWND owner)
{
    if (!utilsExam::ServiceMode) return;
    const base::Owner<MenuTraits> menu(CreatePopupMenu());
    UINT command = 0;
    for (const CrashKind& kind : CrashKinds())
        AppendMenuW(menu.get(), MF_STRING, ++command, GetStr(kind.textKey));
    POINT place = {};
    GetCursorPos(&place);
    const int chosen = TrackPopupMenu(menu.get(), TPM_RETURNCMD | TPM_NONOTIFY, place.x, place.y, 0,
                                      owner, nullptr);
    if (chosen > 0) CrashKinds()[static_cast<std::size_t>(chosen) - 1].crash();
}

} // namespace exam
