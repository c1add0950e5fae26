#include "recording/CineComposition.h"

#include <gtest/gtest.h>
#include <test_support/DeviceContextComposition.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>

namespace {

using Pixels = std::vector<std::uint32_t>;
using Random = std::mt19937;

int Pick(Random& random, int low, int high)
{
    return std::uniform_int_distribution<int>(low, high)(random);
}

Pixels RandomPixels(Random& random, SIZE size)
{
    Pixels values(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy));
    std::generate(values.begin(), values.end(),
                  [&] { return static_cast<std::uint32_t>(random()); });
    return values;
}

// A mask of at least the plane's size, because the device context's continuation of a smaller one
// is undefined.
struct MaskBits
{
    SIZE size{};
    std::vector<std::uint8_t> bytes;

    std::size_t Stride() const { return static_cast<std::size_t>(size.cx + 15) / 16 * 2; }

    bool IsOne(int x, int y) const
    {
        const std::uint8_t byte =
            bytes[static_cast<std::size_t>(y) * Stride() + static_cast<std::size_t>(x) / 8];
        return (byte >> (7 - x % 8) & 1) != 0;
    }
};

MaskBits MaskFor(Random& random, SIZE plane)
{
    MaskBits mask{{plane.cx + Pick(random, 1, 40), plane.cy + Pick(random, 1, 3)}, {}};
    mask.bytes.resize(mask.Stride() * static_cast<std::size_t>(mask.size.cy));
    const int kind = Pick(random, 0, 3); // all let through, all kept, noise, runs
    std::uint8_t value = 0;
    for (auto& byte : mask.bytes) {
        if (kind == 3 && Pick(random, 0, 5) == 0)
            value = static_cast<std::uint8_t>(Pick(random, 0, 2) * 0x7F);
        byte = kind == 0   ? 0
               : kind == 1 ? 0xFF
               : kind == 2 ? static_cast<std::uint8_t>(random())
                           : value;
    }
    return mask;
}

// A rect inside the frame, across its edge, outside, empty or reversed.
RECT RandomRect(Random& random, int frameWidth, int frameHeight)
{
    const int left = Pick(random, -frameWidth, 2 * frameWidth);
    const int top = Pick(random, -frameHeight, 2 * frameHeight);
    const bool odd = Pick(random, 0, 7) == 0;
    const int w = odd ? Pick(random, -9, 0) : Pick(random, 1, frameWidth + 9);
    const int h = odd ? Pick(random, -9, 9) : Pick(random, 1, frameHeight + 9);
    return {left, top, left + w, top + h};
}

// The definition, pixel by pixel, on all 32 bits.
struct PixelForm
{
    const device_context_form::Form& form;
    Pixels frame;

    std::uint32_t* at(int x, int y)
    {
        const bool inside = x >= 0 && y >= 0 && x < form.frameWidth && y < form.frameHeight;
        return inside ? &frame[static_cast<std::size_t>(y * form.frameWidth + x)] : nullptr;
    }

    void ForEach(int w, int h, int x, int y,
                 const std::function<void(std::uint32_t&, int, int)>& change)
    {
        for (int row = 0; row < h; ++row)
            for (int column = 0; column < w; ++column)
                if (std::uint32_t* pixel = at(x + column, y + row)) change(*pixel, column, row);
    }

    void Masked(const RECT& r, const std::uint32_t* image, const MaskBits& mask)
    {
        if (!image || !device_context_form::HasArea(r)) return;
        const int w = device_context_form::Width(r);
        ForEach(w, device_context_form::Height(r), r.left, form.frameHeight - r.bottom,
                [&](std::uint32_t& pixel, int x, int y) {
                    if (!mask.IsOne(x, y)) pixel = image[y * w + x];
                });
    }

    void Region(const RECT& part)
    {
        const RECT& r = form.rects[2];
        if (!form.image[2] || !device_context_form::HasArea(r)) return;
        const int w = device_context_form::Width(r);
        const int h = device_context_form::Height(r);
        ForEach(device_context_form::Width(part), device_context_form::Height(part),
                r.left + part.left, form.frameHeight - r.bottom + part.top,
                [&](std::uint32_t& pixel, int x, int y) {
                    const int sx = part.left + x;
                    const int sy = part.top + y;
                    if (sx >= 0 && sy >= 0 && sx < w && sy < h) pixel = form.image[2][sy * w + sx];
                });
    }

