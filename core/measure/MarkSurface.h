#pragma once

#include "image/ImageView.h"
#include "measure/SpectralStrip.h"
#include "study/Mark.h"

#include <atltypes.h>

namespace exam {

/// A part of the client area on which marks lie.
class MarkSurface
{
public:
    virtual ~MarkSurface() = default;

    /// Its place in client pixels; empty while it is not on display.
    virtual CRect Area() const = 0;

    virtual PixelPoint PixelOf(const MarkPoint& point) const = 0;

    /// The place of a mark's point that a pixel shows. A pixel beside the surface gives a place on
    /// its edge.
    virtual MarkPoint PointAt(const PixelPoint& pixel) const = 0;

    /// False for a point that is not on display.
    virtual bool Shows(const MarkPoint& point) const = 0;

    /// The way from one pixel to another, as Study::MoveMark takes it.
    virtual MarkPoint Way(const PixelPoint& from, const PixelPoint& to) const = 0;
};

/// The frame that an image shows. The view outlives this object.
class FrameSurface : public MarkSurface
{
public:
    /// `corner`: the image's upper left corner in the client area.
    FrameSurface(const ImageView& view, CPoint corner) : m_view(view), m_corner(corner) {}

    void MoveTo(CPoint corner) { m_corner = corner; }

    CRect Area() const override;
    PixelPoint PixelOf(const MarkPoint& point) const override;
    MarkPoint PointAt(const PixelPoint& pixel) const override;
    bool Shows(const MarkPoint& point) const override;
    MarkPoint Way(const PixelPoint& from, const PixelPoint& to) const override;

private:
    const ImageView& m_view;
    CPoint m_corner;
};

/// The spectral strip, which outlives this object.
class StripSurface : public MarkSurface
{
public:
    explicit StripSurface(const SpectralStrip& strip) : m_strip(strip) {}

    CRect Area() const override { return m_strip.Plot(); }
    PixelPoint PixelOf(const MarkPoint& point) const override;
    MarkPoint PointAt(const PixelPoint& pixel) const override;
    bool Shows(const MarkPoint& point) const override;
    MarkPoint Way(const PixelPoint& from, const PixelPoint& to) const override;

private:
    const SpectralStrip& m_strip;
};

} // namespace exam
