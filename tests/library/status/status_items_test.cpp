// The items of one pattern: burning, transfer, recording, tracking and the wired network.
#include "StatusFixture.h"

#include <test_support/Files.h>
#include <test_support/VirtualPlace.h>
#include <Utils_Statics/CStatusBurning.h>
#include <Utils_Statics/CStatusFtpTransfer.h>
#include <Utils_Statics/CStatusGps.h>
#include <Utils_Statics/CStatusNetwork.h>
#include <Utils_Statics/CStatusRecording.h>

#include <algorithm>
#include <string>
#include <type_traits>

namespace {

constexpr Gdiplus::ARGB green = 0xFF00C000, orange = 0xFFFFA000;

struct Pattern
{
    const char* name;
    IStatusItem* (*item)();
    void (*setState)(bool);
    bool (*getState)();
    bool (*query)();
    const wchar_t* setting; // null: no setting
    const wchar_t* iconOn;
    const wchar_t* iconOff; // null: no icon
};

template <class Item>
IStatusItem* Of()
{
    return Item::getInstance();
}

const Pattern patterns[] = {
    {"Burning", Of<CStatusBurning>, CStatusBurning::setState,
     [] { return CStatusBurning::getState(); }, [] { return CStatusBurning::isBurning(); },
     L"CDBurning", L"burn.png", nullptr},
    {"FtpTransfer", Of<CStatusFtpTransfer>, CStatusFtpTransfer::setState,
     [] { return CStatusFtpTransfer::getState(); },
     [] { return CStatusFtpTransfer::isTransferring(); }, L"FTPTransfer", L"ftpconnectionon.png",
     nullptr},
    {"Recording", Of<CStatusRecording>, CStatusRecording::setState,
     [] { return CStatusRecording::getState(); }, [] { return CStatusRecording::isRecording(); },
     L"CineRecording", L"cineiRecord.png", nullptr},
    {"Network", Of<CStatusNetwork>, CStatusNetwork::setState,
     [] { return CStatusNetwork::getState(); }, [] { return CStatusNetwork::isConnected(); },
     L"NetworkConnection", L"connectionon.png", L"connection.png"},
    {"Gps", Of<CStatusGps>, CStatusGps::setState, nullptr, nullptr, nullptr, L"pacemaker.png",
     nullptr}};

// Asked when the program starts, before any test.
const bool s_isAnyOnAtTheStart =
    std::any_of(std::begin(patterns), std::end(patterns),
                [](const Pattern& pattern) { return pattern.getState && pattern.getState(); });

class PatternItem : public StatusTest, public testing::WithParamInterface<Pattern>
{
protected:
    PatternItem()
    {
        Want(false);
        GetParam().setState(false);
        WriteIcon(GetParam().iconOn, 24, 20, green);
        if (GetParam().iconOff) WriteIcon(GetParam().iconOff, 22, 18, orange);
        repaints = 0;
    }
    ~PatternItem() override
    {
        Want(false);
        GetParam().setState(false);
    }

