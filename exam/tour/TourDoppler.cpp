// Station 6: the velocity scale of the spectral strip, and a turned image's bounding box.
#include "measure/RotatedOutline.h"
#include "tour/Tour.h"

#include <Utils_Statics/CDopplerScaling.h>

#include <cmath>

namespace exam {

void TourDoppler(TourContext& context)
{
    context.window.ShowStrip(true);
    context.Picture(L"spectral-strip");
    // The full span is PRF x c / (2 f): 4 kHz x 1540 m/s / 5 MHz.
    const double span = CDopplerScaling::GetVelPerPixel() *
                        static_cast<double>(CDopplerScaling::GetPWDisplayHeight());
    context.report.Step(std::abs(span - 1.232) < 1e-9, L"the strip spans 1.232 m/s");
    context.window.ShowStrip(false);

    const RotatedOutline outline = RotateImageOutline(CSize(400, 300), 300);
    // w cos a + h sin a and w sin a + h cos a at 30 degrees
    context.report.Step(std::abs(outline.bounds.Width() - 496) <= 1 &&
                            std::abs(outline.bounds.Height() - 460) <= 1,
                        L"an image turned by 30 degrees is held by its bounding box");
    context.window.SetRotation(300);
    context.Picture(L"turned-outline");
    context.window.SetRotation(0);
}

} // namespace exam
