#pragma once

#include <atltypes.h>

#include <array>
#include <cstdint>

class CDC;

namespace exam {

/// A position in pixels, between them too.
struct PixelPoint
{
    double x = 0;
    double y = 0;
};

/// The way an image lies on the screen. It is mirrored first, as the probe has its sides, and then
/// turned.
struct Orientation
{
    bool flipsSides = false; ///< the probe's left and right change places
    bool flipsDepth = false; ///< so do near and far
    int quarters = 0;        ///< quarter turns, clockwise, from 0 to 3

    bool IsOnSide() const { return quarters % 2 != 0; }
    friend bool operator==(const Orientation&, const Orientation&) = default;
};

/// The one map between the positions of an upright image and those of the same image as it lies on
/// the screen. Pixels go to pixels, without loss.
class ImageTurn
{
public:
    ImageTurn(const Orientation& orientation, CSize upright);

    /// The image's size on the screen.
    CSize Size() const { return m_size; }

    PixelPoint Displayed(const PixelPoint& upright) const;
    PixelPoint Upright(const PixelPoint& displayed) const;

    /// Turns a picture of a byte a pixel, rows from the top without padding.
    void TurnPixels(const std::uint8_t* upright, std::uint8_t* displayed) const;

    /// Lets a context turn what is drawn in pixels of the upright image, until its saved state
    /// comes back.
    void TurnDrawing(CDC& dc) const;

private:
    CSize m_upright;
    CSize m_size;
    std::array<double, 9> m_matrix{}; // to the screen, of whole numbers
};

} // namespace exam