    void Paint(int w, int h, int x, int y, const std::uint32_t* image)
    {
        if (!image || w <= 0) return;
        ForEach(w, h, x, y, [&](std::uint32_t& pixel, int column, int row) {
            pixel |= image[row * w + column];
        });
    }

    Pixels Compose(const MaskBits& mask0, const MaskBits& mask1)
    {
        const auto& r = form.rects;
        const bool second = form.image[1] != nullptr;
        Masked(r[0], form.image[0], mask0);
        Masked(r[1], form.image[1], mask1);
        Region(r[4]);
        Region(r[5]);
        Paint(device_context_form::Width(r[1]), 5, second ? r[1].left : 0,
              second ? form.frameHeight - r[1].bottom : 0, form.image[3]);
        const RECT& anchor = r[second ? 1 : 0];
        Paint(device_context_form::Width(r[3]), device_context_form::Height(r[3]), anchor.left,
              form.frameHeight - anchor.top - r[3].top - device_context_form::Height(r[3]),
              form.image[4]);
        return frame;
    }
};

// A random frame with its planes and masks, composed in any of the three ways.
class Scene
{
public:
    explicit Scene(unsigned seed) : m_random(seed)
    {
        m_form.frameWidth = Pick(m_random, 1, 90);
        m_form.frameHeight = Pick(m_random, 1, 40);
        for (RECT& rect : m_form.rects)
            rect = RandomRect(m_random, m_form.frameWidth, m_form.frameHeight);
        m_frame = RandomPixels(m_random, {m_form.frameWidth, m_form.frameHeight});
        const SIZE sizes[5] = {
            utils_statics::PlaneSize(m_form.rects[0]), utils_statics::PlaneSize(m_form.rects[1]),
            utils_statics::PlaneSize(m_form.rects[2]), utils_statics::StripSize(m_form.rects[1]),
            utils_statics::PlaneSize(m_form.rects[3])};
        for (int i = 0; i < 5; ++i) {
            m_image[i] = RandomPixels(m_random, sizes[i]);
            m_image[i].resize(m_image[i].size() + 1); // never null data
            m_form.image[i] = Pick(m_random, 0, 5) == 0 ? nullptr : m_image[i].data();
        }
        m_mask[0] = MaskFor(m_random, sizes[0]);
        m_mask[1] = MaskFor(m_random, sizes[1]);
    }

    Pixels ThroughDeviceContexts()
    {
        const base::Bitmap mask0(BitmapOf(m_mask[0]));
        const base::Bitmap mask1(BitmapOf(m_mask[1]));
        m_form.mask[0] = mask0.get();
        m_form.mask[1] = mask1.get();
        Pixels frame = m_frame;
        m_form.Compose(frame.data());
        return frame;
    }

    Pixels PixelByPixel() { return PixelForm{m_form, m_frame}.Compose(m_mask[0], m_mask[1]); }

    Pixels Composed()
    {
        const base::Bitmap bitmap0(BitmapOf(m_mask[0]));
        const utils_statics::Mask masks[2] = {utils_statics::Mask(bitmap0.get()),
                                              utils_statics::Mask(m_mask[1].bytes, m_mask[1].size)};
        utils_statics::Planes planes;
        for (int i = 0; i < 5; ++i)
            planes.image[i] = const_cast<std::uint32_t*>(m_form.image[i]);
        planes.mask[0] = &masks[0];
        planes.mask[1] = &masks[1];
        Pixels frame = m_frame;
        utils_statics::Compose({frame.data(), {m_form.frameWidth, m_form.frameHeight}},
                               m_form.rects, planes);
        return frame;
    }

    // Clears the byte that a colour does not use.
    void ClearUnusedByte()
    {
        for (auto& value : m_frame)
            value &= 0xFFFFFF;
        for (auto& image : m_image)
            for (auto& value : image)
                value &= 0xFFFFFF;
    }

private:
    static HBITMAP BitmapOf(const MaskBits& mask)
    {
        return CreateBitmap(mask.size.cx, mask.size.cy, 1, 1, mask.bytes.data());
    }

