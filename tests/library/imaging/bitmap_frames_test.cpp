// Rounded rectangles, rounded and bordered copies, and the names of all bitmap functions.
#include "GdiPlus.h"

#include <gtest/gtest.h>
#include <test_support/ImportHook.h>
#include <test_support/PerPixelForm.h>
#include <test_support/ResourceCounts.h>

#include <cmath>

using Gdiplus::Color;

namespace {

constexpr float linear[] = {0, 1};
constexpr float ends[] = {0, 1};

class RoundRectTest : public GdiPlusTest
{
};

class FrameTest : public GdiPlusTest
{
protected:
    // True when this implementation of GDI+ obeys the factors of a path gradient at all.
    static bool HonoursBlends()
    {
        Gdiplus::Bitmap image(20, 20, PixelFormat32bppARGB);
        Gdiplus::Graphics graphics(&image);
        Gdiplus::GraphicsPath path;
        path.AddRectangle(Gdiplus::Rect(0, 0, 20, 20));
        Gdiplus::PathGradientBrush brush(&path);
        Color edge(0xFF000000);
        int count = 1;
        brush.SetCenterColor(Color(0xFFFFFFFF));
        brush.SetSurroundColors(&edge, &count);
        float factors[] = {1, 1};
        float positions[] = {0, 1};
        brush.SetBlend(factors, positions, 2);
        graphics.FillRectangle(&brush, 0, 0, 20, 20);
        Color inside;
        image.GetPixel(3, 10, &inside);
        return inside.GetR() > 240;
    }

    static std::uint32_t PixelAt(const Image& image, int x, int y)
    {
        Color colour;
        image->GetPixel(x, y, &colour);
        return colour.GetValue();
    }
};

std::vector<std::uint32_t> Picture(int width, int height)
{
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            pixels.push_back(0xFF002000u + static_cast<std::uint32_t>(x) * 0x30000u +
                             static_cast<std::uint32_t>(y) * 5u);
    return pixels;
}

struct Blend
{
    const float* factors;
    const float* positions;
    int count;
};
constexpr Blend even = {linear, ends, 2};

// Draws the gradient over a whole image, step by step from its description. A null blend sets none.
void FillPlain(Gdiplus::Graphics& graphics, Gdiplus::Bitmap& image,
               const Gdiplus::GraphicsPath& path, Color centre, Color edge, const Blend* blend)
{
    Gdiplus::PathGradientBrush brush(&path);
    int count = 1;
    brush.SetCenterColor(centre);
    brush.SetSurroundColors(&edge, &count);
    if (blend)
        brush.SetBlend(const_cast<float*>(blend->factors), const_cast<float*>(blend->positions),
                       blend->count);
    graphics.FillRectangle(&brush, 0, 0, static_cast<int>(image.GetWidth()),
                           static_cast<int>(image.GetHeight()));
}

// The mask that a rounded copy is made with.
Image RoundedMask(int width, int height, float radius, const Blend* blend = &even)
{
    auto mask = std::make_unique<Gdiplus::Bitmap>(width, height, PixelFormat32bppARGB);
    Gdiplus::Graphics graphics(mask.get());
    graphics.Clear(Color(0x00000000));
    Gdiplus::GraphicsPath path;
    CreateRoundRect(path, 0, 0, static_cast<float>(width), static_cast<float>(height), radius);
    FillPlain(graphics, *mask, path, Color(0xFFFF0000), Color(0xFF000000), blend);
    return mask;
}

std::vector<std::uint32_t> PlainRounded(Gdiplus::Bitmap& source, float radius,
                                        const Blend* blend = &even)
{
    const Image plain = RoundedMask(static_cast<int>(source.GetWidth()),
                                    static_cast<int>(source.GetHeight()), radius, blend);
    per_pixel_form::MaskByRed(*plain, source);
    return PixelsOf(*plain);
}

std::vector<std::uint32_t> PlainBordered(Gdiplus::Bitmap& source, Color border, const Blend* blend)
{
    const auto width = static_cast<int>(source.GetWidth());
    const auto height = static_cast<int>(source.GetHeight());
    const Image copy(source.Clone(0, 0, width, height, PixelFormat32bppARGB));
    Gdiplus::Graphics graphics(copy.get());
    Gdiplus::GraphicsPath path;
    path.AddRectangle(Gdiplus::Rect(0, 0, width, height));
    FillPlain(graphics, *copy, path, Color(0x00000000), border, blend);
    return PixelsOf(*copy);
}

// Watches the library's settings for a gradient's brush, as long as the object lives. One at a
// time.
class GradientWatch
{
public:
    struct Asked
    {
        Gdiplus::ARGB centre;
        std::vector<Gdiplus::ARGB> edges;
        std::vector<float> factors;
        std::vector<float> positions;
    };

