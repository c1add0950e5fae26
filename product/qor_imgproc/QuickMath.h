#pragma once

#include <cmath>

namespace qor_imgproc {

// An arc tangent several times as fast as the platform's. Abramowitz and Stegun, Handbook of
// Mathematical Functions, 4.4.49: |error| <= 2e-8 radians, a millionth of a line in any real
// frame.
struct QuickMath
{
    static double AngleFromAxis(double x, double y)
    {
        const double ax = std::fabs(x);
        const double ay = std::fabs(y);
        const double smaller = ax < ay ? ax : ay;
        const double larger = ax < ay ? ay : ax;
        const double octant = ArcTangent(smaller / (larger > tiny ? larger : tiny));
        // These only choose between constants, so there are no jumps to mispredict.
        const double quadrant = (ax < ay ? 0.0 : halfPi) + (ax < ay ? 1.0 : -1.0) * octant;
        const double half = (y < 0 ? 2 * halfPi : 0.0) + (y < 0 ? -1.0 : 1.0) * quadrant;
        return (x < 0 ? -1.0 : 1.0) * half;
    }

private:
    static constexpr double tiny = 1e-300;
    static constexpr double halfPi = 1.5707963267948966;

    static double ArcTangent(double t)
    {
        const double s = t * t;
        const double series =
            1 + s * (-0.3333314528 +
                     s * (0.1999355085 +
                          s * (-0.1420889944 +
                               s * (0.1065626393 +
                                    s * (-0.0752896400 +
                                         s * (0.0429096138 +
                                              s * (-0.0161657367 + s * 0.0028662257)))))));
        return t * series;
    }
};

} // namespace qor_imgproc
