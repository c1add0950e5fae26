#include <gtest/gtest.h>

#include <afxcoll.h>

#include <list>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

static_assert(!std::is_copy_constructible_v<CStringArray> &&
              !std::is_copy_assignable_v<CStringList>);
static_assert(std::has_virtual_destructor_v<CStringList>);

namespace {

std::vector<std::wstring> Items(const CStringArray& array)
{
    std::vector<std::wstring> items;
    for (INT_PTR i = 0; i < array.GetSize(); ++i)
        items.emplace_back(array[i].GetString());
    return items;
}

std::vector<std::wstring> Forward(const CStringList& list)
{
    std::vector<std::wstring> items;
    for (POSITION position = list.GetHeadPosition(); position;)
        items.emplace_back(list.GetNext(position).GetString());
    return items;
}

std::vector<std::wstring> Backward(const CStringList& list)
{
    std::vector<std::wstring> items;
    for (POSITION position = list.GetTailPosition(); position;)
        items.emplace_back(list.GetPrev(position).GetString());
    return items;
}

using Texts = std::vector<std::wstring>;

} // namespace

TEST(CStringArray, KeepsTheNullCharactersOfATextHoweverItComes)
{
    const CString text(L"a\0b", 3);
    CStringArray array;
    array.Add(text);
    array.SetAtGrow(2, text);
    array.SetAt(1, text);
    array.InsertAt(0, text, 2);
    ASSERT_EQ(array.GetSize(), 5);
    for (const CString& kept : array)
        EXPECT_EQ(kept, text);
    CStringArray appended;
    appended.Append(array);
    EXPECT_EQ(appended[4].GetLength(), 3);
}

TEST(CStringList, KeepsTheNullCharactersOfATextHoweverItComes)
{
    const CString text(L"a\0b", 3);
    CStringList list;
    const POSITION head = list.AddHead(text);
    list.AddTail(text);
    list.InsertBefore(head, text);
    list.InsertAfter(head, text);
    list.SetAt(head, text);
    ASSERT_EQ(list.GetCount(), 4);
    for (POSITION position = list.GetHeadPosition(); position;)
        EXPECT_EQ(list.GetNext(position).GetLength(), 3);
}

TEST(CStringArray, GrowsAndKeepsOrder)
{
    CStringArray array;
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(array.GetUpperBound(), -1);
    EXPECT_EQ(array.Add(L"a"), 0);
    EXPECT_EQ(array.Add(L""), 1);
    EXPECT_EQ(array.Add(CString(L"c")), 2);
    EXPECT_EQ(Items(array), (Texts{L"a", L"", L"c"}));
    array[1] = L"b";
    array.SetAt(2, L"C");
    EXPECT_EQ(Items(array), (Texts{L"a", L"b", L"C"}));
    array.RemoveAll();
    EXPECT_EQ(array.GetCount(), 0);
}

TEST(CStringArray, InsertsAndRemoves)
{
    CStringArray array;
    array.InsertAt(2, L"c"); // beyond the end
    EXPECT_EQ(Items(array), (Texts{L"", L"", L"c"}));
    array.InsertAt(0, L"a", 2);
    EXPECT_EQ(Items(array), (Texts{L"a", L"a", L"", L"", L"c"}));
    array.RemoveAt(1, 3);
    EXPECT_EQ(Items(array), (Texts{L"a", L"c"}));
    array.RemoveAt(1, 100);
    array.RemoveAt(7);
    array.RemoveAt(-1);
    EXPECT_EQ(Items(array), (Texts{L"a"}));
    array.SetAtGrow(2, array[0]);
    EXPECT_EQ(Items(array), (Texts{L"a", L"", L"a"}));
    array.SetSize(1);
    EXPECT_EQ(Items(array), (Texts{L"a"}));
}

TEST(CStringArray, InsertsItsOwnElements)
{
    CStringArray array;
    array.Add(L"a long text that is not kept inside of the object");
    for (int i = 0; i < 100; ++i)
        array.InsertAt(0, array[0]);
    for (int i = 0; i < 100; ++i)
        array.Add(array[0]);
    for (const CString& text : array)
        EXPECT_EQ(text, L"a long text that is not kept inside of the object");
    EXPECT_EQ(array.GetSize(), 201);
}

TEST(CStringArray, AppendsAndCopiesArrays)
{
    CStringArray a;
    a.Add(L"1");
    a.Add(L"2");
    CStringArray b;
    b.Copy(a);
    EXPECT_EQ(b.Append(a), 2);
    EXPECT_EQ(Items(b), (Texts{L"1", L"2", L"1", L"2"}));
    EXPECT_EQ(a.Append(a), 2);
    EXPECT_EQ(Items(a), (Texts{L"1", L"2", L"1", L"2"}));
}

