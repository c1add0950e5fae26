// Bad settings and times, random ones, and the same bytes everywhere.
#include "PhantomFrame.h"

#include <functional>
#include <limits>
#include <random>

namespace simulation {

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

std::uint32_t Checksum(const std::vector<unsigned char>& bytes)
{
    std::uint32_t sum = 2166136261u; // FNV-1a
    for (const unsigned char byte : bytes)
        sum = (sum ^ byte) * 16777619u;
    return sum;
}

TEST(PhantomRefusal, SettingsThatMakeNoPatientMakeNoFrame)
{
    const std::function<void(PhantomSettings&)> spoilers[] = {
        [](PhantomSettings& s) { s.acquisition.lines = 0; },
        [](PhantomSettings& s) { s.acquisition.lines = 257; },
        [](PhantomSettings& s) { s.acquisition.samples = -1; },
        [](PhantomSettings& s) { s.acquisition.samples = 2000; },
        [](PhantomSettings& s) { s.acquisition.samplingFreq = 0; },
        [](PhantomSettings& s) { s.acquisition.soundSpeed = 0; },
        [](PhantomSettings& s) { s.acquisition.elements = 0; },
        [](PhantomSettings& s) { s.acquisition.pitch = -300; },
        [](PhantomSettings& s) { s.acquisition.probe = ProbeShape::curved; }, // without a radius
        [](PhantomSettings& s) { s.acquisition.probe = ProbeShape::phased; }, // without a sector
        [](PhantomSettings& s) { s.acquisition.probe = static_cast<ProbeShape>(3); },
        [](PhantomSettings& s) { s.frequency = nan; },
        [](PhantomSettings& s) { s.aperture = 0; },
        [](PhantomSettings& s) { s.noiseLevel = infinity; },
        [](PhantomSettings& s) { s.dynamicRange = 0; },
        [](PhantomSettings& s) { s.heartRate = 0; },
        [](PhantomSettings& s) { s.vessel.diameter = -6; },
        [](PhantomSettings& s) { s.vessel.wallThickness = 0; },
        [](PhantomSettings& s) { s.vessel.peakVelocity = nan; },
        [](PhantomSettings& s) { s.vessel.tilt = 90; },
        [](PhantomSettings& s) { s.cyst.semiAxisX = -1; },
        [](PhantomSettings& s) {
            s.wires.push_back({nan, 0});
        },
    };
    int number = 0;
    for (const auto& spoil : spoilers) {
        PhantomSettings settings = DefaultSettings(ProbeShape::linear);
        ASSERT_TRUE(IsValid(settings));
        spoil(settings);
        const Phantom phantom(settings);
        EXPECT_FALSE(phantom.IsValid()) << number;
        EXPECT_TRUE(phantom.Frame(0).empty());
        EXPECT_EQ(phantom.Doppler(phantom.DefaultGate(), 0, 1, 100).columns, 0);
        EXPECT_EQ(phantom.VesselDiameter(0), 0);
        EXPECT_EQ(phantom.CystCircumference(), 0);
        EXPECT_EQ(phantom.PositionOf({1, 1}).line, 0);
        ++number;
    }
}

TEST(PhantomRefusal, TimesAndGatesThatAreNoneGiveNothing)
{
    const Phantom phantom(DefaultSettings(ProbeShape::linear));
    for (const double time : {nan, infinity, -infinity, 1.1e6}) {
        EXPECT_TRUE(phantom.Frame(time).empty());
        EXPECT_TRUE(phantom.Doppler(phantom.DefaultGate(), time, 1, 100).power.empty());
        EXPECT_EQ(phantom.VesselDiameter(time), 0);
        EXPECT_EQ(phantom.AxisVelocity(time), 0);
    }
    const DopplerGate good = phantom.DefaultGate();
    EXPECT_EQ(phantom.Doppler(good, 0, 1, 100).columns, 1);
    EXPECT_EQ(phantom.Doppler(good, 0, 0, 100).columns, 0);
    EXPECT_EQ(phantom.Doppler(good, 0, -1, 100).columns, 0);
    EXPECT_EQ(phantom.Doppler(good, 0, 1, 0).columns, 0);
    EXPECT_EQ(phantom.Doppler(good, 0, 1, nan).columns, 0);
    const std::function<void(DopplerGate&)> spoilers[] = {
        [](DopplerGate& g) { g.bins = 100; },     [](DopplerGate& g) { g.pulsePeriod = 0; },
        [](DopplerGate& g) { g.frequency = -1; }, [](DopplerGate& g) { g.length = nan; },
        [](DopplerGate& g) { g.place.x = nan; },  [](DopplerGate& g) { g.beamAngle = infinity; },
    };
    for (const auto& spoil : spoilers) {
        DopplerGate gate = good;
        spoil(gate);
        EXPECT_EQ(phantom.Doppler(gate, 0, 1, 100).columns, 0);
    }
}

// Settings anywhere within their limits, some of them beyond.
TEST(PhantomRefusal, RandomSettingsGiveAWholeFrameOrNone)
{
    std::mt19937 random(11);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    const auto whole = [&](double low, double high) {
        return static_cast<int>(between(low, high));
    };
    int valid = 0;
    for (int i = 0; i < 40; ++i) {
        PhantomSettings s;
        s.acquisition = {whole(60, 260),
                         whole(505, 1028),
                         whole(2e6, 6e7),
                         whole(990, 2010),
                         static_cast<ProbeShape>(i % 3),
                         whole(1, 300),
                         whole(50, 600),
                         whole(20000, 200000),
                         whole(1000, 170000),
                         25000};
        s.frequency = between(1e6, 2e7);
        s.aperture = between(1, 100);
        s.attenuation = between(0, 2);
        s.vessel = {{between(-50, 50), between(-50, 150)},
                    between(-80, 80),
                    between(0.5, 60),
                    between(0, 0.5),
                    between(0.1, 10),
                    between(-5, 5),
                    between(-5, 5)};
        s.cyst = {{between(-50, 50), between(-50, 150)}, between(0, 60), between(0, 60)};
        s.wires = {{between(-500, 500), between(-500, 500)}, {0, 0}};
        const Phantom phantom(s);
        const std::size_t size =
            phantom.IsValid()
                ? static_cast<std::size_t>(s.acquisition.lines * s.acquisition.samples)
                : 0;
        EXPECT_EQ(phantom.Frame(between(-1e6, 1e6)).size(), size);
        EXPECT_EQ(phantom.Doppler(phantom.DefaultGate(), between(-1e5, 1e5), 2, 100).levels.size(),
                  phantom.IsValid() ? 512u : 0u);
        valid += phantom.IsValid();
    }
    EXPECT_GT(valid, 15);
    EXPECT_LT(valid, 40);
}

TEST(PhantomBytes, FollowFromSettingsAndTimeAlone)
{
    PhantomSettings settings = DefaultSettings(ProbeShape::linear);
    const Phantom phantom(settings);
    const auto frame = phantom.Frame(0.4);
    EXPECT_NE(phantom.Frame(0.5), frame);
    EXPECT_EQ(phantom.Frame(0.4), frame);
    EXPECT_EQ(Phantom(settings).Frame(0.4), frame);
    EXPECT_EQ(phantom.Frame(-0.0), phantom.Frame(0.0));
    settings.seed = 2;
    EXPECT_NE(Phantom(settings).Frame(0.4), frame);
}

INSTANTIATE_TEST_SUITE_P(, PhantomTest,
                         testing::Values(ProbeShape::curved, ProbeShape::linear,
                                         ProbeShape::phased));

// The same numbers in both architectures and in every build: no result depends on the platform's
// mathematical library or on the compiler's optimiser.
TEST_P(PhantomTest, BytesAreTheSameOnEveryProcessor)
{
    constexpr std::uint32_t frames[] = {36231707u, 1139295366u, 3533589718u};
    constexpr std::uint32_t spectra[] = {862353436u, 2652178480u, 4126564705u};
    const auto index = static_cast<std::size_t>(GetParam());
    EXPECT_EQ(Checksum(m_phantom.Frame(1.25)), frames[index]);
    const Spectrum spectrum = m_phantom.Doppler(m_phantom.DefaultGate(), 1, 20, 100);
    EXPECT_EQ(Checksum(spectrum.levels) ^ Checksum(spectrum.traces), spectra[index]);
}

} // namespace

} // namespace simulation
