#pragma once

#include "image/ImageView.h"
#include "image/Session.h"
#include "overlay/Overlay.h"

namespace exam {

/// A rectangle below the dial: the depth that is shown.
class DepthBadge : public Overlay
{
public:
    DepthBadge(const Session& session, const ImageView& view) : m_session(session), m_view(view) {}

    void Draw(CDC* dc) override;
    int IsRectMask() override { return 1; }

protected:
    CRect AreaOver(const CRect& image) const override;

private:
    const Session& m_session;
    const ImageView& m_view;
};

} // namespace exam
