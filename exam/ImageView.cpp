#include "ImageView.h"

#include <qor_imgproc/ScanConverter.h>

namespace exam
{

void ImageView::Show(const CineFile& cine, int frame, CSize size)
{
    m_parameters = FitImage(cine, size);
    // TODO ConvertFrame
    (void)frame;
}

} // namespace exam
