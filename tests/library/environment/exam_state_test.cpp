// The exam environment's state, its defaults and its small accessors.
#include <gtest/gtest.h>
#include <test_support/ImportHook.h>
#include <Utils_Statics/utilsExam.h>

#include <afxwin.h>

#include <string>

namespace {

CWinApp application(L"exam state test"); // the executable's own, beside the library's module object

TEST(ExamState, DefaultsAreThoseOfAFreshProcess)
{
    EXPECT_EQ(utilsExam::m_consoleType, eConsoleUnknown);
    EXPECT_TRUE(utilsExam::m_staticInit);
    EXPECT_TRUE(utilsExam::ThumbnailImagePath.IsEmpty());
    EXPECT_EQ(utilsExam::PharmaStart.GetTime(), 0);
    for (const bool flag :
         {utilsExam::DevMode, utilsExam::ServiceMode, utilsExam::AppExiting, utilsExam::AppInitDone,
          utilsExam::CursorClippingDisabled, utilsExam::Pharma, utilsExam::FusionMode,
          utilsExam::ResearchMode, utilsExam::m_bFullscreen, utilsExam::m_bLayoutLeft})
        EXPECT_FALSE(flag);
    EXPECT_EQ(utilsExam::m_hwndTutorial, nullptr);
}

TEST(ExamState, ConsoleTypeIsUnknownUntilItIsSet)
{
    EXPECT_EQ(utilsExam::GetConsoleType(), -1);
    EXPECT_STREQ(utilsExam::MapConsoleName(utilsExam::GetConsoleType()), L"Unknown");
    utilsExam::SetConsoleType(eConsoleTavren);
    EXPECT_EQ(utilsExam::GetConsoleType(), 4);
    utilsExam::SetConsoleType(static_cast<EConsoleType>(123456)); // is not validated
    EXPECT_EQ(utilsExam::m_consoleType, 123456);
    utilsExam::SetConsoleType(eConsoleUnknown);
}

TEST(ExamState, ConsoleNamesAndValuesMapBothWays)
{
    const struct
    {
        const wchar_t* name;
        int value;
    } rows[] = {{L"Pemmit", 0}, {L"Olkesh", 1}, {L"Vollet", 2},
                {L"Saquin", 3}, {L"Tavren", 4}, {L"Unknown", -1}};
    for (const auto& row : rows) {
        EXPECT_EQ(utilsExam::MapConsoleType(row.name), row.value);
        EXPECT_STREQ(utilsExam::MapConsoleName(static_cast<EConsoleType>(row.value)), row.name);
    }
}

TEST(ExamState, WhatIsNotInTheMapIsUnknown)
{
    EXPECT_EQ(utilsExam::MapConsoleType(L"tavren"), -1) << "names are compared exactly";
    EXPECT_EQ(utilsExam::MapConsoleType(L""), -1);
    EXPECT_EQ(utilsExam::MapConsoleType(nullptr), -1);
    EXPECT_STREQ(utilsExam::MapConsoleName(static_cast<EConsoleType>(5)), L"Unknown");
    EXPECT_STREQ(utilsExam::MapConsoleName(static_cast<EConsoleType>(-2147483647 - 1)), L"Unknown");
}

TEST(ExamState, ResearchModeCallbackIsIndependentOfTheFlag)
{
    utilsExam::ResearchMode = true;
    EXPECT_FALSE(utilsExam::IsResearchModeActive());
    utilsExam::ResearchMode = false;
    utilsExam::SetIsResearchModeActiveCallback([] { return true; });
    EXPECT_TRUE(utilsExam::IsResearchModeActive());
    utilsExam::SetIsResearchModeActiveCallback([] { return false; });
    EXPECT_FALSE(utilsExam::IsResearchModeActive());
    utilsExam::SetIsResearchModeActiveCallback(nullptr);
    EXPECT_FALSE(utilsExam::IsResearchModeActive());
}

TEST(ExamState, BuildIsNoVariant)
{
    EXPECT_FALSE(utilsExam::isTarrowBuild());
    EXPECT_FALSE(utilsExam::isPellanBuild());
    EXPECT_FALSE(utilsExam::isOEMBuild());
}

TEST(ExamState, FullscreenAndLayoutAreStored)
{
    utilsExam::SetFullscreen(true);
    EXPECT_TRUE(utilsExam::IsFullscreen());
    EXPECT_TRUE(utilsExam::m_bFullscreen);
    utilsExam::SetFullscreen(false);
    EXPECT_FALSE(utilsExam::IsFullscreen());
    utilsExam::SetLayoutLeft(true);
    EXPECT_TRUE(utilsExam::IsLayoutLeft());
    EXPECT_TRUE(utilsExam::m_bLayoutLeft);
    utilsExam::SetLayoutLeft(false);
    EXPECT_FALSE(utilsExam::IsLayoutLeft());
}

TEST(ExamState, TextsAndTimesOfTheApplicationAreKept)
{
    utilsExam::ThumbnailImagePath =
        L"D:\\thumbnails\\of\\a\\long\\enough\\name\\to\\be\\on\\the\\heap";
    utilsExam::PharmaStart = CTime(86400);
    EXPECT_EQ(utilsExam::ThumbnailImagePath.Left(2), CString(L"D:"));
    EXPECT_EQ(utilsExam::PharmaStart, CTime(86400));
    utilsExam::ThumbnailImagePath.Empty();
    utilsExam::PharmaStart = CTime();
}

// The library's requests to the process heap.
struct HeapRequest
{
    static BOOL WINAPI Record(HANDLE heap, HEAP_INFORMATION_CLASS what, void* value, SIZE_T size)
    {
        ++s_calls;
        EXPECT_EQ(heap, GetProcessHeap());
        EXPECT_EQ(what, HeapCompatibilityInformation);
        EXPECT_EQ(size, sizeof(ULONG));
        s_value = *static_cast<const ULONG*>(value);
        return FALSE; // a refusal is ignored
    }

    static inline int s_calls = 0;
    static inline ULONG s_value = 0;
};

TEST(ExamState, LowFragmentationHeapIsAskedFor)
{
    const test_support::ImportHook hook(L"Utils_Statics.dll", "HeapSetInformation",
                                        &HeapRequest::Record);
    utilsExam::EnableLowFragmentationHeap();
    EXPECT_EQ(HeapRequest::s_calls, 1);
    EXPECT_EQ(HeapRequest::s_value, 2u); // low-fragmentation heap
}

TEST(ExamState, ApplicationObjectIsTheExecutables)
{
    EXPECT_EQ(AfxGetApp(), &application)
        << "not the library's module object, which was constructed earlier";
}

} // namespace
