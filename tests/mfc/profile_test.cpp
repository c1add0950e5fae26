// The application's profile, in the real registry below a key of this process only, and in a real
// INI file.
#include <base/Handles.h>
#include <gtest/gtest.h>
#include <test_support/TemporaryFolder.h>

#include <afxwin.h>

#include <memory>
#include <string>

namespace {

const std::wstring company = L"FrameworkTest" + std::to_wstring(GetCurrentProcessId());
const std::wstring companyKey = L"Software\\" + company;

bool KeyExists(const std::wstring& path)
{
    base::RegistryKey key;
    RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, key.put());
    return static_cast<bool>(key);
}

void SetRaw(const std::wstring& section, const wchar_t* entry, DWORD type, const void* data,
            DWORD size)
{
    const std::wstring path = companyKey + L"\\Exam\\" + section;
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, path.c_str(), entry, type, data, size),
              ERROR_SUCCESS);
}

class RegistryProfile : public testing::Test
{
protected:
    RegistryProfile() : m_application(L"Exam") { m_application.SetRegistryKey(company.c_str()); }
    ~RegistryProfile() override { RegDeleteTreeW(HKEY_CURRENT_USER, companyKey.c_str()); }

    CWinApp m_application;
};

class IniProfile : public testing::Test
{
protected:
    IniProfile() : m_application(L"Exam")
    {
        free(const_cast<LPTSTR>(m_application.m_pszProfileName));
        m_application.m_pszProfileName = _wcsdup((m_folder / L"exam.ini").c_str());
    }

    test_support::TemporaryFolder m_folder;
    CWinApp m_application;
};

} // namespace

TEST(Application, IsFoundWhileItExists)
{
    EXPECT_EQ(AfxGetApp(), nullptr);
    EXPECT_EQ(AfxGetAppName(), nullptr);
    {
        CWinApp application(L"Exam");
        EXPECT_EQ(AfxGetApp(), &application);
        EXPECT_EQ(AfxGetThread(), &application);
        EXPECT_STREQ(AfxGetAppName(), L"Exam");
        EXPECT_EQ(application.m_hInstance, GetModuleHandleW(nullptr));
        CWinApp second;
        EXPECT_EQ(AfxGetApp(), &application);
    }
    EXPECT_EQ(AfxGetApp(), nullptr);
    EXPECT_EQ(AfxGetThread(), nullptr);
    EXPECT_EQ(AfxGetMainWnd(), nullptr);
}

TEST(Application, IsCalledLikeItsProgram)
{
    const CWinApp application;
    EXPECT_STREQ(application.m_pszExeName, L"mfc_profile_test");
    EXPECT_STREQ(application.m_pszAppName, L"mfc_profile_test");
    EXPECT_STREQ(application.m_pszProfileName, L"mfc_profile_test.INI");
    EXPECT_EQ(application.m_pszRegistryKey, nullptr);
}

TEST(Application, MayBeDeletedThroughAnyBase)
{
    class Derived : public CWinApp
    {
    public:
        explicit Derived(bool& gone) : m_gone(gone) {}
        ~Derived() override { m_gone = true; }

    private:
        bool& m_gone;
    };
    bool gone = false;
    std::unique_ptr<CObject> application = std::make_unique<Derived>(gone);
    application.reset();
    EXPECT_TRUE(gone);
}

TEST_F(RegistryProfile, NamesItsKeyAfterTheApplication)
{
    EXPECT_STREQ(m_application.m_pszRegistryKey, company.c_str());
    EXPECT_STREQ(m_application.m_pszProfileName, L"Exam");
    EXPECT_TRUE(m_application.WriteProfileInt(L"Settings\\Capture", L"PrintButton0", 7));
    EXPECT_TRUE(KeyExists(companyKey + L"\\Exam\\Settings\\Capture"));
}

TEST_F(RegistryProfile, GivesDefaultsAndCreatesNothing)
{
    EXPECT_EQ(m_application.GetProfileInt(L"Settings", L"absent", -3), static_cast<UINT>(-3));
    EXPECT_EQ(m_application.GetProfileString(L"Settings", L"absent", L"default"), L"default");
    EXPECT_EQ(m_application.GetProfileString(L"Settings", L"absent"), L"");
    EXPECT_FALSE(KeyExists(companyKey));
}

TEST_F(RegistryProfile, KeepsIntegers)
{
    for (const int value : {0, 1, -1, INT_MAX, INT_MIN}) {
        EXPECT_TRUE(m_application.WriteProfileInt(L"Settings", L"value", value));
        EXPECT_EQ(m_application.GetProfileInt(L"Settings", L"value", 5), static_cast<UINT>(value));
    }
}

TEST_F(RegistryProfile, KeepsTexts)
{
    const std::wstring longText(5000, L'\x20ac');
    for (const wchar_t* value : {L"", L"XVID", L" with spaces ", longText.c_str()}) {
        EXPECT_TRUE(m_application.WriteProfileString(L"Settings", L"value", value));
        EXPECT_EQ(m_application.GetProfileString(L"Settings", L"value", L"default"), value);
    }
}

