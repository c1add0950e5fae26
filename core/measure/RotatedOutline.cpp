#include "measure/RotatedOutline.h"

#include "base/Painting.h"
#include "base/Palette.h"

#include <base/GdiHandles.h>
#include <Utils_Statics/MatrixRoutines.h>

#include <algorithm>
#include <cmath>

namespace exam {

namespace {

int Rounded(double value)
{
    return static_cast<int>(std::lround(value));
}

// The corners of an upright image relative to its centre, as homogeneous points.
std::array<std::array<double, 3>, 4> Corners(CSize size)
{
    const double x = size.cx / 2.0;
    const double y = size.cy / 2.0;
    return {{{-x, -y, 1}, {x, -y, 1}, {x, y, 1}, {-x, y, 1}}};
}

// Draws a quadrilateral, beginning and ending at its first corner.
void DrawClosed(CDC& dc, int style, COLORREF colour, const std::array<CPoint, 4>& corners)
{
    CPen pen(style, 1, colour);
    const base::Selection selection(dc.GetSafeHdc(), pen.GetSafeHandle());
    DrawLines(dc, corners);
    DrawLines(dc, {corners.back(), corners.front()});
}

} // namespace

RotatedOutline RotateImageOutline(CSize size, int angle)
{
    std::array<double, 9> rotation{};
    std::array<double, 9> nothing{};
    std::array<double, 9> transform{};
    MAT_GenerateRotationMatrix(0, 0, angle, rotation.data());
    MAT_MakeIdentity(nothing.data(), 3);

    auto corners = Corners(size);
    double maxX = 0;
    double minX = 0;
    double maxY = 0;
    double minY = 0;
    MAT_Transform(&maxX, &minX, &maxY, &minY, corners[0].data(), corners[1].data(),
                  corners[2].data(), corners[3].data(), rotation.data(), nothing.data(),
                  transform.data());

    RotatedOutline outline;
    outline.bounds = CRect(Rounded(minX), Rounded(minY), Rounded(maxX), Rounded(maxY));
    for (std::size_t i = 0; i < corners.size(); ++i) {
        std::array<double, 3> turned{};
        MAT_MatrixVectorProduct(transform.data(), 3, 3, corners[i].data(), 3, turned.data());
        outline.corners[i] = CPoint(Rounded(turned[0]), Rounded(turned[1]));
    }
    return outline;
}

void DrawRotatedOutline(CDC& dc, const CRect& area, const RotatedOutline& outline)
{
    const double scale = std::min(1.0 * area.Width() / std::max(1, outline.bounds.Width()),
                                  1.0 * area.Height() / std::max(1, outline.bounds.Height()));
    const CPoint centre = area.CenterPoint();
    const auto place = [&](int x, int y) {
        return CPoint(centre.x + Rounded(x * scale), centre.y + Rounded(y * scale));
    };

    const CRect& box = outline.bounds;
    DrawClosed(dc, PS_DOT, palette::label,
               {place(box.left, box.top), place(box.right, box.top), place(box.right, box.bottom),
                place(box.left, box.bottom)});
    const auto& [a, b, c, d] = outline.corners;
    DrawClosed(dc, PS_SOLID, palette::accent,
               {place(d.x, d.y), place(a.x, a.y), place(b.x, b.y), place(c.x, c.y)});
}

} // namespace exam
