// AfxGetApp returns the executable's object, no matter whether it or the module objects of DLLs
// were built first.
#include <base/Handles.h>
#include <gtest/gtest.h>

#include <afxwin.h>

extern "C" {
__declspec(dllimport) CWinApp* ModuleObject();
__declspec(dllimport) CWinApp* ApplicationNow();
__declspec(dllimport) CWinApp* ApplicationBeforeModuleObject();
__declspec(dllimport) CWinApp* ApplicationAfterModuleObject();
}

namespace {

using Question = CWinApp* (*)();

// A DLL loaded at run time.
class LoadedModule
{
public:
    explicit LoadedModule(const wchar_t* name) : m_module(LoadLibraryW(name)) {}

    bool Loaded() const { return static_cast<bool>(m_module); }
    HINSTANCE Handle() const { return m_module.get(); }
    CWinApp* Ask(const char* name) const
    {
        const auto function = reinterpret_cast<void*>(GetProcAddress(m_module.get(), name));
        return function ? reinterpret_cast<Question>(function)() : nullptr;
    }
    void Unload() { m_module.reset(); }

private:
    base::Module m_module;
};

// The order matters: one module object before the executable's application object, and one after
// it.
LoadedModule s_earlyModule(L"mfc_module_early.dll");
CWinApp* const applicationBefore = AfxGetApp();
CWinApp s_theApplication(L"order");

} // namespace

TEST(AfxGetApp, AnswersNullBeforeTheExecutableHasAnApplication)
{
    ASSERT_TRUE(s_earlyModule.Loaded());
    EXPECT_EQ(applicationBefore, nullptr);
    EXPECT_EQ(s_earlyModule.Ask("ApplicationBeforeModuleObject"), nullptr);
    EXPECT_EQ(s_earlyModule.Ask("ApplicationAfterModuleObject"), nullptr);
    EXPECT_EQ(ApplicationBeforeModuleObject(), nullptr);
    EXPECT_EQ(ApplicationAfterModuleObject(), nullptr);
}

TEST(AfxGetApp, AnswersTheExecutablesObjectInModulesBuiltBefore)
{
    EXPECT_EQ(AfxGetApp(), &s_theApplication);
    EXPECT_EQ(ApplicationNow(), &s_theApplication);
    EXPECT_EQ(s_earlyModule.Ask("ApplicationNow"), &s_theApplication);
}

TEST(AfxGetApp, AnswersTheExecutablesObjectInModulesBuiltAfter)
{
    LoadedModule late(L"mfc_module_late.dll");
    ASSERT_TRUE(late.Loaded());
    EXPECT_EQ(late.Ask("ApplicationBeforeModuleObject"), &s_theApplication);
    EXPECT_EQ(late.Ask("ApplicationAfterModuleObject"), &s_theApplication);
    EXPECT_EQ(late.Ask("ApplicationNow"), &s_theApplication);
    EXPECT_EQ(AfxGetApp(), &s_theApplication);
    late.Unload();
    EXPECT_EQ(AfxGetApp(), &s_theApplication);
}

TEST(ModuleObject, BelongsToItsModule)
{
    CWinApp* const object = s_earlyModule.Ask("ModuleObject");
    ASSERT_NE(object, nullptr);
    EXPECT_NE(object, &s_theApplication);
    EXPECT_EQ(object->m_hInstance, s_earlyModule.Handle());
    EXPECT_STREQ(object->m_pszAppName, L"mfc_module_early");
    EXPECT_EQ(ModuleObject()->m_hInstance, GetModuleHandleW(L"mfc_module_linked.dll"));
}

TEST(ModuleObject, MakesItsModulesResourcesFound)
{
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(999), RT_BITMAP), GetModuleHandleW(nullptr));
    LoadedModule late(L"mfc_module_late.dll");
    ASSERT_TRUE(late.Loaded());
    // The latest module is asked first.
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(812), RT_BITMAP), late.Handle());
    late.Unload();
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(812), RT_BITMAP), s_earlyModule.Handle());
}

TEST(ModuleObject, LetsTextsAndBitmapsBeLoaded)
{
    CString text;
    EXPECT_TRUE(text.LoadString(4711));
    EXPECT_EQ(text, L"text of the module");
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.LoadBitmap(812));
    BITMAP description = {};
    EXPECT_EQ(bitmap.GetBitmap(&description), static_cast<int>(sizeof description));
    EXPECT_EQ(description.bmWidth, 2);
    EXPECT_EQ(description.bmHeight, 1);
}