    // Sets the item's setting and lets the item read it.
    void Want(bool isWanted) const
    {
        if (GetParam().setting) Set(GetParam().setting, isWanted ? 1 : 0);
        Item()->updateVisibleState();
    }
    static IStatusItem* Item() { return GetParam().item(); }
    // The icon for a setting and a state.
    static const wchar_t* Icon(bool isWanted, bool state)
    {
        const Pattern& pattern = GetParam();
        if (!isWanted && pattern.setting) return nullptr;
        return state ? pattern.iconOn : pattern.iconOff;
    }
};

class ItemWithSetting : public PatternItem
{
};

TEST_P(PatternItem, IsOneObject)
{
    EXPECT_NE(Item(), nullptr);
    EXPECT_EQ(Item(), Item());
}

TEST_P(PatternItem, ShowsWhatSettingAndStateSay)
{
    for (const bool isWanted : {false, true})
        for (const bool state : {false, true}) {
            Want(isWanted);
            GetParam().setState(state);
            const wchar_t* const icon = Icon(isWanted, state);
            EXPECT_EQ(Item()->isVisible(), icon != nullptr) << isWanted << state;
            Row row;
            const int width = Draw(Item(), row);
            if (!icon) {
                EXPECT_EQ(width, 0);
                EXPECT_EQ(row.Drawn(), CRect());
            } else if (icon == GetParam().iconOn) {
                EXPECT_EQ(width, 24);
                EXPECT_EQ(row.Drawn(), CRect(176, 20, 200, 40));
                EXPECT_EQ(row.At(180, 30), green);
            } else {
                EXPECT_EQ(width, 22);
                EXPECT_EQ(row.Drawn(), CRect(178, 21, 200, 39));
                EXPECT_EQ(row.At(180, 30), orange);
            }
        }
}

TEST_P(ItemWithSetting, AnswersItsState)
{
    for (const bool state : {true, false, true}) {
        GetParam().setState(state);
        EXPECT_EQ(GetParam().getState(), state);
        EXPECT_EQ(GetParam().query(), state);
    }
}

TEST_P(PatternItem, AsksForARepaintWithEverySet)
{
    int expected = 0;
    for (const bool state : {true, true, false, false}) {
        GetParam().setState(state);
        EXPECT_EQ(repaints, ++expected) << "also when nothing changed";
    }
    Item()->issueUpdate();
    EXPECT_EQ(repaints, ++expected);
    IStatusItem::SetStatusCallback(nullptr);
    GetParam().setState(true);
    EXPECT_EQ(repaints, expected);
}

TEST_P(ItemWithSetting, NoticesItsSettingOnlyWhenItIsTold)
{
    GetParam().setState(true);
    Set(GetParam().setting, 1);
    EXPECT_FALSE(Item()->isVisible());
    Item()->updateVisibleState();
    EXPECT_TRUE(Item()->isVisible());
    Set(GetParam().setting, 0);
    EXPECT_TRUE(Item()->isVisible());
    Item()->updateVisibleState();
    EXPECT_FALSE(Item()->isVisible());
    EXPECT_EQ(repaints, 1) << "reading the setting asks for no repaint";
}

TEST_P(ItemWithSetting, AnyNumberButZeroMeansWanted)
{
    GetParam().setState(true);
    for (const DWORD number : {2u, 0x80000000u, 0xFFFFFFFFu, 256u}) {
        Set(GetParam().setting, number);
        Item()->updateVisibleState();
        EXPECT_TRUE(Item()->isVisible()) << number;
    }
}

TEST_P(PatternItem, DrawsInThePartOfTheRowThatIsGiven)
{
    Want(true);
    GetParam().setState(true);
    Row row;
    EXPECT_EQ(Item()->drawIcon(CRect(10, 0, 100, 60), row.Graphics()), 24);
    EXPECT_EQ(row.Drawn(), CRect(76, 20, 100, 40));
}

// Only the row's height counts, not its position.
TEST_P(PatternItem, IgnoresTheTopEdge)
{
    Want(true);
    GetParam().setState(true);
    Row row;
    EXPECT_EQ(Item()->drawIcon(CRect(0, 30, 100, 60), row.Graphics()), 24);
    EXPECT_EQ(row.Drawn(), CRect(76, 5, 100, 25));
}

TEST_P(PatternItem, RoundsAnOddRestDown)
{
    Want(true);
    GetParam().setState(true);
    Row row;
    EXPECT_EQ(Item()->drawIcon(CRect(0, 0, 100, 23), row.Graphics()), 24);
    EXPECT_EQ(row.Drawn(), CRect(76, 1, 100, 21));
}

TEST_P(PatternItem, TooHighForTheRowIsNotSeenButTakesItsWidth)
{
    Want(true);
    GetParam().setState(true);
    Row row;
    EXPECT_EQ(Item()->drawIcon(CRect(0, 0, 100, 19), row.Graphics()), 24);
    EXPECT_EQ(row.Drawn(), CRect());
    EXPECT_EQ(Item()->drawIcon(CRect(0, 50, 100, 20), row.Graphics()), 24) << "a reversed row";
    EXPECT_EQ(row.Drawn(), CRect());
}

TEST_P(PatternItem, TooWideForTheRowIsCutAtTheLeft)
{
    Want(true);
    GetParam().setState(true);
    Row row;
    EXPECT_EQ(Item()->drawIcon(CRect(0, 0, 10, 60), row.Graphics()), 24);
    EXPECT_EQ(row.Drawn(), CRect(0, 20, 10, 40));
    EXPECT_EQ(Item()->drawIcon(CRect(0, 0, -2147483647 - 1, 60), row.Graphics()), 24);
    EXPECT_EQ(Item()->drawIcon(CRect(0, -2147483647 - 1, 10, 2147483647), row.Graphics()), 24);
}

TEST_P(PatternItem, WithoutItsFileTakesNoRoom)
{
    Want(true);
    GetParam().setState(true);
    DeleteFileW(IconFile(GetParam().iconOn).c_str());
    Row row;
    EXPECT_EQ(Draw(Item(), row), 0);
    EXPECT_EQ(row.Drawn(), CRect());
    EXPECT_TRUE(Item()->isVisible());
}

TEST_P(PatternItem, KeepsAFailureOfTheDrawingToTheGraphics)
{
    Want(true);
    GetParam().setState(true);
    Row row;
    EXPECT_EQ(Draw(Item(), row), 24);
    EXPECT_EQ(row.Graphics().GetLastStatus(), Gdiplus::Ok);
    Gdiplus::Graphics nowhere(static_cast<HDC>(nullptr)); // refuses everything
    nowhere.GetLastStatus(); // clears the error of being made of nothing
    EXPECT_EQ(Item()->drawIcon(row.Whole(), nowhere), 24);
    EXPECT_NE(nowhere.GetLastStatus(), Gdiplus::Ok);
}

std::string NameOf(const testing::TestParamInfo<Pattern>& row)
{
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(Each, PatternItem, testing::ValuesIn(patterns), NameOf);
// The tracking, which is the last, has no setting and is never asked for its state.
INSTANTIATE_TEST_SUITE_P(Each, ItemWithSetting,
                         testing::ValuesIn(std::begin(patterns), std::prev(std::end(patterns))),
                         NameOf);

TEST(StatusItem, IsOffUntilItIsSet)
{
    EXPECT_FALSE(s_isAnyOnAtTheStart);
}

TEST(StatusItem, HasItsOperationsInOrder)
{
    using test_support::VirtualPlace;
    // The destructor takes the first two places in this compiler's tables.
    EXPECT_EQ(VirtualPlace(&IStatusItem::issueUpdate), 2u);
    EXPECT_EQ(VirtualPlace(&IStatusItem::updateVisibleState), 3u);
    EXPECT_EQ(VirtualPlace(&IStatusItem::isVisible), 4u);
    EXPECT_EQ(VirtualPlace(&IStatusItem::drawIcon), 5u);
    static_assert(std::has_virtual_destructor_v<IStatusItem>);
    static_assert(std::is_abstract_v<IStatusItem>);
}

template <class Item>
concept CanBeDrawnDirectly = requires(Item& item, Gdiplus::Graphics& graphics)
{
    item.drawIcon(CRect(), graphics);
};

TEST(StatusItem, IsDrawnThroughTheBaseOnly)
{
    static_assert(CanBeDrawnDirectly<IStatusItem>);
    static_assert(!CanBeDrawnDirectly<CStatusBurning>);
    static_assert(!CanBeDrawnDirectly<CStatusNetwork>);
    static_assert(!std::is_default_constructible_v<CStatusGps>);
    SUCCEED();
}

TEST(StatusCallback, MayBeMissing)
{
    IStatusItem::SetStatusCallback(nullptr);
    IStatusItem::IssueStatusUpdate();
    CStatusBurning::setState(true);
    EXPECT_TRUE(CStatusBurning::getState()) << "the state is kept";
    CStatusBurning::setState(false);
}

int s_first, s_second;

TEST(StatusCallback, IsReplacedAndCalledOnceEachTime)
{
    IStatusItem::SetStatusCallback([] { ++s_first; });
    IStatusItem::IssueStatusUpdate();
    IStatusItem::SetStatusCallback([] { ++s_second; });
    IStatusItem::IssueStatusUpdate();
    IStatusItem::IssueStatusUpdate();
    IStatusItem::SetStatusCallback(nullptr);
    IStatusItem::IssueStatusUpdate();
    EXPECT_EQ(s_first, 1);
    EXPECT_EQ(s_second, 2);
}

TEST(StatusCallback, MayThrowThroughTheSetter)
{
    IStatusItem::SetStatusCallback([] { throw 7; });
    EXPECT_THROW(CStatusBurning::setState(true), int);
    EXPECT_TRUE(CStatusBurning::getState());
    IStatusItem::SetStatusCallback(nullptr);
    CStatusBurning::setState(false);
}

} // namespace
