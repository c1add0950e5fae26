// Pictures and movies are opened to be shown, and a sentence tells of other files.
#include "image/ImageView.h"
#include "image/OpenFrames.h"
#include "image/Thumbnail.h"

#include <base/GdiPlusSession.h>
#include <gtest/gtest.h>
#include <test_support/DibSection.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <test_support/Random.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/BitmapFunctions.h>
#include <zel_string_convert/TableLoading.h>

#include <vfw.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace exam;
using test_support::DibSection;

namespace {

constexpr int width = 60;
constexpr int height = 40;
constexpr std::uint32_t left = 0xFFC80A1E; // the colours of the two halves of a picture
constexpr std::uint32_t right = 0xFF143CDC;

class OpenFramesTest : public testing::Test
{
protected:
    OpenFramesTest()
    {
        EXPECT_TRUE(zel_string_convert::LoadTable(test_support::BesideProgram(L"sample\\strings")));
    }
    ~OpenFramesTest() override { zel_string_convert::ClearTable(); }

    static DibSection TwoHalves(bool isSwapped = false)
    {
        DibSection picture(width, height, 32, DibSection::bottomUp);
        std::vector<std::uint32_t> pixels;
        for (int i = 0; i < width * height; ++i)
            pixels.push_back((i % width < width / 2) != isSwapped ? left : right);
        picture.SetPixels(pixels);
        return picture;
    }

    std::wstring SavePicture(const wchar_t* name, int format)
    {
        const base::GdiPlusSession session;
        EXPECT_TRUE(SaveBitmap(TwoHalves().get(), format, (m_folder / name).c_str()));
        return m_folder / name;
    }