    GradientWatch()
        : m_centre(L"Utils_Statics.dll", "GdipSetPathGradientCenterColor", &SetCentre),
          m_edges(L"Utils_Statics.dll", "GdipSetPathGradientSurroundColorsWithCount", &SetEdges),
          m_blend(L"Utils_Statics.dll", "GdipSetPathGradientBlend", &SetBlend)
    {
        s_asked = {};
    }

    const Asked& Last() const { return s_asked; }

private:
    using Brush = Gdiplus::GpPathGradient;
    using Status = Gdiplus::GpStatus;

    static Status WINAPI SetCentre(Brush* brush, Gdiplus::ARGB colour)
    {
        s_asked.centre = colour;
        return Gdiplus::DllExports::GdipSetPathGradientCenterColor(brush, colour);
    }
    static Status WINAPI SetEdges(Brush* brush, const Gdiplus::ARGB* colours, INT* count)
    {
        s_asked.edges.assign(colours, colours + *count);
        return Gdiplus::DllExports::GdipSetPathGradientSurroundColorsWithCount(brush, colours,
                                                                               count);
    }
    static Status WINAPI SetBlend(Brush* brush, const float* factors, const float* positions,
                                  INT count)
    {
        s_asked.factors.assign(factors, factors + count);
        s_asked.positions.assign(positions, positions + count);
        return Gdiplus::DllExports::GdipSetPathGradientBlend(brush, factors, positions, count);
    }

    static inline Asked s_asked;
    test_support::ImportHook m_centre;
    test_support::ImportHook m_edges;
    test_support::ImportHook m_blend;
};

bool IsNear(Gdiplus::PointF point, float x, float y)
{
    return std::abs(point.X - x) < 0.01F && std::abs(point.Y - y) < 0.01F;
}

} // namespace

TEST(BitmapFunctions, AreExportedUnderTheirPlainNames)
{
    const HMODULE library = GetModuleHandleW(L"Utils_Statics.dll");
    ASSERT_TRUE(library);
    for (const char* const name :
         {"GetEncoderClsid", "GetCompression", "SaveBitmap", "CreateGrayscalePalette",
          "LoadImageFromIconStore", "LoadImageFromResource", "BitmapFromFile", "ResizeImage",
          "GrayScaleBitmap", "GrayScale", "PreMultiplyRGBChannels", "CreateRoundRect",
          "CreateRoundedBitmap", "CreateBorderedBitmap"})
        EXPECT_NE(GetProcAddress(library, name), nullptr) << name;
    EXPECT_EQ(GetProcAddress(library, "_GrayScale"), nullptr);
}

// The rectangle has x 10, y 20, width 100, height 60 and radius 8. Each line begins r behind one
// corner and ends 2r short of the next; arcs of two radii lie at the corners.
TEST_F(RoundRectTest, JoinsShortLinesToArcs)
{
    Gdiplus::GraphicsPath path;
    EXPECT_EQ(CreateRoundRect(path, 10, 20, 100, 60, 8), Gdiplus::Ok);
    std::vector<Gdiplus::PointF> points(static_cast<std::size_t>(path.GetPointCount()));
    path.GetPathPoints(points.data(), static_cast<int>(points.size()));
    const Gdiplus::PointF expected[] = {
        {18, 20},  {94, 20},  {102, 20}, {110, 28}, // upper edge, then both ends of its arc
        {110, 28}, {110, 64}, {110, 72}, {102, 80}, {94, 80}, {18, 80},
        {18, 80},  {10, 72},  {10, 64},  {10, 28},  {10, 28}, {18, 20},
    };
    std::size_t found = 0;
    for (const Gdiplus::PointF& point : points)
        while (found < std::size(expected) && IsNear(point, expected[found].X, expected[found].Y))
            ++found; // a point may end a line and begin an arc
    EXPECT_EQ(found, std::size(expected));

    Gdiplus::RectF bounds;
    path.GetBounds(&bounds);
    EXPECT_TRUE(IsNear({bounds.X, bounds.Y}, 10, 20));
    EXPECT_TRUE(IsNear({bounds.Width, bounds.Height}, 100, 60));
}

