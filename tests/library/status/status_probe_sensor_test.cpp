// The display of the probe sensor.
#include "DrawingRecord.h"
#include "StatusFixture.h"

#include <test_support/ChildTest.h>
#include <test_support/LogCapture.h>
#include <test_support/NoMemory.h>
#include <test_support/TestStringTable.h>
#include <Utils_Statics/CStatusProbeSensor.h>

#include <cmath>
#include <cstddef>
#include <limits>

using test_support::LogCapture;
using test_support::TestStringTable;

namespace {

using SensorData = CStatusProbeSensor::SensorData;
using Lines = std::vector<std::wstring>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

SensorData Reading(double temperature, double angle = 90, std::uint8_t error = 0, int version = 2)
{
    return {true, temperature, angle, error, version};
}

// The temperature's part of the row.
const CRect readout(146, 0, 200, 60);

bool IsReddish(Gdiplus::ARGB pixel)
{
    return GetRValue(pixel >> 16) > 0x80 && GetRValue(pixel >> 8) < 0x60 && GetRValue(pixel) < 0x60;
}

// The strongest pixels of the temperature. Text is antialiased, so its colour is the one farthest
// from the background.
Gdiplus::ARGB TextColour(Row& row, const CRect& area)
{
    Gdiplus::ARGB found = background;
    int farthest = 0;
    for (int y = area.top; y < area.bottom; ++y)
        for (int x = area.left; x < area.right; ++x) {
            const int away = std::abs(GetRValue(row.At(x, y) >> 16) - 0x20);
            if (away > farthest) {
                farthest = away;
                found = row.At(x, y);
            }
        }
    return found;
}

void ExpectColour(Gdiplus::ARGB colour, int red, int green, int blue)
{
    EXPECT_NEAR(GetRValue(colour >> 16), red, 3);
    EXPECT_NEAR(GetRValue(colour >> 8), green, 3);
    EXPECT_NEAR(GetRValue(colour), blue, 3);
}

void LoadWarnings(TestStringTable& table, const char* noSensor, const char* tooHot)
{
    table.Add("status.probesensor.nosensor", noSensor, noSensor);
    table.Add("status.probesensor.maxtemp", tooHot, tooHot);
    table.Load();
}

// The settings are read when the only object is made, so in this process they are the defaults.
class ProbeSensor : public StatusTest
{
protected:
    ProbeSensor()
    {
        LoadWarnings(table, "NO SENSOR", "TOO HOT");
        CStatusProbeSensor::setState({});
        repaints = 0;
    }
    ~ProbeSensor() override { CStatusProbeSensor::setState({}); }

    // The width of a drawn reading.
    int DrawReading(const SensorData& data, Row& row)
    {
        CStatusProbeSensor::setState(data);
        return Draw(item, row);
    }

