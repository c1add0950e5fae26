#pragma once

#include "image/Session.h"
#include "overlay/Overlay.h"

namespace exam {

/// A round dial in the upper right corner of the image that shows how far the loop of frames has
/// gone.
class LoopDial : public Overlay
{
public:
    explicit LoopDial(const Session& session) : m_session(session) {}

    void Draw(CDC* dc) override;
    void DrawMask(CDC* dc) override;

protected:
    CRect AreaOver(const CRect& image) const override;

private:
    const Session& m_session;
};

} // namespace exam
