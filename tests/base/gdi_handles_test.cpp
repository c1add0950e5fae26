#include <base/GdiHandles.h>
#include <gtest/gtest.h>

#include <type_traits>

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