TEST(CStringList, LinksInBothDirections)
{
    CStringList list(10);
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetHeadPosition(), nullptr);
    const POSITION b = list.AddTail(L"b");
    list.AddHead(L"a");
    list.InsertAfter(b, L"d");
    list.InsertBefore(list.GetTailPosition(), L"c");
    EXPECT_EQ(Forward(list), (Texts{L"a", L"b", L"c", L"d"}));
    EXPECT_EQ(Backward(list), (Texts{L"d", L"c", L"b", L"a"}));
    EXPECT_EQ(list.GetHead(), L"a");
    EXPECT_EQ(list.GetTail(), L"d");
    EXPECT_EQ(list.GetCount(), 4);
}

TEST(CStringList, InsertsAtTheEndsWithoutAPosition)
{
    CStringList list;
    list.InsertAfter(nullptr, L"b");
    list.InsertBefore(nullptr, L"a");
    EXPECT_EQ(Forward(list), (Texts{L"a", L"b"}));
}

TEST(CStringList, FindsByTextAndByIndex)
{
    CStringList list;
    for (const wchar_t* text : {L"a", L"b", L"a"})
        list.AddTail(text);
    const POSITION first = list.Find(L"a");
    EXPECT_EQ(first, list.GetHeadPosition());
    EXPECT_EQ(list.Find(L"a", first), list.GetTailPosition());
    EXPECT_EQ(list.Find(L"a", list.GetTailPosition()), nullptr);
    EXPECT_EQ(list.Find(L"x"), nullptr);
    EXPECT_EQ(list.GetAt(list.FindIndex(1)), L"b");
    EXPECT_EQ(list.FindIndex(3), nullptr);
    EXPECT_EQ(list.FindIndex(-1), nullptr);
}

TEST(CStringList, KeepsOtherPositionsWhenOneIsRemoved)
{
    CStringList list;
    const POSITION a = list.AddTail(L"a");
    const POSITION b = list.AddTail(L"b");
    const POSITION c = list.AddTail(L"c");
    list.RemoveAt(b);
    EXPECT_EQ(list.GetAt(a), L"a");
    EXPECT_EQ(list.GetAt(c), L"c");
    list.SetAt(c, L"C");
    EXPECT_EQ(Forward(list), (Texts{L"a", L"C"}));
    EXPECT_EQ(list.RemoveTail(), L"C");
    EXPECT_EQ(list.RemoveHead(), L"a");
    EXPECT_EQ(list.RemoveHead(), L"");
    EXPECT_TRUE(list.IsEmpty());
}

TEST(CStringList, AddsItsOwnElements)
{
    CStringList list(1);
    list.AddTail(L"a long text that is not kept inside of the object");
    for (int i = 0; i < 20; ++i)
        list.AddTail(list.GetHead());
    EXPECT_EQ(list.GetTail(), list.GetHead());
    list.AddTail(list.RemoveHead());
    EXPECT_EQ(list.GetCount(), 21);
}

TEST(CStringList, AgreesWithAReferenceUnderRandomOperations)
{
    std::mt19937 random(11);
    for (const INT_PTR blockSize : {-1, 1, 3, 10}) {
        CStringList list(blockSize);
        std::list<std::wstring> reference;
        for (int step = 0; step < 5000; ++step) {
            const std::wstring text = std::to_wstring(step);
            switch (random() % 6) {
            case 0: list.AddHead(text.c_str()), reference.push_front(text); break;
            case 1:
            case 2: list.AddTail(text.c_str()), reference.push_back(text); break;
            case 3:
                if (!reference.empty()) reference.pop_front();
                list.RemoveHead();
                break;
            case 4:
                if (!reference.empty()) {
                    const size_t index = random() % reference.size();
                    reference.erase(
                        std::next(reference.begin(), static_cast<std::ptrdiff_t>(index)));
                    list.RemoveAt(list.FindIndex(static_cast<INT_PTR>(index)));
                }
                break;
            default:
                if (random() % 200 == 0) list.RemoveAll(), reference.clear();
            }
            ASSERT_EQ(list.GetCount(), static_cast<INT_PTR>(reference.size()));
            if (step % 50 == 0) {
                ASSERT_EQ(Forward(list), Texts(reference.begin(), reference.end()));
            }
        }
        EXPECT_EQ(Backward(list), Texts(reference.rbegin(), reference.rend()));
    }
}
