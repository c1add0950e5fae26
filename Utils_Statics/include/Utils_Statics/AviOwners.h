#pragma once

#include <windows.h>
#include <vfw.h>

#include <memory>

/// Releases an AVI file and the use of the AVI library that goes with every open file.
struct AviFileRelease
{
    void operator()(IAVIFile* file) const noexcept;
};

struct AviStreamRelease
{
    void operator()(IAVIStream* stream) const noexcept;
};

using AviFileOwner = std::unique_ptr<IAVIFile, AviFileRelease>;       ///< owns a PAVIFILE
using AviStreamOwner = std::unique_ptr<IAVIStream, AviStreamRelease>; ///< owns a PAVISTREAM