    IStatusItem* const item = CStatusProbeSensor::getInstance();
    TestStringTable table;
};

TEST_F(ProbeSensor, StartsWithoutASensor)
{
    const SensorData start;
    EXPECT_EQ(start, (SensorData{false, -1.0, -1.0, 0, 0}));
    EXPECT_EQ(CStatusProbeSensor::getState(), start);
    EXPECT_FALSE(item->isVisible());
    EXPECT_EQ(CStatusProbeSensor::getInstance(), item);
}

TEST_F(ProbeSensor, ReadingsHaveTheirLayout)
{
    EXPECT_EQ(offsetof(SensorData, isSensorSupported), 0u);
    EXPECT_EQ(offsetof(SensorData, temperature), 8u);
    EXPECT_EQ(offsetof(SensorData, angle), 16u);
    EXPECT_EQ(offsetof(SensorData, errorStatus), 24u);
    EXPECT_EQ(offsetof(SensorData, muxVersion), 28u);
    EXPECT_EQ(sizeof(SensorData), 32u);
}

TEST_F(ProbeSensor, AReadingIsKeptAndAsksForARepaintOnlyWhenItIsNew)
{
    const SensorData first = Reading(36.5, 45);
    CStatusProbeSensor::setState(first);
    EXPECT_EQ(CStatusProbeSensor::getState(), first);
    EXPECT_EQ(repaints, 1);
    CStatusProbeSensor::setState(first);
    EXPECT_EQ(repaints, 1);
    SensorData other = first;
    const auto expectNew = [&](int count) {
        CStatusProbeSensor::setState(other);
        EXPECT_EQ(repaints, count);
        EXPECT_EQ(CStatusProbeSensor::getState(), other);
    };
    other.temperature = std::nextafter(36.5, 40);
    expectNew(2);
    other.angle = 46;
    expectNew(3);
    other.errorStatus = 255;
    expectNew(4);
    other.muxVersion = -7;
    expectNew(5);
    other.isSensorSupported = false;
    expectNew(6);
}

TEST_F(ProbeSensor, AReadingThatIsNoNumberIsAlwaysNew)
{
    CStatusProbeSensor::setState(Reading(nan));
    CStatusProbeSensor::setState(Reading(nan));
    EXPECT_EQ(repaints, 2);
    CStatusProbeSensor::setState(Reading(0.0));
    CStatusProbeSensor::setState(Reading(-0.0));
    EXPECT_EQ(repaints, 3) << "the two zeros are equal";
}

TEST_F(ProbeSensor, IsVisibleWithASensorUsableOrNot)
{
    CStatusProbeSensor::setState(Reading(36, 90, 1, 0));
    EXPECT_TRUE(item->isVisible());
    item->updateVisibleState();
    EXPECT_TRUE(item->isVisible());
    CStatusProbeSensor::setState({false, 36, 90, 0, 2});
    EXPECT_FALSE(item->isVisible());
    item->issueUpdate();
    EXPECT_EQ(repaints, 3);
}

TEST_F(ProbeSensor, ShowsTemperatureAndGauge)
{
    Row row;
    EXPECT_EQ(DrawReading(Reading(36.0), row), 102);
    const CRect drawn = row.Drawn();
    EXPECT_GE(drawn.left, 200 - 102 - 1) << "the outline is two pixels wide";
    EXPECT_LT(drawn.left, 200 - 90);
    ExpectColour(TextColour(row, readout), 231, 235, 246);
    ExpectColour(TextColour(row, CRect(98 + 16, 16, 98 + 34, 44)), 231, 235, 246);
}

TEST_F(ProbeSensor, TheGaugeFillsFromItsLeftEnd)
{
    // The half ellipse lies from x = 98 to 146 below y = 27.6 - (60 - 13.8) / 2 = 4.5; the text in
    // its middle is ignored.
    const auto filled = [&](double angle, int x, int y) {
        Row row;
        DrawReading(Reading(36.0, angle), row);
        return row.At(x, y) != background;
    };
    const struct
    {
        double angle;
        bool left, right;
    } rows[] = {{0, false, false}, {90, true, false}, {180, true, true}, {40, true, false}};
    for (const auto& expected : rows) {
        EXPECT_EQ(filled(expected.angle, 104, 8), expected.left) << expected.angle;
        EXPECT_EQ(filled(expected.angle, 139, 8), expected.right) << expected.angle;
    }
}

TEST_F(ProbeSensor, TheGaugesColoursAreThose)
{
    Row row;
    DrawReading(Reading(36.0, 180), row);
    // Blends 0x64 parts of 0xC8 over the background.
    const auto over = [](int below) { return (0xC8 * 0x64 + below * (255 - 0x64)) / 255; };
    ExpectColour(row.At(104, 9), over(0x20), over(0x40), over(0x60));
    // The outline's lowest point lies in the middle of its two pixels.
    ExpectColour(row.At(122, 31), 0xB4, 0xB4, 0x96);
    EXPECT_EQ(row.At(122, 41), background) << "below the ellipse and the text";
    EXPECT_EQ(row.At(122, 1), background) << "the upper half is not drawn";
}

TEST_F(ProbeSensor, TheTextReddensOnItsWayToTheThreshold)
{
    const struct
    {
        double temperature;
        int green, blue;
    } rows[] = {{20, 235, 246}, {37.0, 235, 246}, {38.4, 117, 123}, {39.1, 58, 61}, {39.8, 0, 0}};
    for (const auto& expected : rows) {
        Row row;
        DrawReading(Reading(expected.temperature), row);
        ExpectColour(TextColour(row, readout), 231, expected.green, expected.blue);
    }
}

TEST_F(ProbeSensor, WarnsOverTheRestOfTheRowWhenTooHot)
{
    Row row;
    EXPECT_EQ(DrawReading(Reading(39.9), row), 200);
    ExpectColour(TextColour(row, readout), 231, 0, 0);
    const CRect warning = row.Where([](Gdiplus::ARGB pixel) { return pixel == 0xFFFF0000; });
    EXPECT_GT(warning.Width(), 30);
    EXPECT_NEAR((warning.left + warning.right) / 2.0, 73, 3) << "centred in what is left";
    EXPECT_NEAR((warning.top + warning.bottom) / 2.0, 30, 4);
    EXPECT_LE(warning.right, 146);
    EXPECT_EQ(row.At(104, 8), background) << "there is no gauge";
}

TEST_F(ProbeSensor, TheThresholdItselfIsNotTooHot)
{
    Row row;
    EXPECT_EQ(DrawReading(Reading(39.8), row), 102);
    EXPECT_EQ(DrawReading(Reading(std::nextafter(39.8, 40)), row), 200);
}

TEST_F(ProbeSensor, WarnsOfAnErrorAtANormalTemperature)
{
    Row row;
    EXPECT_EQ(DrawReading(Reading(36, 90, 1), row), 200);
    EXPECT_NE(row.Where(IsReddish), CRect());
    ExpectColour(TextColour(row, readout), 231, 235, 246);
}

TEST_F(ProbeSensor, WithoutAUsableSensorOnlyTheWarningIsShown)
{
    for (const SensorData& data : {Reading(36, 90, 0, 1), Reading(36, 90, 0, -2147483647 - 1),
                                   SensorData(), SensorData{false, 36, 90, 0, 2}}) {
        Row row;
        EXPECT_EQ(DrawReading(data, row), 200);
        const CRect warning = row.Where(IsReddish);
        EXPECT_NEAR((warning.left + warning.right) / 2.0, 101, 4) << "over the whole row";
        EXPECT_EQ(TextColour(row, CRect(0, 0, 200, 60)), 0xFFFF0000) << "and nothing pale";
    }
}

// The text is drawn whether the item is visible or not; the width is 0 only without a text.
TEST_F(ProbeSensor, AnEmptyWarningTakesNoRoom)
{
    TestStringTable empty;
    LoadWarnings(empty, "", "");
    DrawingRecord record;
    Row row;
    EXPECT_EQ(DrawReading({}, row), 0);
    EXPECT_EQ(record.Take(), Lines{L"family Arial"});
    EXPECT_EQ(DrawReading(Reading(39.9), row), 102) << "the gauge has the room";
}

TEST_F(ProbeSensor, AWarningOfABlankClaimsTheRow)
{
    TestStringTable blank;
    LoadWarnings(blank, " ", " ");
    Row row;
    EXPECT_EQ(DrawReading({}, row), 200);
    EXPECT_EQ(row.Drawn(), CRect());
}

// ---- Every text and shape, in drawing order

TEST_F(ProbeSensor, DrawsTheTemperatureAndThenTheGauge)
{
    DrawingRecord record;
    Row row;
    DrawReading(Reading(37.46, 44.6), row);
    EXPECT_EQ(record.Take(), (Lines{L"family Arial",
                                    L"37.5\xB0"
                                    L"C, 11pt bold, centre/centre, FFE7C4CD in 146 0 54 60",
                                    L"45\xB0, 11pt bold, centre/centre, FFE7EBF6 in 98 0 48 60",
                                    L"pie 64C8C8C8 in 98 -23.1 48 55.2 from 135.4 by 44.6",
                                    L"arc FFB4B496 2 wide in 98 -23.1 48 55.2 from 0 by 180"}));
}

TEST_F(ProbeSensor, DrawsInsideOfTheRectangleThatIsGiven)
{
    CStatusProbeSensor::setState(Reading(-0.04, 0.5));
    DrawingRecord record;
    Row row;
    EXPECT_EQ(item->drawIcon(CRect(10, 5, 150, 35), row.Graphics()), 102);
    EXPECT_EQ(record.Take(), (Lines{L"family Arial",
                                    L"-0.0\xB0"
                                    L"C, 11pt bold, centre/centre, FFE7EBF6 in 96 5 54 30",
                                    L"1\xB0, 11pt bold, centre/centre, FFE7EBF6 in 48 5 48 30",
                                    L"pie 64C8C8C8 in 48 -3.1 48 55.2 from 179.5 by 0.5",
                                    L"arc FFB4B496 2 wide in 48 -3.1 48 55.2 from 0 by 180"}));
}

TEST_F(ProbeSensor, DrawsTheShadowBeforeTheWarning)
{
    DrawingRecord record;
    Row row;
    DrawReading(Reading(39.9), row);
    EXPECT_EQ(record.Take(), (Lines{L"family Arial",
                                    L"39.9\xB0"
                                    L"C, 11pt bold, centre/centre, FFE70000 in 146 0 54 60",
                                    L"TOO HOT, 11pt bold, centre/centre, 64FF0000 in 2 2 146 60",
                                    L"TOO HOT, 11pt bold, centre/centre, FFFF0000 in 0 0 146 60"}));
}

TEST_F(ProbeSensor, DrawsTheWarningOfAMissingSensorOverTheWholeRow)
{
    CStatusProbeSensor::setState({});
    DrawingRecord record;
    Row row;
    item->drawIcon(CRect(50, 7, 180, 40), row.Graphics());
    EXPECT_EQ(
        record.Take(),
        (Lines{L"family Arial", L"NO SENSOR, 11pt bold, centre/centre, 64FF0000 in 2 9 180 33",
               L"NO SENSOR, 11pt bold, centre/centre, FFFF0000 in 0 7 180 33"}));
}

TEST_F(ProbeSensor, WritesWithoutArialToo)
{
    DrawingRecord record(false);
    Row row;
    DrawReading({}, row);
    const Lines lines = record.Take();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[1], L"family without serifs");
    EXPECT_EQ(lines[3], L"NO SENSOR, 11pt bold, centre/centre, FFFF0000 in 0 0 200 60");
    EXPECT_NE(row.Where(IsReddish), CRect());
}

