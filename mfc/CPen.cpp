#include "GdiMap.h"

CPen::~CPen() = default;

CPen* CPen::FromHandle(HPEN pen)
{
    return framework::GdiFromHandle<CPen>(pen);
}
