// CreateImageMask: which pixels it asks the scan converter for, in which order, and with what.
#include "MaskInput.h"

#include <test_support/ImportHook.h>

#include <cmath>
#include <functional>
#include <utility>

namespace {

// A question about a pixel to the scan converter, and its answer.
struct Question
{
    int x, y;
    bool fine;

    friend bool operator==(const Question&, const Question&) = default;
    friend void PrintTo(const Question& q, std::ostream* out)
    {
        *out << '(' << q.x << ' ' << q.y << (q.fine ? " fine)" : ")");
    }
};
struct Answer
{
    int line, sample;
};
constexpr Answer within{1, 1};
constexpr Answer beside{1, 0};  // on a line of the region, before its first sample
constexpr Answer past{1000, 1}; // behind the region's last line

// The other arguments of the question.
struct Arguments
{
    URect rect;
    const ZelProbe* probe;
    int soundSpeed, steerAngle, scanB, lines, samplingFreq;
    UPoint origin, scale;
    double sinSteer, cosSteer;
};

using Script = std::function<Answer(const Question&)>;

// Answers in place of the scan converter while this object lives, and keeps the library's
// questions. One object at a time.
class ScriptedConverter
{
public:
    explicit ScriptedConverter(Script script)
        : m_hook(
              L"Utils_Statics.dll",
              "_ZN13ScanConverter23GetPreciseUSCoordinatesEiiPiS0_PjS1_RK5URectPK8ZelProbeiiiiiRK"
              "6UPointSA_ddb",
              &Convert)
    {
        s_script = std::move(script);
        s_questions.clear();
        s_arguments = {};
    }

    const std::vector<Question>& Questions() const { return s_questions; }
    const Arguments& Last() const { return s_arguments; }

private:
    static void Convert(int x, int y, int* line, int* sample, unsigned int* lineFraction,
                        unsigned int* sampleFraction, const URect& rect, const ZelProbe* probe,
                        int soundSpeed, int steerAngle, int scanB, int lines, int samplingFreq,
                        const UPoint& origin, const UPoint& scale, double sinSteer, double cosSteer,
                        bool fine)
    {
        s_questions.push_back({x, y, fine});
        s_arguments = {rect,         probe,  soundSpeed, steerAngle, scanB,   lines,
                       samplingFreq, origin, scale,      sinSteer,   cosSteer};
        const Answer answer = s_script(s_questions.back());
        *line = answer.line;
        *sample = answer.sample;
        *lineFraction = *sampleFraction = 15;
    }

    static inline Script s_script;
    static inline std::vector<Question> s_questions;
    static inline Arguments s_arguments;
    test_support::ImportHook m_hook;
};

// An image of these columns, with the region of 128 lines and 900 samples.
MaskInput SmallInput(int width, int height)
{
    MaskInput in = CurvedInput(Curved);
    in.width = width;
    in.height = height;
    in.value = 1;
    return in;
}

} // namespace

TEST(CreateImageMask, WritesNothingWithoutWidth)
{
    unsigned char pixel = 7;
    EXPECT_TRUE(Create(&pixel, SmallInput(0, 10)));
    for (const auto& [width, height] : {std::pair{-1, 10}, {0, 10}, {10, 0}})
        EXPECT_TRUE(Create(nullptr, SmallInput(width, height))) << width << " x " << height;
    EXPECT_TRUE(Create(&pixel, SmallInput(10, -10)));
    EXPECT_EQ(pixel, 7);
}

TEST(CreateImageMask, SearchesAColumnFromBelowAndItsTopByHalving)
{
    const ScriptedConverter converter(
        [](const Question& q) { return q.y >= 3 && q.y <= 6 ? within : beside; });
    EXPECT_EQ(Mask(SmallInput(1, 10)), (Bytes{0, 0, 0, 1, 1, 1, 1, 0, 0, 0}));
    const std::vector<Question> expected = {{0, 9, false}, {0, 8, false}, {0, 7, false},
                                            {0, 6, false}, {0, 2, true},  {0, 4, true},
                                            {0, 3, true}};
    EXPECT_EQ(converter.Questions(), expected);
}