// The outline is an arc, so nothing is drawn along the ellipse's diameter, at y = 4.5.
TEST_F(ProbeSensor, TheGaugesOutlineIsOpenAbove)
{
    Row row;
    DrawReading(Reading(36.0, 0), row);
    for (const int y : {3, 4, 5, 6})
        EXPECT_EQ(row.At(110, y), background) << y;
}

TEST_F(ProbeSensor, TakesNoRoomWhenItsWarningFindsNoMemory)
{
    Row row;
    int width = -1;
    {
        const test_support::NoMemory memory;
        test_support::NoMemory::From(0);
        EXPECT_NO_THROW(width = Draw(item, row));
    }
    EXPECT_EQ(width, 0);
    EXPECT_EQ(row.Drawn(), CRect());
}

TEST_F(ProbeSensor, InANarrowRowThereIsNoGauge)
{
    CStatusProbeSensor::setState(Reading(36));
    Row row;
    EXPECT_EQ(item->drawIcon(CRect(0, 0, 54, 60), row.Graphics()), 54);
    EXPECT_EQ(item->drawIcon(CRect(0, 0, 55, 60), row.Graphics()), 102);
    EXPECT_EQ(item->drawIcon(CRect(0, 0, 10, 60), row.Graphics()), 54);
    CStatusProbeSensor::setState({});
    EXPECT_EQ(item->drawIcon(CRect(0, 0, 10, 60), row.Graphics()), 10);
    EXPECT_EQ(item->drawIcon(CRect(0, 0, -5, 60), row.Graphics()), -5) << "the row's right edge";
}

