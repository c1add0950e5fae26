// Checks that each alias releases its resource, and knows the platform's value for "none".
#include "test_support/Files.h"
#include "test_support/Program.h"
#include "test_support/TemporaryFolder.h"
#include "test_support/TemporaryRegistryKey.h"

#include <base/GdiHandles.h>
#include <base/Handles.h>
#include <gtest/gtest.h>

#include <type_traits>

namespace {

bool IsOpen(HANDLE handle)
{
    DWORD flags = 0;
    return GetHandleInformation(handle, &flags) != FALSE;
}

base::File OpenFile(const std::wstring& path, DWORD how)
{
    return base::File(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, how, 0, nullptr));
}

LRESULT CALLBACK PassOn(int code, WPARAM wParam, LPARAM lParam)
{
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// A file must not be taken for an event, because their values for "none" differ.
static_assert(!std::is_same_v<base::File, base::Event>);
static_assert(!std::is_same_v<base::File, base::Find>);

} // namespace

TEST(Handles, FileThatCannotBeOpenedIsEmpty)
{
    const test_support::TemporaryFolder folder;
    const base::File missing = OpenFile(folder / L"missing", OPEN_EXISTING);
    EXPECT_FALSE(missing);
    EXPECT_EQ(missing.get(), INVALID_HANDLE_VALUE);
}

TEST(Handles, FileIsClosed)
{
    const test_support::TemporaryFolder folder;
    base::File file = OpenFile(folder / L"file", CREATE_NEW);
    ASSERT_TRUE(file);
    const HANDLE handle = file.get();
    file.reset();
    EXPECT_FALSE(IsOpen(handle));
    EXPECT_TRUE(OpenFile(folder / L"file", OPEN_EXISTING)) << "still open without sharing";
}

TEST(Handles, EventThatCannotBeOpenedIsEmpty)
{
    const base::Event missing(OpenEventW(SYNCHRONIZE, FALSE, L"no event has this name"));
    EXPECT_FALSE(missing);
    EXPECT_EQ(missing.get(), nullptr);
}

TEST(Handles, EventIsClosed)
{
    base::Event event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    ASSERT_TRUE(event);
    const HANDLE handle = event.get();
    event.reset();
    EXPECT_FALSE(IsOpen(handle));
}

TEST(Handles, FindIsEmptyWhereNothingIsFound)
{
    const test_support::TemporaryFolder folder;
    WIN32_FIND_DATAW entry;
    const base::Find none(FindFirstFileW((folder / L"*.none").c_str(), &entry));
    EXPECT_FALSE(none);
    EXPECT_EQ(none.get(), INVALID_HANDLE_VALUE);
}

TEST(Handles, FindIsClosed)
{
    const test_support::TemporaryFolder folder;
    test_support::WriteFile(folder / L"one", "");
    WIN32_FIND_DATAW entry;
    base::Find find(FindFirstFileW((folder / L"*").c_str(), &entry));
    ASSERT_TRUE(find);
    find.reset();
    EXPECT_TRUE(RemoveDirectoryW(folder.Path().c_str()) == FALSE) << "the folder is not empty";
    EXPECT_TRUE(DeleteFileW((folder / L"one").c_str()));
    EXPECT_TRUE(RemoveDirectoryW(folder.Path().c_str())) << "the enumeration still holds it";
}

TEST(Handles, RegistryKeyIsClosed)
{
    const test_support::TemporaryRegistryKey place;
    base::RegistryKey key;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, place.Path().c_str(), 0, KEY_READ, key.put()),
              ERROR_SUCCESS);
    ASSERT_TRUE(key);
    const HKEY handle = key.get();
    key.reset();
    EXPECT_EQ(RegQueryInfoKeyW(handle, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               nullptr, nullptr, nullptr, nullptr, nullptr),
              ERROR_INVALID_HANDLE);
}

TEST(Handles, RegistryKeyThatIsMissingIsEmpty)
{
    base::RegistryKey key;
    EXPECT_NE(RegOpenKeyExW(HKEY_CURRENT_USER, L"no key has this name", 0, KEY_READ, key.put()),
              ERROR_SUCCESS);
    EXPECT_FALSE(key);
}

TEST(Handles, ModuleIsUnloaded)
{
    base::Module module(LoadLibraryW(L"base_module.dll"));
    ASSERT_TRUE(module);
    EXPECT_EQ(GetModuleHandleW(L"base_module.dll"), module.get());
    module.reset();
    EXPECT_EQ(GetModuleHandleW(L"base_module.dll"), nullptr);
}