    Random m_random;
    device_context_form::Form m_form{};
    Pixels m_frame;
    Pixels m_image[5];
    MaskBits m_mask[2];
};

constexpr unsigned scenes = 3000;

Pixels WithoutUnusedByte(Pixels frame)
{
    for (auto& value : frame)
        value &= 0xFFFFFF;
    return frame;
}

} // namespace

TEST(CineComposition, HasTheColoursOfTheDeviceContextFormOnRandomScenes)
{
    // MaskBlt of Wine takes the fourth byte, which is no colour, from the plane even where the mask
    // keeps the frame.
    for (unsigned seed = 0; seed < scenes; ++seed) {
        Scene scene(seed);
        ASSERT_EQ(WithoutUnusedByte(scene.Composed()),
                  WithoutUnusedByte(scene.ThroughDeviceContexts()))
            << seed;
    }
}

TEST(CineComposition, HasEveryBitOfTheDeviceContextFormWhenTheUnusedByteIsZero)
{
    for (unsigned seed = scenes; seed < scenes + 500; ++seed) {
        Scene scene(seed);
        scene.ClearUnusedByte();
        ASSERT_EQ(scene.Composed(), scene.ThroughDeviceContexts()) << seed;
    }
}

TEST(CineComposition, HasEveryBitOfTheDefinitionOnRandomScenes)
{
    for (unsigned seed = 0; seed < scenes; ++seed) {
        Scene scene(seed);
        ASSERT_EQ(scene.Composed(), scene.PixelByPixel()) << seed;
    }
}

namespace {

// A frame of zeros and a plane of ones, to show where the plane lands.
struct Small
{
    static constexpr SIZE size{8, 4};
    Pixels frame = Pixels(32);
    Pixels ones = Pixels(256, 1);

    utils_statics::Plane Target() { return {frame.data(), size}; }
    utils_statics::Plane Plane(SIZE planeSize) { return {ones.data(), planeSize}; }

    std::string Picture() const
    {
        std::string text;
        for (std::size_t i = 0; i < frame.size(); ++i)
            text += (i % 8 == 0 && i > 0 ? "/" : "") + std::string(frame[i] ? "#" : ".");
        return text;
    }
};

const std::vector<std::uint8_t> letThrough(64, 0x00);

} // namespace

TEST(CineComposition, MissingMaskLetsNothingThrough)
{
    Small small;
    utils_statics::CopyMasked(small.Target(), small.Plane({8, 4}), utils_statics::Mask(nullptr),
                              {});
    EXPECT_EQ(small.Picture(), "......../......../......../........");
}

TEST(CineComposition, ColourBitmapIsNoMask)
{
    Small small;
    const base::Bitmap colour(CreateBitmap(8, 4, 1, 32, nullptr));
    utils_statics::CopyMasked(small.Target(), small.Plane({8, 4}),
                              utils_statics::Mask(colour.get()), {});
    EXPECT_EQ(small.Picture(), "......../......../......../........");
}

TEST(CineComposition, PlaneShowsOnlyWithinASmallerMask)
{
    Small small;
    utils_statics::CopyMasked(small.Target(), small.Plane({8, 4}),
                              utils_statics::Mask(letThrough, {3, 2}), {1, 1});
    EXPECT_EQ(small.Picture(), "......../.###..../.###..../........");
}

TEST(CineComposition, FarAwayPositionsAndExtremeRectsTouchNothing)
{
    Small small;
    const utils_statics::Mask mask(letThrough, {16, 8});
    for (const std::int64_t farAway :
         {INT64_C(-4294967296), INT64_C(4294967296), INT64_C(-8), INT64_C(8)})
        utils_statics::CopyMasked(small.Target(), small.Plane({8, 4}), mask, {farAway, 0});
    utils_statics::CopyRegion(small.Target(), small.Plane({8, 4}),
                              {LONG_MIN, LONG_MIN, LONG_MAX, LONG_MAX}, {});
    utils_statics::CopyRegion(small.Target(), small.Plane({8, 4}),
                              {LONG_MAX, LONG_MAX, LONG_MIN, LONG_MIN}, {});
    utils_statics::CopyRegion(small.Target(), small.Plane({8, 4}), {LONG_MAX - 1, 0, LONG_MAX, 1},
                              {LONG_MAX - 1, 0});
    EXPECT_EQ(small.Picture(), "......../......../......../........");
}