    // A movie of two uncompressed frames, 25 a second; the second one has its halves swapped.
    std::wstring SaveMovie()
    {
        const std::wstring path = m_folder / L"movie.avi";
        AVIFileInit();
        PAVIFILE file = nullptr;
        PAVISTREAM stream = nullptr;
        AVISTREAMINFOW info = {};
        info.fccType = streamtypeVIDEO;
        info.dwScale = 1;
        info.dwRate = 25;
        info.dwSuggestedBufferSize = width * height * 4;
        BITMAPINFOHEADER format = {sizeof format, width, height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        EXPECT_EQ(AVIFileOpenW(&file, path.c_str(), OF_CREATE | OF_WRITE, nullptr), 0);
        EXPECT_EQ(AVIFileCreateStreamW(file, &stream, &info), 0);
        EXPECT_EQ(AVIStreamSetFormat(stream, 0, &format, sizeof format), 0);
        for (LONG i = 0; i < 2; ++i) {
            const DibSection frame = TwoHalves(i == 1);
            EXPECT_EQ(AVIStreamWrite(stream, i, 1, frame.bits(), width * height * 4, AVIIF_KEYFRAME,
                                     nullptr, nullptr),
                      0);
        }
        AVIStreamRelease(stream);
        AVIFileRelease(file);
        AVIFileExit();
        return path;
    }

    // The colours in the middle of both halves, as a view shows them.
    static std::vector<std::uint32_t> Halves(const FrameSource& source, int frame)
    {
        ImageView view;
        view.SetSource(source, CSize(300, 200));
        EXPECT_TRUE(view.Show(source, frame));
        const DibSection image(300, 200, 32, DibSection::topDown);
        const base::MemoryContext context(CreateCompatibleDC(nullptr));
        const base::Selection selected(context.get(), image.get());
        CDC dc;
        dc.Attach(context.get());
        view.Paint(dc, CPoint(0, 0));
        dc.Detach();
        const auto at = [&](int line) {
            const CPoint pixel = view.Parameters().Pixel(line, height / 2);
            return image.Pixels()[static_cast<std::size_t>(pixel.y * 300 + pixel.x)] & 0xFFFFFF;
        };
        return {at(width / 4), at(width * 3 / 4)};
    }

    std::wstring Problem(const std::wstring& name, const std::string& bytes)
    {
        test_support::WriteFile(m_folder / name, bytes);
        const OpenedFrames opened = OpenFrames(m_folder / name);
        EXPECT_EQ(opened.source == nullptr, !opened.problem.empty());
        return opened.problem;
    }

    test_support::TemporaryFolder m_folder;
};

} // namespace

TEST_F(OpenFramesTest, APictureIsShownInItsColours)
{
    for (const auto& [name, format] : {std::pair(L"a.png", 3), std::pair(L"b.bmp", 0)}) {
        const OpenedFrames opened = OpenFrames(SavePicture(name, format));
        ASSERT_TRUE(opened.source) << opened.problem.c_str();
        EXPECT_TRUE(opened.source->IsPicture());
        EXPECT_EQ(opened.source->Frames(), 1);
        EXPECT_EQ(opened.source->Lines(), width);
        EXPECT_EQ(opened.source->Samples(), height);
        EXPECT_EQ(Halves(*opened.source, 0),
                  (std::vector<std::uint32_t>{left & 0xFFFFFF, right & 0xFFFFFF}));
    }
}

TEST_F(OpenFramesTest, APictureAtRestIsReadFromItsFileAgain)
{
    const std::wstring path = SavePicture(L"a.png", 3);
    const OpenedFrames opened = OpenFrames(path);
    ASSERT_TRUE(opened.source);
    std::vector<std::uint8_t> first;
    std::vector<std::uint8_t> again;
    ASSERT_TRUE(opened.source->ReadFrame(0, first));
    opened.source->Rest();
    ASSERT_TRUE(opened.source->ReadFrame(0, again));
    EXPECT_EQ(again, first);
    test_support::WriteFile(path, "something else");
    EXPECT_TRUE(opened.source->ReadFrame(0, again)); // it is on display
    opened.source->Rest();
    EXPECT_FALSE(opened.source->ReadFrame(0, again));
}

TEST_F(OpenFramesTest, APictureIsKnownByItsContent)
{
    const std::wstring path = SavePicture(L"photograph.dat", 2); // JPEG
    const OpenedFrames opened = OpenFrames(path);
    ASSERT_TRUE(opened.source);
    const std::uint32_t colour = Halves(*opened.source, 0).front();
    EXPECT_NEAR(colour >> 16 & 0xFF, left >> 16 & 0xFF, 8);
    EXPECT_NEAR(colour & 0xFF, left & 0xFF, 8);
}

TEST_F(OpenFramesTest, AMovieIsShownFrameByFrame)
{
    const OpenedFrames opened = OpenFrames(SaveMovie());
    ASSERT_TRUE(opened.source) << opened.problem.c_str();
    EXPECT_EQ(opened.source->Frames(), 2);
    EXPECT_DOUBLE_EQ(opened.source->FramesPerSecond(), 25);
    const std::vector<std::uint32_t> first = {left & 0xFFFFFF, right & 0xFFFFFF};
    EXPECT_EQ(Halves(*opened.source, 0), first);
    EXPECT_EQ(Halves(*opened.source, 1), (std::vector<std::uint32_t>{first[1], first[0]}));
    std::vector<std::uint8_t> bytes;
    EXPECT_FALSE(opened.source->ReadFrame(2, bytes));
    EXPECT_FALSE(opened.source->ReadFrame(-1, bytes));
}

TEST_F(OpenFramesTest, AVeryLargePictureIsMadeSmaller)
{
    const DibSection wide(6000, 30, 32, DibSection::topDown);
    {
        const base::GdiPlusSession session;
        ASSERT_TRUE(SaveBitmap(wide.get(), 3, (m_folder / L"wide.png").c_str()));
    }
    const OpenedFrames opened = OpenFrames(m_folder / L"wide.png");
    ASSERT_TRUE(opened.source);
    EXPECT_EQ(opened.source->Lines(), 4096);
    EXPECT_EQ(opened.source->Samples(), 20);
}

TEST_F(OpenFramesTest, OfAnythingElseOneSentenceNamesTheFile)
{
    for (const std::wstring& problem :
         {Problem(L"letter.doc", "Dear colleague"), Problem(L"empty.png", ""),
          Problem(L"cut.png", "\x89PNG\r\n\x1A\n"), Problem(L"cut.avi", "RIFF\1\2\3\4AVI LIST"),
          Problem(L"cut.cine", "too short"), Problem(L"archive.zip", "PK\3\4")})
        EXPECT_NE(problem.find(m_folder.Path()), std::wstring::npos) << problem.c_str();
    EXPECT_NE(OpenFrames(m_folder / L"none.png").problem.find(L"none.png"), std::wstring::npos);
    EXPECT_NE(OpenFrames(m_folder.Path()).problem.find(m_folder.Path()), std::wstring::npos);
    EXPECT_NE(Problem(L"letter.doc", "Dear").find(L"no recording"), std::wstring::npos);
}

TEST_F(OpenFramesTest, ALockedFileIsSaidToBeOpenElsewhere)
{
    const std::wstring path = SavePicture(L"locked.png", 3);
    const base::File lock(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    const std::wstring problem = OpenFrames(path).problem;
    EXPECT_NE(problem.find(L"locked.png cannot be read"), std::wstring::npos) << problem.c_str();
}

TEST_F(OpenFramesTest, SurvivesTruncationAndRandomDamage)
{
    test_support::Random random(17);
    for (const std::wstring& path : {SavePicture(L"a.png", 3), SaveMovie()}) {
        const std::string whole = test_support::ReadFile(path);
        for (std::size_t size = 0; size < whole.size(); size += 1 + whole.size() / 60)
            Problem(L"cut", whole.substr(0, size));
        for (int i = 0; i < 60; ++i) {
            std::string damaged = whole;
            const int most = static_cast<int>(std::min<std::size_t>(400, damaged.size())) - 1;
            damaged[static_cast<std::size_t>(random.Int(0, most))] ^=
                static_cast<char>(1 << random.Int(0, 7));
            test_support::WriteFile(m_folder / L"damaged", damaged);
            const OpenedFrames opened = OpenFrames(m_folder / L"damaged");
            std::vector<std::uint8_t> bytes;
            if (opened.source) opened.source->ReadFrame(0, bytes);
        }
    }
}

TEST_F(OpenFramesTest, AThumbnailShowsTheFirstFrame)
{
    const OpenedFrames opened = OpenFrames(SavePicture(L"a.png", 3));
    CBitmap thumbnail;
    PaintThumbnail(*opened.source, CSize(96, 72), thumbnail);
    std::vector<std::uint32_t> pixels(96 * 72);
    ASSERT_GT(GetBitmapBits(static_cast<HBITMAP>(thumbnail.GetSafeHandle()),
                            static_cast<LONG>(pixels.size() * 4), pixels.data()),
              0);
    EXPECT_EQ(pixels[36 * 96 + 30] & 0xFFFFFF, left & 0xFFFFFF);
    EXPECT_EQ(pixels[36 * 96 + 66] & 0xFFFFFF, right & 0xFFFFFF);
}