TEST_F(RoundRectTest, AddsToWhatThePathHolds)
{
    Gdiplus::GraphicsPath path;
    path.AddLine(0, 0, 5, 5);
    const int before = path.GetPointCount();
    EXPECT_EQ(CreateRoundRect(path, 0, 0, 50, 50, 5), Gdiplus::Ok);
    EXPECT_GT(path.GetPointCount(), before);
}

TEST_F(RoundRectTest, AnswersTheStatusOfTheLastStep)
{
    Gdiplus::GraphicsPath path;
    const Gdiplus::Status status = CreateRoundRect(path, 0, 0, 50, 50, 0);
    Gdiplus::GraphicsPath arc;
    EXPECT_EQ(status, arc.AddArc(0.0F, 0.0F, 0.0F, 0.0F, 180.0F, 90.0F));
}

TEST_F(FrameTest, RoundedCopiesAreOpaqueInTheMiddleAndGoneInTheCorners)
{
    const std::vector<std::uint32_t> pixels = Picture(60, 40);
    const Image source = ImageOf(60, 40, pixels);
    const Image rounded(CreateRoundedBitmap(source.get(), 10, linear, ends, 2));
    ASSERT_TRUE(rounded);
    EXPECT_EQ(rounded->GetPixelFormat(), PixelFormat32bppARGB);
    EXPECT_EQ(rounded->GetWidth(), 60u);
    EXPECT_EQ(PixelAt(rounded, 0, 0) >> 24, 0u);
    EXPECT_EQ(PixelAt(rounded, 59, 39) >> 24, 0u);
    EXPECT_GT(PixelAt(rounded, 30, 20) >> 24, 220u);
    EXPECT_LT(PixelAt(rounded, 30, 1) >> 24, PixelAt(rounded, 30, 10) >> 24);
    const std::vector<std::uint32_t> after = PixelsOf(*rounded);
    for (std::size_t i = 0; i < after.size(); ++i)
        ASSERT_EQ(after[i] & 0xFFFFFF, pixels[i] & 0xFFFFFF) << i;
    EXPECT_EQ(PixelsOf(*source), pixels); // stays as it is
}

TEST_F(FrameTest, RoundedCopiesEqualThePlainFormForSourcesOfAllFormats)
{
    unsigned seed = 1;
    const struct
    {
        int width;
        int height;
        float radius;
    } cases[] = {{1, 1, 1}, {7, 5, 2}, {33, 17, 6}, {24, 31, 11.5F}, {2, 50, 0.5F}};
    for (const Gdiplus::PixelFormat format : allFormats)
        for (const auto& [width, height, radius] : cases)
            for (const bool bottomUp : {false, true}) {
                const RandomImage source(format, width, height, bottomUp, ++seed);
                const Image copy((*source).Clone(0, 0, width, height, PixelFormat32bppARGB));
                const Image rounded(CreateRoundedBitmap(source.get(), radius, linear, ends, 2));
                if (!copy) { // then there is no rounded copy
                    ASSERT_FALSE(rounded);
                    continue;
                }
                ASSERT_TRUE(rounded) << std::hex << format;
                ASSERT_EQ(PixelsOf(*rounded), PlainRounded(*source, radius))
                    << std::hex << format << std::dec << ' ' << width << 'x' << height;
            }
}