TEST_F(ProbeSensor, BeginsAtTheTopOfTheRectangle)
{
    CStatusProbeSensor::setState(Reading(36));
    Row row(200, 90);
    item->drawIcon(CRect(0, 30, 200, 90), row.Graphics());
    const CRect text = row.Where([](Gdiplus::ARGB pixel) { return GetRValue(pixel) > 0xD0; });
    EXPECT_NEAR((text.top + text.bottom) / 2.0, 60, 5);
}

TEST_F(ProbeSensor, LogsWhatItDraws)
{
    LogCapture log;
    const auto texts = [&](const SensorData& data) {
        Row row;
        DrawReading(data, row);
        Lines found;
        for (const auto& message : log.Take()) {
            EXPECT_EQ(message.source, "Utils_Statics/StatusProbeSensor");
            EXPECT_EQ(message.level, 4);
            found.push_back(message.text);
        }
        return found;
    };
    EXPECT_EQ(texts(Reading(36)), (Lines{L"isSensorSupported 1 errorStatus 0 muxVersion 2\n",
                                         L"sensorData valid()\n"}));
    EXPECT_EQ(texts(Reading(40, 90, 255, 3)),
              (Lines{L"isSensorSupported 1 errorStatus 255 muxVersion 3\n", L"sensorData valid()\n",
                     L" hardware error status\n"}));
    EXPECT_EQ(
        texts({false, 36, 90, 1, -1}),
        (Lines{L"isSensorSupported 0 errorStatus 1 muxVersion -1\n", L"sensorData invalid()\n"}));
}

