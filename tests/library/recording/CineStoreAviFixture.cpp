#include "CineStoreAviFixture.h"

#include <algorithm>
#include <random>

namespace {

CWinApp application(L"cine_store_avi_test");

std::wstring Key()
{
    return L"CineStoreAviTest" + std::to_wstring(GetCurrentProcessId());
}

class Settings : public testing::Environment
{
public:
    void SetUp() override { application.SetRegistryKey(Key().c_str()); }
    void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, (L"Software\\" + Key()).c_str()); }
};

[[maybe_unused]] const auto* const settings = testing::AddGlobalTestEnvironment(new Settings);

constexpr wchar_t section[] = L"Settings\\Capture";

} // namespace

namespace capture_settings {

void Set(const wchar_t* entry, const wchar_t* value)
{
    application.WriteProfileString(section, entry, value);
}

void Set(const wchar_t* entry, int value)
{
    application.WriteProfileInt(section, entry, value);
}

void Clear()
{
    application.WriteProfileString(section, nullptr, nullptr);
}

} // namespace capture_settings

const std::vector<CRect> layout{CRect(2, 3, 32, 33), CRect(34, 1, 62, 31), CRect(0, 34, 64, 46),
                                CRect(7, 2, 21, 6),  CRect(4, 1, 30, 11),  CRect(40, 2, 60, 12)};

Pixels Noise(int width, int height, unsigned seed)
{
    std::minstd_rand random(seed + 1);
    Pixels pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    std::generate(pixels.begin(), pixels.end(),
                  [&] { return static_cast<unsigned int>(random()) & 0xFFFFFF; });
    return pixels;
}

Pixels UpsideDown(const Pixels& pixels, int width)
{
    Pixels turned;
    for (std::size_t row = pixels.size() / static_cast<std::size_t>(width); row-- > 0;)
        turned.insert(turned.end(), pixels.begin() + static_cast<std::ptrdiff_t>(row) * width,
                      pixels.begin() + static_cast<std::ptrdiff_t>(row + 1) * width);
    return turned;
}

Pixels Mirrored(Pixels pixels, int width)
{
    for (auto row = pixels.begin(); row != pixels.end(); row += width)
        std::reverse(row, row + width);
    return pixels;
}

Bytes BytesOf(const Pixels& pixels)
{
    const auto* const first = reinterpret_cast<const std::uint8_t*>(pixels.data());
    return {first, first + pixels.size() * sizeof(unsigned int)};
}

std::unique_ptr<CBitmap> BitmapOf(const Pixels& pixels, int width, int height)
{
    auto bitmap = std::make_unique<CBitmap>();
    bitmap->CreateBitmap(width, height, 1, 32, pixels.data());
    return bitmap;
}

std::unique_ptr<CBitmap> MaskOf(int width, int height, unsigned seed)
{
    std::minstd_rand random(seed + 1);
    Bytes bits(static_cast<std::size_t>((width + 15) / 16 * 2 * height));
    std::generate(bits.begin(), bits.end(),
                  [&] { return static_cast<std::uint8_t>(random() >> 9); });
    auto mask = std::make_unique<CBitmap>();
    mask->CreateBitmap(width, height, 1, 1, bits.data());
    return mask;
}

GivenPlanes::GivenPlanes(unsigned seed, const Turns& turns)
{
    const int sizes[5][2] = {{30, 30}, {28, 30}, {64, 12}, {28, 5}, {14, 4}};
    for (unsigned i = 0; i < 5; ++i) {
        given[i] = Noise(sizes[i][0], sizes[i][1], 10 * seed + i);
        const bool turn = !((i == 0 && turns.bottomUp0) || (i == 1 && turns.bottomUp1));
        turned[i] = turn ? UpsideDown(given[i], sizes[i][0]) : given[i];
        if ((i == 0 && turns.mirror0) || (i == 1 && turns.mirror1))
            turned[i] = Mirrored(turned[i], sizes[i][0]);
    }
}