// The library asks GDI+ for the right blend, even where an implementation does not obey it.
TEST_F(FrameTest, HandsTheBlendAndTheColoursToGdiPlus)
{
    const Image source = ImageOf(20, 20, Picture(20, 20));
    const float factors[] = {0, 0.2F, 0.9F, 1};
    const float positions[] = {0, 0.6F, 0.7F, 1};
    const std::vector<float> givenFactors(factors, factors + 4);
    const std::vector<float> givenPositions(positions, positions + 4);
    const GradientWatch watch;
    ASSERT_TRUE(Image(CreateRoundedBitmap(source.get(), 5, factors, positions, 4)));
    EXPECT_EQ(watch.Last().centre, 0xFFFF0000u);
    EXPECT_EQ(watch.Last().edges, std::vector<Gdiplus::ARGB>{0xFF000000u});
    EXPECT_EQ(watch.Last().factors, givenFactors);
    EXPECT_EQ(watch.Last().positions, givenPositions);
    ASSERT_TRUE(Image(
        CreateBorderedBitmap(source.get(), factors, positions, 3, 0x77000000 | RGB(1, 2, 3))));
    EXPECT_EQ(watch.Last().centre, 0u);
    EXPECT_EQ(watch.Last().edges, std::vector<Gdiplus::ARGB>{0xFF010203u});
    EXPECT_EQ(watch.Last().factors, std::vector<float>(factors, factors + 3));
    EXPECT_EQ(watch.Last().positions, std::vector<float>(positions, positions + 3));
}

TEST_F(FrameTest, RoundedCopiesObeyTheBlend)
{
    if (!HonoursBlends())
        GTEST_SKIP() << "this implementation of GDI+ ignores the factors of path gradients";
    const Image source = ImageOf(60, 40, Picture(60, 40));
    const float factors[] = {0, 1, 1};
    const float positions[] = {0, 0.2F, 1};
    const Image rounded(CreateRoundedBitmap(source.get(), 10, factors, positions, 3));
    ASSERT_TRUE(rounded);
    EXPECT_LT(PixelAt(rounded, 30, 0) >> 24, 128u);
    EXPECT_EQ(PixelAt(rounded, 30, 10) >> 24, 255u);
}

TEST_F(FrameTest, BorderedCopiesHaveTheBorderAtTheEdgeAndThePictureInTheMiddle)
{
    const std::vector<std::uint32_t> pixels = Picture(61, 41);
    const Image source = ImageOf(61, 41, pixels);
    const Image bordered(CreateBorderedBitmap(source.get(), linear, ends, 2, RGB(255, 128, 16)));
    ASSERT_TRUE(bordered);
    EXPECT_EQ(bordered->GetPixelFormat(), PixelFormat32bppARGB);
    const Color edge(PixelAt(bordered, 30, 0));
    EXPECT_NEAR(edge.GetR(), 255, 12);
    EXPECT_NEAR(edge.GetG(), 128, 12);
    EXPECT_NEAR(edge.GetB(), 16, 12);
    const Color middle(PixelAt(bordered, 30, 20));
    const Color before(PixelAt(source, 30, 20));
    EXPECT_NEAR(middle.GetR(), before.GetR(), 12);
    EXPECT_NEAR(middle.GetG(), before.GetG(), 12);
    EXPECT_NEAR(middle.GetB(), before.GetB(), 12);
    for (const std::uint32_t pixel : PixelsOf(*bordered))
        ASSERT_EQ(pixel >> 24, 255u);
    EXPECT_EQ(PixelsOf(*source), pixels);
}

TEST_F(FrameTest, BorderedCopiesObeyTheBlend)
{
    if (!HonoursBlends())
        GTEST_SKIP() << "this implementation of GDI+ ignores the factors of path gradients";
    const Image source = ImageOf(60, 40, Picture(60, 40));
    const float factors[] = {0, 1, 1};
    const float positions[] = {0, 0.2F, 1};
    const Image bordered(CreateBorderedBitmap(source.get(), factors, positions, 3, RGB(255, 0, 0)));
    ASSERT_TRUE(bordered);
    EXPECT_EQ(PixelAt(bordered, 30, 10), PixelAt(source, 30, 10));
}

TEST_F(FrameTest, GivesNothingWithoutASource)
{
    Gdiplus::Bitmap failed(L"there is no such file");
    EXPECT_EQ(CreateRoundedBitmap(nullptr, 5, linear, ends, 2), nullptr);
    EXPECT_EQ(CreateRoundedBitmap(&failed, 5, linear, ends, 2), nullptr);
    EXPECT_EQ(CreateBorderedBitmap(nullptr, linear, ends, 2, 0), nullptr);
    Gdiplus::Bitmap alsoFailed(L"there is no such file");
    EXPECT_EQ(CreateBorderedBitmap(&alsoFailed, linear, ends, 2, 0), nullptr);
}

