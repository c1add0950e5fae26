#include <gtest/gtest.h>
#include <Utils_Statics/MfcConversions.h>

#include <climits>

using namespace QOR_MFC_CONVERSIONS;

namespace {

TEST(PointConversion, CopiesBothCoordinatesInBothForms)
{
    const UPoint point{INT_MIN, INT_MAX};
    const CPoint platform = QOR_2_MFC(point);
    EXPECT_EQ(platform, CPoint(INT_MIN, INT_MAX));
    CPoint filled(1, 2);
    QOR_2_MFC(point, filled);
    EXPECT_EQ(filled, platform);

    EXPECT_EQ(MFC_2_QOR(CPoint(-3, 4)), (UPoint{-3, 4}));
    UPoint back{1, 2};
    MFC_2_QOR(platform, back);
    EXPECT_EQ(back, point);
}

TEST(RectConversion, CopiesTheFourEdgesInOrderWithoutNormalisation)
{
    const URect inverted{9, 8, -7, -6};
    const CRect platform = QOR_2_MFC(inverted);
    EXPECT_EQ(platform, CRect(9, 8, -7, -6));
    CRect filled(1, 2, 3, 4);
    QOR_2_MFC(inverted, filled);
    EXPECT_EQ(filled, platform);

    EXPECT_EQ(MFC_2_QOR(CRect(1, 2, 3, 4)), (URect{1, 2, 3, 4}));
    URect back;
    MFC_2_QOR(platform, back);
    EXPECT_EQ(back, inverted);
}

TEST(TextConversion, CopiesTheCharactersInBothForms)
{
    const std::wstring text = L"gr\u00f6\u00dfe \U0001F600";
    EXPECT_EQ(QOR_2_MFC(text), text.c_str());
    CString filled(L"before");
    QOR_2_MFC(text, filled);
    EXPECT_EQ(filled, text.c_str());

    EXPECT_EQ(MFC_2_QOR(CString(text.c_str())), text);
    std::wstring back = L"before";
    MFC_2_QOR(filled, back);
    EXPECT_EQ(back, text);
}

TEST(TextConversion, KeepsZeroCharactersWithinTheText)
{
    const std::wstring text(L"a\0b", 3);
    EXPECT_EQ(QOR_2_MFC(text).GetLength(), 3);
    EXPECT_EQ(MFC_2_QOR(QOR_2_MFC(text)), text);
}

TEST(TextConversion, GivesAnEmptyTextForAnEmptyOne)
{
    EXPECT_TRUE(QOR_2_MFC(std::wstring()).IsEmpty());
    EXPECT_TRUE(MFC_2_QOR(CString()).empty());
    CString filled(L"before");
    QOR_2_MFC(std::wstring(), filled);
    EXPECT_TRUE(filled.IsEmpty());
    std::wstring back = L"before";
    MFC_2_QOR(CString(static_cast<const wchar_t*>(nullptr)), back);
    EXPECT_TRUE(back.empty());
}

} // namespace
