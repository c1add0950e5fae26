#include "GdiMap.h"

CBrush::~CBrush() = default;

CBrush* CBrush::FromHandle(HBRUSH brush)
{
    return framework::GdiFromHandle<CBrush>(brush);
}