TEST_F(FrameTest, LeavesTheEvenBlendWhereGdiPlusRefusesTheOneGiven)
{
    const Image source = ImageOf(20, 20, Picture(20, 20));
    const std::vector<std::uint32_t> rounded = PlainRounded(*source, 5, nullptr);
    const std::vector<std::uint32_t> bordered = PlainBordered(*source, Color(0xFF010203), nullptr);
    const float factors[] = {0, 0.5F, 1};
    const float positions[] = {0, 0.5F, 1};
    const Blend refused[] = {{nullptr, positions, 3},  {factors, nullptr, 3},
                             {nullptr, nullptr, 0},    {factors, positions, 0},
                             {factors, positions, -1}, {factors, positions, INT_MIN},
                             {factors, positions, 2},  {factors, positions + 1, 2}};
    for (const Blend& blend : refused) {
        const Image first(
            CreateRoundedBitmap(source.get(), 5, blend.factors, blend.positions, blend.count));
        ASSERT_TRUE(first) << blend.count;
        EXPECT_EQ(PixelsOf(*first), rounded) << blend.count;
        const Image second(CreateBorderedBitmap(source.get(), blend.factors, blend.positions,
                                                blend.count, RGB(1, 2, 3)));
        ASSERT_TRUE(second) << blend.count;
        EXPECT_EQ(PixelsOf(*second), bordered) << blend.count;
    }
}

TEST_F(FrameTest, WorksOnASourceWhosePixelsGdiPlusDoesNotLendOut)
{
    // The grey conversion tries to borrow them; its failure must not count against the image.
    const RandomImage source(PixelFormat64bppPARGB, 9, 7, false, 1);
    GrayScaleBitmap(source.get(), -1);
    const Image copy((*source).Clone(0, 0, 9, 7, PixelFormat32bppARGB));
    const Image bordered(CreateBorderedBitmap(source.get(), linear, ends, 2, 0));
    EXPECT_EQ(bordered != nullptr, copy != nullptr);
}

TEST_F(FrameTest, RoundsWithEveryRadius)
{
    const Image source = ImageOf(20, 20, Picture(20, 20));
    const struct
    {
        float radius;
        float counted;
    } cases[] = {{0, 0},           {-5, -5},       {10, 10},           {1000, 1000},
                 {1e4F, 1e4F},     {-1e4F, -1e4F}, {1.1e4F, 1e4F},     {-1.1e4F, -1e4F},
                 {INFINITY, 1e4F}, {1e30F, 1e4F},  {-INFINITY, -1e4F}, {NAN, 0}};
    for (const auto& [radius, counted] : cases) {
        const Image rounded(CreateRoundedBitmap(source.get(), radius, linear, ends, 2));
        ASSERT_TRUE(rounded) << radius;
        EXPECT_EQ(PixelsOf(*rounded), PlainRounded(*source, counted)) << radius;
    }
}

TEST_F(FrameTest, FadesTowardsTheCornersThatTheRadiusSays)
{
    const Image source = ImageOf(40, 40, Picture(40, 40));
    const Image square(CreateRoundedBitmap(source.get(), 0, linear, ends, 2));
    const Image round(CreateRoundedBitmap(source.get(), 15, linear, ends, 2));
    ASSERT_TRUE(square && round);
    EXPECT_GT(PixelAt(square, 3, 3) >> 24, 0u);
    EXPECT_EQ(PixelAt(round, 3, 3) >> 24, 0u);
    EXPECT_GT(PixelAt(square, 20, 20) >> 24, 200u);
}

TEST_F(FrameTest, LeavesNothingBehind)
{
    const Image source = ImageOf(20, 20, Picture(20, 20));
    const auto useBoth = [&] {
        Image(CreateRoundedBitmap(source.get(), 5, linear, ends, 2));
        Image(CreateBorderedBitmap(source.get(), linear, ends, 2, 0));
    };
    useBoth();
    const DWORD objects = test_support::DrawingObjectCount();
    for (int i = 0; i < 50; ++i)
        useBoth();
    EXPECT_EQ(test_support::DrawingObjectCount(), objects);
}
