// A window shows how far packing is. Everything lives meanwhile, and the user may cancel.
#include "service/WorkWithProgress.h"

#include <base/Handles.h>
#include <gtest/gtest.h>
#include <test_support/Messages.h>
#include <test_support/TemporaryFolder.h>

#include <commctrl.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <vector>

using namespace exam;

namespace {

constexpr wchar_t title[] = L"Packing for a test";

CWinApp s_app;
std::function<void()> s_tick; // what a timer of the user-interface thread does

void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD)
{
    s_tick();
}

class ArchiveProgressTest : public testing::Test
{
protected:
    ArchiveProgressTest()
    {
        EXPECT_TRUE(m_owner.CreateEx(0, nullptr, L"owner", WS_POPUP | WS_VISIBLE,
                                     CRect(0, 0, 600, 400), nullptr, 0));
        m_timer = SetTimer(nullptr, 0, 20, Tick);
    }
    ~ArchiveProgressTest() override
    {
        KillTimer(nullptr, m_timer);
        m_owner.DestroyWindow();
    }

    bool IsEnabled() const { return IsWindowEnabled(m_owner.GetSafeHwnd()) != FALSE; }

    CWnd m_owner;
    UINT_PTR m_timer = 0;
};

} // namespace

TEST_F(ArchiveProgressTest, TheThreadOfTheWindowsLivesWhileAFileIsPacked)
{
    const base::Event seen(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    bool wasEnabled = true;
    std::wstring name;
    s_tick = [&] {
        const HWND window = FindWindowW(nullptr, title);
        wchar_t text[100] = {};
        GetWindowTextW(FindWindowExW(window, nullptr, L"STATIC", nullptr), text, 100);
        name = text;
        wasEnabled = IsEnabled();
        if (name == L"one.cine") SetEvent(seen.get());
    };
    const ArchiveResult result =
        WorkWithProgress(m_owner, title, [&](const ArchiveProgress& progress) {
            ArchiveResult done;
            EXPECT_TRUE(progress(0, 2, L"one.cine"));
            done.files = WaitForSingleObject(seen.get(), 60'000) == WAIT_OBJECT_0 ? 1 : 0;
            return done;
        });
    EXPECT_EQ(result.files, 1u);
    EXPECT_EQ(name, L"one.cine");
    EXPECT_FALSE(wasEnabled);
    EXPECT_TRUE(IsEnabled());
    EXPECT_EQ(FindWindowW(nullptr, title), nullptr);
}

TEST_F(ArchiveProgressTest, TheButtonAndEscapeCancel)
{
    for (const bool byKey : {false, true}) {
        s_tick = [&] {
            const HWND window = FindWindowW(nullptr, title);
            const HWND button = FindWindowExW(window, nullptr, L"BUTTON", nullptr);
            if (byKey)
                PostMessageW(button, WM_KEYDOWN, VK_ESCAPE, 1);
            else
                PostMessageW(button, BM_CLICK, 0, 0);
        };
        const ArchiveResult result =
            WorkWithProgress(m_owner, title, [](const ArchiveProgress& progress) {
                ArchiveResult done;
                for (; done.files < 3000 && !done.isCancelled; ++done.files) {
                    done.isCancelled = !progress(done.files, 3000, L"file");
                    Sleep(20);
                }
                return done;
            });
        EXPECT_TRUE(result.isCancelled) << byKey;
        EXPECT_LT(result.files, 3000u);
    }
}

TEST_F(ArchiveProgressTest, CancelEndsPackingWithinALargeFileAndLeavesNothing)
{
    const test_support::TemporaryFolder folder;
    const std::wstring large = folder / L"large.cine";
    {
        const base::File file(CreateFileW(large.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
        LARGE_INTEGER size{};
        size.QuadPart = 1 << 30;
        ASSERT_TRUE(SetFilePointerEx(file.get(), size, nullptr, FILE_BEGIN));
        ASSERT_TRUE(SetEndOfFile(file.get()));
    }
    s_tick = [&] {
        const HWND window = FindWindowW(nullptr, title);
        const HWND bar = FindWindowExW(window, nullptr, L"msctls_progress32", nullptr);
        if (SendMessageW(bar, PBM_GETPOS, 0, 0) == 0) return;
        PostMessageW(FindWindowExW(window, nullptr, L"BUTTON", nullptr), BM_CLICK, 0, 0);
    };
    std::vector<bool> goesOn; // after each block of the file
    const ArchiveResult result =
        WorkWithProgress(m_owner, title, [&](const ArchiveProgress& progress) {
            return PackFiles(folder / L"study.zip", {{large, L"S1\\large.cine"}},
                             [&](std::size_t done, std::size_t all, const std::wstring& name) {
                                 goesOn.push_back(progress(done, all, name));
                                 EXPECT_LT(done, all);
                                 return goesOn.back();
                             });
        });
    EXPECT_TRUE(result.isCancelled);
    EXPECT_EQ(std::ranges::count(goesOn, false), 1) << "it ends where it is told";
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}
