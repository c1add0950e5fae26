// The profile reader, on the real registry.
#include "Readers.h"

#include <gtest/gtest.h>
#include <qor_utils/HostProfile.h>
#include <qor_utils/Profile.h>
#include <test_support/TemporaryRegistryKey.h>

#include <string>

namespace {

using qor_utils::ReadProfileInt;
using qor_utils::ReadProfileString;

constexpr wchar_t section[] = L"System\\Path";

class Profile : public testing::Test
{
protected:
    Profile() { qor_utils::SetProfileRoot(m_key.Path().c_str()); }
    ~Profile() override { qor_utils::SetProfileRoot(nullptr); }

    void SetBytes(const wchar_t* name, DWORD type, const std::string& bytes)
    {
        m_key.Set(section, name, type, bytes.data(), static_cast<DWORD>(bytes.size()));
    }

    test_support::TemporaryRegistryKey m_key;
};

TEST_F(Profile, ReadsATextAndANumber)
{
    m_key.SetText(section, L"Data", L"D:\\data");
    m_key.SetNumber(section, L"Count", 42);
    EXPECT_EQ(ReadProfileString(section, L"Data", L"x"), L"D:\\data");
    EXPECT_EQ(ReadProfileInt(section, L"Count", 7), 42);
}

TEST_F(Profile, GivesTheDefaultForWhatIsMissing)
{
    EXPECT_EQ(ReadProfileString(section, L"Data", L"C:\\default"), L"C:\\default");
    EXPECT_EQ(ReadProfileInt(section, L"Count", 7), 7);
    m_key.SetText(section, L"Other", L"x");
    EXPECT_EQ(ReadProfileString(section, L"Data", L"C:\\default"), L"C:\\default");
    EXPECT_EQ(ReadProfileInt(section, L"Count", -7), -7);
}

TEST_F(Profile, TakesNullsForMissing)
{
    EXPECT_EQ(ReadProfileString(nullptr, L"Data", L"d"), L"d");
    EXPECT_EQ(ReadProfileString(section, nullptr, L"d"), L"d");
    EXPECT_EQ(ReadProfileString(section, L"Data", nullptr), L"");
    EXPECT_EQ(ReadProfileInt(nullptr, L"Count", 7), 7);
    EXPECT_EQ(ReadProfileInt(section, nullptr, 7), 7);
}

TEST_F(Profile, GivesTheDefaultForAnotherType)
{
    m_key.SetNumber(section, L"Data", 42);
    m_key.SetText(section, L"Count", L"42");
    EXPECT_EQ(ReadProfileString(section, L"Data", L"d"), L"d");
    EXPECT_EQ(ReadProfileInt(section, L"Count", 7), 7);
    SetBytes(L"Data", REG_BINARY, "abcd");
    EXPECT_EQ(ReadProfileString(section, L"Data", L"d"), L"d");
    SetBytes(L"Data", REG_MULTI_SZ, std::string("a\0b\0\0\0\0\0", 8));
    EXPECT_EQ(ReadProfileString(section, L"Data", L"d"), L"d");
}

TEST_F(Profile, GivesTheDefaultForANumberOfAnotherSize)
{
    for (const std::size_t size : {0u, 1u, 3u, 5u, 8u}) {
        SetBytes(L"Count", REG_DWORD, std::string(size, '\1'));
        EXPECT_EQ(ReadProfileInt(section, L"Count", 7), 7) << size << " bytes";
    }
}

TEST_F(Profile, ReadsNumbersAsSigned)
{
    m_key.SetNumber(section, L"Count", 0xFFFFFFFF);
    EXPECT_EQ(ReadProfileInt(section, L"Count", 7), -1);
    m_key.SetNumber(section, L"Count", 0x80000000);
    EXPECT_EQ(ReadProfileInt(section, L"Count", 7), INT_MIN);
}

TEST_F(Profile, ReadsTextsOfAnyLength)
{
    for (const std::size_t length : {0u, 1u, 254u, 255u, 256u, 257u, 1000u, 40000u}) {
        const std::wstring text(length, L'x');
        m_key.SetText(section, L"Data", text);
        EXPECT_EQ(ReadProfileString(section, L"Data", L"d"), text) << length;
    }
}

// The registry stores the given bytes, terminated or not.
TEST_F(Profile, ReadsATextWithoutItsTerminator)
{
    SetBytes(L"Data", REG_SZ, std::string("a\0b\0", 4));
    EXPECT_EQ(ReadProfileString(section, L"Data", L"d"), L"ab");
    const std::wstring longText(5000, L'y');
    m_key.Set(section, L"Data", REG_SZ, longText.data(), 10000);
    EXPECT_EQ(ReadProfileString(section, L"Data", L"d"), longText);
}

TEST_F(Profile, EndsATextAtItsFirstNull)
{
    SetBytes(L"Data", REG_SZ, std::string("a\0\0\0b\0\0\0", 8));
    EXPECT_EQ(ReadProfileString(section, L"Data", L"d"), L"a");
}

TEST_F(Profile, DropsTheHalfCharacterOfAnOddSize)
{
    SetBytes(L"Data", REG_SZ, std::string("a\0b", 3));
    EXPECT_EQ(ReadProfileString(section, L"Data", L"d"), L"a");
}

TEST_F(Profile, GivesAnEmptyTextThatIsThere)
{
    m_key.SetText(section, L"Data", L"");
    EXPECT_EQ(ReadProfileString(section, L"Data", L"d"), L"");
    SetBytes(L"Data", REG_SZ, "");
    EXPECT_EQ(ReadProfileString(section, L"Data", L"d"), L"");
}

TEST_F(Profile, ReplacesVariablesInAnExpandableText)
{
    ASSERT_TRUE(SetEnvironmentVariableW(L"QOR_PROFILE_TEST", std::wstring(3000, L'v').c_str()));
    const std::wstring text = L"<%QOR_PROFILE_TEST%>%NO_SUCH_VARIABLE_HERE%";
    m_key.Set(section, L"Data", REG_EXPAND_SZ, text.c_str(),
              static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    EXPECT_EQ(ReadProfileString(section, L"Data", L"d"),
              L"<" + std::wstring(3000, L'v') + L">%NO_SUCH_VARIABLE_HERE%");
    m_key.SetText(section, L"Data", text);
    EXPECT_EQ(ReadProfileString(section, L"Data", L"d"), text) << "a plain text is left as it is";
}

TEST_F(Profile, SeesAChangeAtOnce)
{
    m_key.SetNumber(section, L"Count", 1);
    EXPECT_EQ(ReadProfileInt(section, L"Count", 7), 1);
    m_key.SetNumber(section, L"Count", 2);
    EXPECT_EQ(ReadProfileInt(section, L"Count", 7), 2);
}

TEST_F(Profile, TakesARootWithABackslashAtItsEnd)
{
    m_key.SetNumber(section, L"Count", 3);
    qor_utils::SetProfileRoot((m_key.Path() + L"\\").c_str());
    EXPECT_EQ(ReadProfileInt(section, L"Count", 7), 3);
}

TEST_F(Profile, StandsAChangeOfRootWhileOthersRead)
{
    const test_support::TemporaryRegistryKey otherKey;
    m_key.SetNumber(section, L"Count", 1);
    otherKey.SetNumber(section, L"Count", 2);
    Readers readers([] {
        const int value = ReadProfileInt(section, L"Count", 7);
        return value == 1 || value == 2;
    });
    for (int i = 0; i < 2000; ++i)
        qor_utils::SetProfileRoot((i % 2 ? m_key : otherKey).Path().c_str());
    EXPECT_EQ(readers.Finish(), 0);
}

} // namespace
