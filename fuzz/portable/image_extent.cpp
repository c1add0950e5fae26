// The target reads what an image file of any format claims to be.
#include "imaging/ImageExtent.h"

#include <fuzz/Input.h>
#include <fuzz/Require.h>

namespace {

class Bytes : public utils_statics::ImageBytes
{
public:
    explicit Bytes(std::string_view bytes) : m_bytes(bytes) {}
    std::int64_t Size() override { return static_cast<std::int64_t>(m_bytes.size()); }
    void Read(std::int64_t at, char* to, int bytes) override
    {
        fuzz::Require(at >= 0 && bytes > 0 && at + bytes <= Size(),
                      "what is read lies in the file");
        std::memcpy(to, m_bytes.data() + at, static_cast<std::size_t>(bytes));
    }

private:
    std::string_view m_bytes;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const fuzz::Input input(data, size);
    Bytes bytes(input.Rest());
    const auto extent = utils_statics::StatedExtent(bytes);
    utils_statics::IsGifWithoutPalette(bytes);
    if (extent) fuzz::Require(extent->height >= 0, "a stated height has no sign");
    return 0;
}
