#pragma once

#include <Utils_Statics/spectralTraceData.h>

#include <afxwin.h>

namespace exam {

/// Draws a spectral Doppler strip: the velocity scale, the baseline and the traces of `data`, whose
/// bytes are spectral bins. The scale comes from CDopplerScaling, whose display height must be the
/// height of `area`.
void DrawSpectralStrip(CDC& dc, const CRect& area, spectralTraceData& data);

} // namespace exam
