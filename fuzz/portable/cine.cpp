// The target reads a raw cine file, and converts its frames as the header asks for.
#include "image/CineFile.h"
#include "image/ImagingParameters.h"

#include <fuzz/Input.h>
#include <fuzz/InputFile.h>
#include <fuzz/Require.h>
#include <qor_imgproc/ConvertFrame.h>

namespace {

// Shows the first frame in a small image.
void ShowFrame(const exam::CineFile& cine)
{
    std::vector<std::uint8_t> frame;
    // Larger frames only take time.
    if (std::int64_t{cine.Lines()} * cine.Samples() > 1 << 20 || !cine.ReadFrame(0, frame)) return;
    const auto image = exam::FitImage(cine.Description(), CSize(96, 64));
    const auto geometry = image.ToScanGeometry();
    std::vector<unsigned char> pixels(static_cast<std::size_t>(geometry.width) *
                                      static_cast<std::size_t>(geometry.height));
    qor_imgproc::ConvertFrame(geometry, frame.data(), pixels.data());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const fuzz::Input input(data, size);
    exam::CineFile cine;
    const bool isOpen = cine.Open(fuzz::InputFile(input.Rest())).empty();
    if (!isOpen) return 0;
    fuzz::Require(cine.Frames() > 0, "a file that is shown has a frame");
    fuzz::Require(std::int64_t{cine.Lines()} * cine.Samples() * cine.Frames() <=
                      static_cast<std::int64_t>(size),
                  "the frames lie in the file");
    ShowFrame(cine);
    return 0;
}
