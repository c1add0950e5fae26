#include "image/ImageTurn.h"

#include <Utils_Statics/MatrixRoutines.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace exam {

namespace {

constexpr int quarterTurn = 900; // tenths of a degree

} // namespace

// The corner pixels say how large the turned image is, and how far it has to move to begin at 0.
ImageTurn::ImageTurn(const Orientation& orientation, CSize upright) : m_upright(upright)
{
    std::array<double, 9> turned{};
    std::array<double, 9> mirrored{};
    MAT_GenerateRotationMatrix(0, 0, orientation.quarters * quarterTurn, turned.data());
    for (double& element : turned)
        element = std::round(element); // a quarter turn is known to twelve decimals only
    MAT_MakeIdentity(mirrored.data(), 3);
    if (orientation.flipsSides) mirrored[0] = -1;
    if (orientation.flipsDepth) mirrored[4] = -1;

    const double x = upright.cx - 1.0;
    const double y = upright.cy - 1.0;
    const std::array<std::array<double, 3>, 4> corners{
        {{0, 0, 1}, {x, 0, 1}, {x, y, 1}, {0, y, 1}}};
    double maxX = 0;
    double minX = 0;
    double maxY = 0;
    double minY = 0;
    MAT_Transform(&maxX, &minX, &maxY, &minY, corners[0].data(), corners[1].data(),
                  corners[2].data(), corners[3].data(), turned.data(), mirrored.data(),
                  m_matrix.data());
    m_size = CSize(static_cast<int>(maxX - minX) + 1, static_cast<int>(maxY - minY) + 1);
    m_matrix[2] = -minX;
    m_matrix[5] = -minY;
}

PixelPoint ImageTurn::Displayed(const PixelPoint& upright) const
{
    const auto& m = m_matrix;
    return {m[0] * upright.x + m[1] * upright.y + m[2], m[3] * upright.x + m[4] * upright.y + m[5]};
}

// The inverse of a turn is its transpose.
PixelPoint ImageTurn::Upright(const PixelPoint& displayed) const
{
    const auto& m = m_matrix;
    const double x = displayed.x - m[2];
    const double y = displayed.y - m[5];
    return {m[0] * x + m[3] * y, m[1] * x + m[4] * y};
}

// Some rows are made at once, because the bytes that lie side by side in one picture lie below each
// other in the other.
void ImageTurn::TurnPixels(const std::uint8_t* upright, std::uint8_t* displayed) const
{
    constexpr int rowsAtOnce = 16;
    const auto placeOf = [this](double x, double y) {
        const PixelPoint from = Upright({x, y});
        return static_cast<std::ptrdiff_t>(from.y * m_upright.cx + from.x);
    };
    const std::ptrdiff_t first = placeOf(0, 0);
    const std::ptrdiff_t right = placeOf(1, 0) - first;
    const std::ptrdiff_t down = placeOf(0, 1) - first;
    const std::ptrdiff_t width = m_size.cx;
    for (std::ptrdiff_t top = 0; top < m_size.cy; top += rowsAtOnce) {
        const std::ptrdiff_t bottom = std::min<std::ptrdiff_t>(top + rowsAtOnce, m_size.cy);
        for (std::ptrdiff_t x = 0; x < width; ++x)
            for (std::ptrdiff_t y = top; y < bottom; ++y)
                displayed[y * width + x] = upright[first + x * right + y * down];
    }
}

} // namespace exam