TEST_F(RegistryProfile, IgnoresValuesOfAnotherType)
{
    const DWORD number = 5;
    SetRaw(L"Settings", L"number", REG_DWORD, &number, sizeof number);
    SetRaw(L"Settings", L"text", REG_SZ, L"5", 4);
    SetRaw(L"Settings", L"binary", REG_BINARY, &number, sizeof number);
    EXPECT_EQ(m_application.GetProfileString(L"Settings", L"number", L"default"), L"default");
    EXPECT_EQ(m_application.GetProfileInt(L"Settings", L"text", 9), 9u);
    EXPECT_EQ(m_application.GetProfileInt(L"Settings", L"binary", 9), 9u);
    EXPECT_EQ(m_application.GetProfileString(L"Settings", L"binary", L"default"), L"default");
}

TEST_F(RegistryProfile, ReadsTextsWithoutATerminatingNull)
{
    SetRaw(L"Settings", L"bare", REG_SZ, L"bare", 4 * sizeof(wchar_t));
    SetRaw(L"Settings", L"inner", REG_SZ, L"in\0ner", 7 * sizeof(wchar_t));
    EXPECT_EQ(m_application.GetProfileString(L"Settings", L"bare"), L"bare");
    EXPECT_EQ(m_application.GetProfileString(L"Settings", L"inner"), L"in");
}

TEST_F(RegistryProfile, DeletesEntriesAndSections)
{
    m_application.WriteProfileString(L"Settings\\Status", L"a", L"1");
    m_application.WriteProfileString(L"Settings\\Status", L"b", L"2");
    EXPECT_TRUE(m_application.WriteProfileString(L"Settings\\Status", L"a", nullptr));
    EXPECT_EQ(m_application.GetProfileString(L"Settings\\Status", L"a", L"gone"), L"gone");
    EXPECT_EQ(m_application.GetProfileString(L"Settings\\Status", L"b", L"gone"), L"2");
    EXPECT_TRUE(m_application.WriteProfileString(L"Settings", nullptr, nullptr));
    EXPECT_FALSE(KeyExists(companyKey + L"\\Exam\\Settings"));
    EXPECT_TRUE(m_application.WriteProfileString(L"Settings", nullptr, nullptr));
    EXPECT_TRUE(m_application.WriteProfileString(L"Settings", L"a", nullptr));
}

TEST_F(RegistryProfile, RefusesNullNames)
{
    EXPECT_EQ(m_application.GetProfileInt(nullptr, L"a", 1), 1u);
    EXPECT_EQ(m_application.GetProfileInt(L"a", nullptr, 1), 1u);
    EXPECT_EQ(m_application.GetProfileString(nullptr, L"a", L"d"), L"d");
    EXPECT_FALSE(m_application.WriteProfileInt(nullptr, L"a", 1));
    EXPECT_FALSE(m_application.WriteProfileString(nullptr, L"a", L"b"));
}

TEST_F(IniProfile, KeepsIntegersAndTexts)
{
    EXPECT_TRUE(m_application.WriteProfileInt(L"Settings\\Capture", L"number", -7));
    EXPECT_TRUE(m_application.WriteProfileString(L"Settings\\Capture", L"text", L"Uncompressed"));
    EXPECT_EQ(m_application.GetProfileInt(L"Settings\\Capture", L"number", 1),
              static_cast<UINT>(-7));
    EXPECT_EQ(m_application.GetProfileString(L"Settings\\Capture", L"text"), L"Uncompressed");
    EXPECT_NE(GetFileAttributesW((m_folder / L"exam.ini").c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(IniProfile, GivesDefaultsAndCreatesNothing)
{
    EXPECT_EQ(m_application.GetProfileInt(L"Settings", L"absent", 13), 13u);
    EXPECT_EQ(m_application.GetProfileString(L"Settings", L"absent", L"default"), L"default");
    EXPECT_EQ(m_application.GetProfileString(L"Settings", L"absent"), L"");
    EXPECT_EQ(GetFileAttributesW((m_folder / L"exam.ini").c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(IniProfile, ReadsLongTexts)
{
    const std::wstring longText(3000, L'x');
    EXPECT_TRUE(m_application.WriteProfileString(L"Settings", L"long", longText.c_str()));
    EXPECT_EQ(m_application.GetProfileString(L"Settings", L"long"), longText.c_str());
}

TEST_F(IniProfile, DeletesEntriesAndSections)
{
    m_application.WriteProfileInt(L"Settings", L"a", 1);
    m_application.WriteProfileInt(L"Settings", L"b", 2);
    EXPECT_TRUE(m_application.WriteProfileString(L"Settings", L"a", nullptr));
    EXPECT_EQ(m_application.GetProfileInt(L"Settings", L"a", 0), 0u);
    EXPECT_EQ(m_application.GetProfileInt(L"Settings", L"b", 0), 2u);
    EXPECT_TRUE(m_application.WriteProfileString(L"Settings", nullptr, nullptr));
    EXPECT_EQ(m_application.GetProfileInt(L"Settings", L"b", 0), 0u);
}
