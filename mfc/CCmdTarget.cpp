#include <afxwin.h>

CCmdTarget::~CCmdTarget() = default;

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap()
{
    static constexpr AFX_MSGMAP_ENTRY entries[] = {{0, 0, 0, 0, nullptr}};
    static constexpr AFX_MSGMAP map = {nullptr, entries};
    return &map;
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const
{
    return GetThisMessageMap();
}

const AFX_MSGMAP_ENTRY* CCmdTarget::FindMessageEntry(UINT message, UINT code, UINT id) const
{
    for (const AFX_MSGMAP* map = GetMessageMap(); map;
         map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr)
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->handler; ++entry)
            if (entry->nMessage == message && entry->nCode == code && id >= entry->nID &&
                id <= entry->nLastID)
                return entry;
    return nullptr;
}

BOOL CCmdTarget::OnCmdMsg(UINT id, int code, void*, AFX_CMDHANDLERINFO*)
{
    const AFX_MSGMAP_ENTRY* const entry = FindMessageEntry(WM_COMMAND, static_cast<UINT>(code), id);
    if (entry) entry->handler(this, 0, 0);
    return entry != nullptr;
}
