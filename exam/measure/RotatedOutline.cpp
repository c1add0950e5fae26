#include "measure/RotatedOutline.h"

#include "base/Palette.h"

#include <Utils_Statics/MatrixRoutines.h>

#include <algorithm>
#include <cmath>

namespace exam {

namespace {

int Rounded(double value)
{
    return static_cast<int>(std::lround(value));
}

// Corners of an upright image about its centre, as homogeneous points.
std::array<std::array<double, 3>, 4> Corners(CSize size)
{
    const double x = size.cx / 2.0;
    const double y = size.cy / 2.0;
    return {{{-x, -y, 1}, {x, -y, 1}, {x, y, 1}, {-x, y, 1}}};
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
    double maxX = 0, minX = 0, maxY = 0, minY = 0;
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

    CPen boxPen(PS_DOT, 1, palette::label);
    CPen* const old = dc.SelectObject(&boxPen);
    const CRect& bounds = outline.bounds;
    dc.MoveTo(place(bounds.left, bounds.top));
    for (const CPoint& corner :
         {CPoint(bounds.right, bounds.top), CPoint(bounds.right, bounds.bottom),
          CPoint(bounds.left, bounds.bottom), CPoint(bounds.left, bounds.top)})
        dc.LineTo(place(corner.x, corner.y));

    CPen outlinePen(PS_SOLID, 1, palette::accent);
    dc.SelectObject(&outlinePen);
    dc.MoveTo(place(outline.corners[3].x, outline.corners[3].y));
    for (const CPoint& corner : outline.corners)
        dc.LineTo(place(corner.x, corner.y));
    dc.SelectObject(old);
}

} // namespace exam
