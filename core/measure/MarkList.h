#pragma once

#include "study/StudyContent.h"

#include <afxwin.h>

#include <vector>

namespace exam {

/// Writes the marks with these numbers and their values one below the other, in the current
/// language and the selected font. A long text takes several rows. Where there is no room for all,
/// the last line says how many are missing.
void DrawMarkList(CDC& dc, const CRect& area, const StudyContent& study,
                  const std::vector<int>& numbers, int selected);

} // namespace exam