TEST(CreateImageMask, FindsTheTopWithFullAccuracyAndTheBottomWithout)
{
    const ScriptedConverter converter(
        [](const Question& q) { return q.y >= (q.fine ? 5 : 2) && q.y <= 8 ? within : beside; });
    EXPECT_EQ(Mask(SmallInput(1, 10)), (Bytes{0, 0, 0, 0, 0, 1, 1, 1, 1, 0}));
}

// Rows 1 and 2 are inside too, but the halving does not reach them.
TEST(CreateImageMask, TakesTheRegionOfAColumnForOneRun)
{
    const ScriptedConverter converter(
        [](const Question& q) { return q.y == 1 || q.y == 2 || q.y >= 7 ? within : beside; });
    EXPECT_EQ(Mask(SmallInput(1, 10)), (Bytes{0, 0, 0, 0, 0, 0, 0, 1, 1, 1}));
}

TEST(CreateImageMask, ReachesTheFirstRow)
{
    const ScriptedConverter converter([](const Question&) { return within; });
    EXPECT_EQ(Mask(SmallInput(2, 3)), Bytes(6, 1));
    EXPECT_EQ(Mask(SmallInput(3, 1)), Bytes(3, 1));
}

TEST(CreateImageMask, PassesAColumnBesideTheRegionAndEndsAtTheFirstPastIt)
{
    const Answer columns[] = {beside, within, past, within};
    const ScriptedConverter converter([&](const Question& q) { return columns[q.x]; });
    EXPECT_EQ(Mask(SmallInput(4, 2)), (Bytes{0, 1, 0, 0, 0, 1, 0, 0}));
    EXPECT_EQ(converter.Questions().back(), (Question{2, 0, false}));
}

TEST(CreateImageMask, GoesOnWhenOneRowOfAColumnIsBeforeTheLastLine)
{
    const ScriptedConverter converter([](const Question& q) {
        return q.x == 1 ? within : q.y == 0 ? beside : past;
    });
    EXPECT_EQ(Mask(SmallInput(2, 2)), (Bytes{0, 1, 0, 1}));
}

TEST(CreateImageMask, CountsNoEdgeOfTheRegionAsInside)
{
    const struct
    {
        Answer answer;
        unsigned char expected;
    } cases[] = {{{0, 5}, 0}, {{1, 5}, 1},   {{127, 5}, 1}, {{128, 5}, 0}, {{5, 0}, 0},
                 {{5, 1}, 1}, {{5, 899}, 1}, {{5, 900}, 0}, {{-1, 5}, 0},  {{5, -1}, 0}};
    for (const auto& [answer, expected] : cases) {
        const ScriptedConverter converter([&](const Question&) { return answer; });
        EXPECT_EQ(Mask(SmallInput(1, 1)), Bytes(1, expected))
            << answer.line << ' ' << answer.sample;
    }
}

TEST(CreateImageMask, AsksWithTheParametersThatItIsGiven)
{
    MaskInput in = SmallInput(1, 1);
    in.steerAngle = 30000;
    in.scanB = 7;
    in.lines = 64;
    in.soundSpeed = 1500;
    in.imageRect = CRect(16, 5, 112, 800);
    in.scale = {300, 200};
    const ScriptedConverter converter([](const Question&) { return within; });
    Mask(in);
    const Arguments& last = converter.Last();
    EXPECT_EQ(last.rect, (URect{8, 5, 56, 800})); // 64 lines over 128 elements
    EXPECT_EQ(last.probe, &Curved);
    EXPECT_EQ(last.soundSpeed, 1500);
    EXPECT_EQ(last.steerAngle, 30000);
    EXPECT_EQ(last.scanB, 7);
    EXPECT_EQ(last.lines, 64);
    EXPECT_EQ(last.samplingFreq, 7700000);
    EXPECT_EQ(last.origin, (UPoint{200, -80}));
    EXPECT_EQ(last.scale, (UPoint{300, 200}));
    EXPECT_EQ(last.sinSteer, std::sin(30000 * 1.7453292519943296e-5));
    EXPECT_EQ(last.cosSteer, std::cos(30000 * 1.7453292519943296e-5));
}

TEST(CreateImageMask, RefusesANullMask)
{
    EXPECT_FALSE(Create(nullptr, SmallInput(10, 10)));
}