TEST(CineComposition, ExtremeLayoutIsHarmless)
{
    Small small;
    const utils_statics::Mask mask(letThrough, {16, 8});
    Random random(5);
    const LONG extremes[] = {LONG_MIN, LONG_MIN + 1, -1, 0, 1, LONG_MAX - 1, LONG_MAX};
    for (int round = 0; round < 2000; ++round) {
        RECT rects[6];
        for (RECT& rect : rects)
            rect = {extremes[random() % 7], extremes[random() % 7], extremes[random() % 7],
                    extremes[random() % 7]};
        const utils_statics::Planes planes{.mask = {&mask, &mask}};
        utils_statics::Compose(small.Target(), rects, planes);
    }
    EXPECT_EQ(small.Picture(), "......../......../......../........");
}

TEST(CineComposition, WithoutPlane1TheStripLandsAtTheFrameOrigin)
{
    Small small;
    const RECT rects[6] = {{0, 0, 1, 1}, {5, 0, 8, 2}, {}, {}, {}, {}};
    utils_statics::Compose(small.Target(), rects,
                           {.image = {nullptr, nullptr, nullptr, small.ones.data(), nullptr}});
    EXPECT_EQ(small.Picture(), "###...../###...../###...../###.....");
}

TEST(CineComposition, WithPlane1TheStripLandsAtItsFirstRow)
{
    Small small;
    const RECT rects[6] = {{0, 0, 1, 1}, {5, 0, 8, 2}, {}, {}, {}, {}};
    const utils_statics::Mask keepAll(std::vector<std::uint8_t>(64, 0xFF), {16, 8});
    utils_statics::Compose(
        small.Target(), rects,
        {.image = {nullptr, small.ones.data(), nullptr, small.ones.data(), nullptr},
         .mask = {nullptr, &keepAll}});
    EXPECT_EQ(small.Picture(), "......../......../.....###/.....###");
}

TEST(CineComposition, StripKeepsItsWidthOverARectWithoutHeight)
{
    Small small;
    const RECT rects[6] = {{}, {2, 9, 4, 9}, {}, {}, {}, {}};
    utils_statics::Compose(small.Target(), rects,
                           {.image = {nullptr, nullptr, nullptr, small.ones.data(), nullptr}});
    EXPECT_EQ(small.Picture(), "##....../##....../##....../##......");
}

TEST(CineComposition, OverlayIgnoresTheLeftEdgeOfItsRect)
{
    Small small;
    // The plane hangs one row below the top of rect 0, at rect 0's left edge.
    const RECT rects[6] = {{2, 0, 6, 4}, {}, {}, {100, 1, 102, 2}, {}, {}};
    utils_statics::Compose(small.Target(), rects,
                           {.image = {nullptr, nullptr, nullptr, nullptr, small.ones.data()}});
    EXPECT_EQ(small.Picture(), "......../......../..##..../........");
}

TEST(CineComposition, PaintingOrsAllBits)
{
    Pixels frame(1, 0x80F00001);
    Pixels plane(1, 0x010F0002);
    utils_statics::Paint({frame.data(), {1, 1}}, {plane.data(), {1, 1}}, {});
    EXPECT_EQ(frame[0], 0x81FF0003u);
}

TEST(CineComposition, MaskIsReadFromItsBitmap)
{
    const std::uint8_t bits[] = {0x80, 0x01, 0xFF, 0xFF, 0x00, 0x40, 0x00, 0x00};
    const base::Bitmap bitmap(CreateBitmap(18, 2, 1, 1, bits));
    const utils_statics::Mask mask(bitmap.get());
    ASSERT_EQ(mask.Size().cx, 18);
    ASSERT_EQ(mask.Size().cy, 2);
    EXPECT_EQ(mask.Row(0)[0], 0x80);
    EXPECT_EQ(mask.Row(0)[1], 0x01);
    EXPECT_EQ(mask.Row(1)[1], 0x40);
}