TEST(Handles, HookIsTakenOff)
{
    base::Hook hook(SetWindowsHookExW(WH_CBT, &PassOn, nullptr, GetCurrentThreadId()));
    ASSERT_TRUE(hook);
    const HHOOK handle = hook.get();
    hook.reset();
    EXPECT_FALSE(UnhookWindowsHookEx(handle)) << "it was still set";
}

namespace {

static_assert(!std::is_copy_constructible_v<base::Selection> &&
              !std::is_move_constructible_v<base::Selection>);
static_assert(!std::is_copy_constructible_v<base::WindowContext> &&
              !std::is_move_constructible_v<base::WindowContext>);

class GdiHandles : public testing::Test
{
protected:
    HGDIOBJ Selected() const { return GetCurrentObject(m_context.get(), OBJ_BITMAP); }

    base::MemoryContext m_context{CreateCompatibleDC(nullptr)};
    base::Bitmap m_bitmap{CreateBitmap(4, 4, 1, 32, nullptr)};
    HGDIOBJ m_original = Selected();
};

} // namespace

TEST_F(GdiHandles, ObjectIsDeleted)
{
    const HBITMAP handle = m_bitmap.get();
    EXPECT_EQ(GetObjectType(handle), static_cast<DWORD>(OBJ_BITMAP));
    m_bitmap.reset();
    EXPECT_EQ(GetObjectType(handle), 0u);
}

TEST_F(GdiHandles, MemoryContextIsDeleted)
{
    const HDC handle = m_context.get();
    EXPECT_EQ(GetObjectType(handle), static_cast<DWORD>(OBJ_MEMDC));
    m_context.reset();
    EXPECT_EQ(GetObjectType(handle), 0u);
}

TEST_F(GdiHandles, WindowContextIsReleased)
{
    HDC handle = nullptr;
    {
        const base::WindowContext screen(nullptr);
        ASSERT_TRUE(screen);
        handle = screen.get();
        EXPECT_GT(GetDeviceCaps(handle, HORZRES), 0);
    }
    EXPECT_FALSE(ReleaseDC(nullptr, handle)) << "it was still held";
}

TEST_F(GdiHandles, WindowContextOfNoWindowIsEmpty)
{
    const base::WindowContext none(reinterpret_cast<HWND>(1));
    EXPECT_FALSE(none);
    EXPECT_EQ(none.get(), nullptr);
}

TEST_F(GdiHandles, SelectionPutsBackWhatWasSelected)
{
    {
        const base::Selection selection(m_context.get(), m_bitmap.get());
        EXPECT_TRUE(selection);
        EXPECT_EQ(Selected(), m_bitmap.get());
    }
    EXPECT_EQ(Selected(), m_original);
}

TEST_F(GdiHandles, SelectionsWithinEachOtherEndInTurn)
{
    const base::Bitmap other(CreateBitmap(2, 2, 1, 32, nullptr));
    {
        const base::Selection outer(m_context.get(), m_bitmap.get());
        {
            const base::Selection inner(m_context.get(), other.get());
            EXPECT_EQ(Selected(), other.get());
        }
        EXPECT_EQ(Selected(), m_bitmap.get());
    }
    EXPECT_EQ(Selected(), m_original);
}

TEST_F(GdiHandles, SelectionOfNothingSelectsNothing)
{
    {
        const base::Selection noObject(m_context.get(), nullptr);
        EXPECT_FALSE(noObject);
        const base::Selection noContext(nullptr, m_bitmap.get());
        EXPECT_FALSE(noContext);
        EXPECT_EQ(Selected(), m_original);
    }
    EXPECT_EQ(Selected(), m_original);
}

TEST_F(GdiHandles, RefusedSelectionSaysSoAndChangesNothing)
{
    const base::MemoryContext second(CreateCompatibleDC(nullptr));
    const base::Selection first(m_context.get(), m_bitmap.get());
    const HGDIOBJ before = GetCurrentObject(second.get(), OBJ_BITMAP);
    {
        const base::Selection refused(second.get(), m_bitmap.get());
        EXPECT_FALSE(refused) << "one bitmap, two contexts";
    }
    EXPECT_EQ(GetCurrentObject(second.get(), OBJ_BITMAP), before);
    EXPECT_EQ(Selected(), m_bitmap.get());
}
