#pragma once

#include "measure/SpectralStrip.h"

#include <Utils_Statics/IMouseHandler.h>

namespace exam {

/// Lets the pointer drag the baseline of a strip, which outlives this object. The state-change
/// signal tells of every change.
class BaselineHandle : public IMouseHandler
{
public:
    explicit BaselineHandle(SpectralStrip& strip) : m_strip(strip) {}
    ~BaselineHandle() override;

    /// Takes a press on the baseline, in client pixels. False for one elsewhere, and in trackball
    /// style.
    bool Press(CPoint at);

    /// Says where the client area begins on the screen, in whose pixels the pointer is arbitrated.
    void SetOrigin(CPoint origin) { m_origin = origin; }

protected:
    bool OnMouseInput(unsigned int message, unsigned int flags, int x, int y) override;
    void GetBackgroundRect(CRect&) override {} // only Press locks it

private:
    SpectralStrip& m_strip;
    CPoint m_origin;
};

} // namespace exam