TEST_F(ProbeSensor, ReadingsThatAreNoNumbersDoNoHarm)
{
    for (const double temperature : {nan, infinity, -infinity, 1e308, -1e308, 5e-324})
        for (const double angle : {nan, infinity, -infinity, 1e308, -1e308, 720.0, -90.0}) {
            Row row;
            const int width = DrawReading(Reading(temperature, angle), row);
            EXPECT_EQ(width, temperature > 39.8 ? 200 : 102);
        }
    Row row;
    DrawReading(Reading(nan, 90), row);
    ExpectColour(TextColour(row, readout), 231, 235, 246);
}

TEST_F(ProbeSensor, TheThresholdIsReadAnewEachTime)
{
    EXPECT_EQ(CStatusProbeSensor::getTemperatureThreshold(), 39.8);
    SetText(L"TeeTempThresh", L"41.25");
    EXPECT_EQ(CStatusProbeSensor::getTemperatureThreshold(), 41.25);
    const std::pair<const wchar_t*, double> rows[] = {
        {L"hot", 0},  {L"", 0},         {L"  42", 42},   {L"40,5", 40},
        {L"4e1", 40}, {L"-3.5C", -3.5}, {L"39.8 ", 39.8}};
    for (const auto& [text, value] : rows) {
        SetText(L"TeeTempThresh", text);
        EXPECT_EQ(CStatusProbeSensor::getTemperatureThreshold(), value);
    }
    Row row;
    EXPECT_EQ(DrawReading(Reading(39.9), row), 200) << "the item keeps the one that it found";
}

// ---- Other settings, each in a process of its own, because the object reads them when it is made

// A reading, and the colour and width of its text.
struct Shown
{
    double temperature;
    int green, blue, width;
};
using AllShown = std::vector<Shown>;

struct Settings
{
    const char* name;
    const wchar_t *threshold, *warnStart;
    AllShown shown;
};

class ProbeSensorSettings : public StatusTest, public testing::WithParamInterface<Settings>
{
};

TEST_P(ProbeSensorSettings, DISABLED_OfChild)
{
    SetText(L"TeeTempThresh", GetParam().threshold);
    SetText(L"TeeTempWarnStart", GetParam().warnStart);
    TestStringTable table;
    LoadWarnings(table, "NO SENSOR", "TOO HOT");
    for (const Shown& shown : GetParam().shown) {
        SCOPED_TRACE(shown.temperature);
        CStatusProbeSensor::setState(Reading(shown.temperature));
        Row row;
        EXPECT_EQ(Draw(CStatusProbeSensor::getInstance(), row), shown.width);
        ExpectColour(TextColour(row, readout), 231, shown.green, shown.blue);
    }
    std::exit(HasFailure() ? 1 : 42);
}

TEST_P(ProbeSensorSettings, AreTakenWhenTheItemIsMade)
{
    test_support::ChildTest child(std::string("Each/ProbeSensorSettings.DISABLED_OfChild/") +
                                  GetParam().name);
    EXPECT_EQ(child.Wait(60'000), 42u);
}

// With the ramp's two ends equal, the fraction of the way is a division by zero.
const AllShown ofNoRamp{{37.9, 235, 246, 102}, {38, 235, 246, 102}, {38.1, 0, 0, 200}};
const AllShown ofAReversedRamp{{35, 0, 0, 102}, {37, 117, 123, 200}, {39, 235, 246, 200}};
const AllShown ofZeros{{-1, 235, 246, 102}, {0, 235, 246, 102}, {36, 0, 0, 200}};
const AllShown ofARamp{
    {39.9, 235, 246, 102}, {45, 117, 123, 102}, {50, 0, 0, 102}, {50.1, 0, 0, 200}};

INSTANTIATE_TEST_SUITE_P(
    Each, ProbeSensorSettings,
    testing::Values(Settings{"RampWithoutLength", L"38", L"38", ofNoRamp},
                    Settings{"RampThatEndsBeforeItStarts", L"36", L"38", ofAReversedRamp},
                    Settings{"SettingsThatAreNoNumbers", L"hot", L"warm", ofZeros},
                    Settings{"SettingsThatAreSet", L"50", L"40", ofARamp}),
    [](const auto& row) { return std::string(row.param.name); });

} // namespace
