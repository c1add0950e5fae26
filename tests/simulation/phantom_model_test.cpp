// The parts of the phantom against plain forms of the same computations.
#include "phantom/Arithmetic.h"
#include "phantom/Receiver.h"
#include "PhantomFrame.h"

#include <algorithm>
#include <bit>

namespace simulation {

namespace {

TEST(PhantomArithmetic, IsThatOfTheMathematicalLibrary)
{
    std::mt19937 engine(3);
    std::uniform_real_distribution<double> share(-1, 1);
    for (int i = 0; i < 100000; ++i) {
        const double turns = share(engine) * 1000;
        const double radians = (turns - std::round(turns)) * 2 * std::numbers::pi;
        ASSERT_NEAR(OfTurns(turns).sine, std::sin(radians), 1e-10);
        ASSERT_NEAR(OfTurns(turns).cosine, std::cos(radians), 1e-10);
        const double x = share(engine);
        const double y = share(engine);
        ASSERT_NEAR(AngleFromAxis(x, y), std::atan2(x, y), 1e-10);
        const double power = std::exp(share(engine) * 50);
        ASSERT_NEAR(Logarithm(power), std::log(power), 1e-10);
        ASSERT_NEAR(Exponential(50 * x) / std::exp(50 * x), 1, 1e-10);
        ASSERT_EQ(WholeBelow(turns), std::floor(turns));
    }
    EXPECT_EQ(AngleFromAxis(0, 0), 0);
    EXPECT_NEAR(AngleFromAxis(0, -1), std::numbers::pi, 1e-10);
}

// The sum of all echoes, one number at a time.
std::vector<float> PlainField(const std::vector<Echo>& echoes, const PointSpread& spread,
                              const Acquisition& acquisition)
{
    const int samples = acquisition.samples;
    std::vector<float> field(2 * static_cast<std::size_t>(acquisition.lines * samples));
    for (const Echo& echo : echoes) {
        if (std::abs(echo.sample) > 5000 || std::abs(echo.line) > 5000) continue;
        const PointSpread::Taps pulse = spread.Pulse(echo.sample);
        const PointSpread::Taps beam = spread.Beam(echo.line, echo.sample);
        for (int i = 0; i < beam.count; ++i)
            for (int j = 0; j < pulse.count; ++j) {
                const int line = beam.first + i;
                const int sample = pulse.first + j;
                if (line < 0 || line >= acquisition.lines || sample < 0 || sample >= samples)
                    continue;
                float* const at = &field[2 * static_cast<std::size_t>(line * samples + sample)];
                at[0] += beam.weights[i] * (pulse.weights[j] * echo.real);
                at[1] += beam.weights[i] * (pulse.weights[j] * echo.imaginary);
            }
    }
    return field;
}

// The frames start from the kept field of what is at rest, and add several numbers at a time.
TEST_P(PhantomTest, FramesAreThoseOfThePlainForm)
{
    const Patient patient(m_settings);
    const Receiver receiver(m_settings, patient);
    const Acquisition& acquisition = m_settings.acquisition;
    for (const double time : {0.0, 0.2, -33.3}) {
        std::vector<Echo> echoes = patient.RestingEchoes();
        const std::vector<Echo> moving = patient.MovingEchoes(time);
        echoes.insert(echoes.end(), moving.begin(), moving.end());
        EchoField field(acquisition.lines, acquisition.samples);
        for (const Echo& echo : echoes)
            field.Add(echo, patient.Spread());
        const std::vector<float> plain = PlainField(echoes, patient.Spread(), acquisition);
        const std::size_t numbers = 2 * static_cast<std::size_t>(acquisition.samples);
        for (int line = 0; line < acquisition.lines; ++line)
            ASSERT_TRUE(std::equal(field.Line(line), field.Line(line) + numbers,
                                   plain.begin() + line * static_cast<std::ptrdiff_t>(numbers)));
        ASSERT_EQ(m_phantom.Frame(time), receiver.Develop(field, time));
    }
}

// The table has a level for each 1/128 of a power of two, which moves a level by one at most.
TEST(PhantomLevels, AreDecibels)
{
    const PhantomSettings settings = DefaultSettings(ProbeShape::linear);
    const Patient patient(settings);
    const Receiver receiver(settings, patient);
    for (double power = 1e-6; power < 1e6; power *= 1.01) {
        const double level = std::clamp((10 * std::log10(power) + 32) / 60, 0.0, 1.0) * 255;
        ASSERT_NEAR(receiver.LevelOf(static_cast<float>(power)), level, 0.6) << power;
    }
    EXPECT_EQ(receiver.LevelOf(0), 0);
    EXPECT_EQ(receiver.LevelOf(std::numeric_limits<float>::max()), 255);
}

TEST(PhantomMotion, TheWayOfTheBloodIsTheSumOfItsVelocity)
{
    const VesselMotion motion(DefaultSettings(ProbeShape::linear));
    double way = 0;
    double fastest = 0;
    constexpr int steps = 120000;
    for (int i = 0; i < steps; ++i) {
        const double velocity = motion.Velocity((i + 0.5) / steps * 10); // twelve beats
        way += velocity * 10 / steps * 1000;
        fastest = std::max(fastest, velocity);
        if (i % 1000 == 999) {
            ASSERT_NEAR(motion.Travel((i + 1.0) / steps * 10), way, 1e-3);
        }
    }
    EXPECT_NEAR(motion.Travel(0), 0, 1e-12);
    EXPECT_NEAR(motion.MeanVelocity(), way / 10000, 1e-6);
    EXPECT_NEAR(fastest, 0.8, 1e-6);
}

TEST(PhantomTruth, TheCystsCircumferenceIsTheLengthOfItsOutline)
{
    const Phantom phantom(DefaultSettings(ProbeShape::linear));
    double length = 0;
    constexpr int steps = 100000;
    for (int i = 0; i < steps; ++i) {
        const double angle = 2 * std::numbers::pi * i / steps;
        length +=
            std::hypot(5 * std::sin(angle), 3.5 * std::cos(angle)) * 2 * std::numbers::pi / steps;
    }
    EXPECT_NEAR(phantom.CystCircumference(), length, 1e-5 * length);
    EXPECT_NEAR(phantom.CystArea(), std::numbers::pi * 5 * 3.5, 1e-9);
}

} // namespace

} // namespace simulation
