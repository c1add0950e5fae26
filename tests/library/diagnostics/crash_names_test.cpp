// The names that the report gives to operating systems and exceptions.
#include "diagnostics/ReportSections.h"

#include <gtest/gtest.h>

namespace {

using utils_statics::ExceptionText;
using utils_statics::SystemName;

std::wstring NameOf(DWORD platform, DWORD major, DWORD minor, DWORD build)
{
    OSVERSIONINFOW system = {};
    system.dwPlatformId = platform;
    system.dwMajorVersion = major;
    system.dwMinorVersion = minor;
    system.dwBuildNumber = build;
    return SystemName(system);
}

TEST(SystemName, OfVersions)
{
    EXPECT_EQ(NameOf(VER_PLATFORM_WIN32_NT, 3, 51, 1057), L"Windows NT 3.51");
    EXPECT_EQ(NameOf(VER_PLATFORM_WIN32_NT, 4, 0, 1381), L"Windows NT 4");
    EXPECT_EQ(NameOf(VER_PLATFORM_WIN32_NT, 5, 0, 2195), L"Windows 2000");
    EXPECT_EQ(NameOf(VER_PLATFORM_WIN32_NT, 5, 1, 2600), L"Windows XP");
    EXPECT_EQ(NameOf(VER_PLATFORM_WIN32_NT, 5, 2, 3790), L"Windows 2003 Server");
    EXPECT_EQ(NameOf(3, 5, 0, 0), L"Windows CE");
}

TEST(SystemName, OfBuilds)
{
    constexpr DWORD windows = VER_PLATFORM_WIN32_WINDOWS;
    EXPECT_EQ(NameOf(windows, 4, 0, 0x04000000 | 950), L"Windows 95");
    EXPECT_EQ(NameOf(windows, 4, 0, 0x04000000 | 1080), L"Windows 95 SP1");
    EXPECT_EQ(NameOf(windows, 4, 0, 0x04000000 | 1111), L"Windows 95 OSR2");
    EXPECT_EQ(NameOf(windows, 4, 10, 0x040A0000 | 1998), L"Windows 98");
    EXPECT_EQ(NameOf(windows, 4, 10, 0x040A0000 | 2100), L"Windows 98 SP1");
    EXPECT_EQ(NameOf(windows, 4, 10, 0x040A0000 | 2222), L"Windows 98 SE");
    EXPECT_EQ(NameOf(windows, 4, 90, 0x045A0000 | 3000), L"Windows ME");
}

TEST(SystemName, OfAnythingElse)
{
    EXPECT_EQ(NameOf(VER_PLATFORM_WIN32_NT, 6, 1, 7601), L"unknown Windows version");
    EXPECT_EQ(NameOf(VER_PLATFORM_WIN32_NT, 10, 0, 19045), L"unknown Windows version");
    EXPECT_EQ(NameOf(VER_PLATFORM_WIN32_WINDOWS, 4, 20, 0), L"unknown Windows version");
    EXPECT_EQ(NameOf(0, 0, 0, 0), L"unknown Windows version");
}

TEST(ExceptionText, OfUnknownCodes)
{
    EXPECT_STREQ(ExceptionText(0), L"an Unknown exception type");
    EXPECT_STREQ(ExceptionText(0x80000001), L"an Unknown exception type");
    EXPECT_STREQ(ExceptionText(0xC000008C), L"a Array Bounds Exceeded");
}

} // namespace
