#include "overlay/Overlays.h"

#include <algorithm>
#include <utility>

namespace exam {

Overlays::Overlays(const Session& session, const ImageView& view, std::vector<ToolButton> buttons)
    : m_dial(session), m_badge(session, view), m_tools(std::move(buttons))
{
}

bool Overlays::Open(CWnd& parent, const CRect& image)
{
    const std::array<Overlay*, 3> all = All();
    return std::all_of(all.begin(), all.end(),
                       [&](Overlay* overlay) { return overlay->Open(parent, image); });
}

void Overlays::Refresh()
{
    for (Overlay* const overlay : All())
        overlay->Refresh();
}

void Overlays::DrawRecorded(CDC& picture)
{
    for (Overlay* const overlay : All())
        if (overlay->GetSafeHwnd() && overlay->CanDrawOnAVI()) overlay->DrawOnto(picture);
}

} // namespace exam
