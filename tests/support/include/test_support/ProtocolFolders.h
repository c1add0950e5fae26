#pragma once

#include <gtest/gtest.h>
#include <pro_actions/VocabularyLoading.h>
#include <test_support/ActionState.h>
#include <test_support/Files.h>
#include <test_support/StoreFolder.h>
#include <test_support/TemporaryFolder.h>

#include <windows.h>

#include <string>

// The starting point of tests that read protocol files.
namespace test_support {

// A vocabulary in force while it lives: type Imaging (1) with Freeze (0) and Depth (7), type Mode
// (2) with B (0), M (1) and Freeze (3), type Empty (0), and type Lamp (9) with A, B, C, D (0 to 3).
class TestVocabulary
{
public:
    explicit TestVocabulary(const std::wstring& path)
    {
        test_support::WriteFile(
            path, "<actions><type name='Imaging' value='1'><a name='Freeze' code='0'/>"
                  "<a name='Depth' code='7'/></type>"
                  "<type name='Mode' value='2'><a name='B' code='0'/><a name='M' code='1'/>"
                  "<a name='Freeze' code='3'/></type><type name='Empty' value='0'/>"
                  "<type name='Lamp' value='9'><a name='A' code='0'/><a name='B' code='1'/>"
                  "<a name='C' code='2'/><a name='D' code='3'/></type></actions>");
        EXPECT_TRUE(pro_actions::LoadVocabulary(path));
    }
    ~TestVocabulary() { pro_actions::ClearVocabulary(); }
    TestVocabulary(const TestVocabulary&) = delete;
    TestVocabulary& operator=(const TestVocabulary&) = delete;
};

// The five protocol folders; the current protocol is "P1", of which nothing is saved yet.
class ProtocolFolders
{
public:
    ProtocolFolders()
    {
        for (const wchar_t* name :
             {L"fallback", L"factory", L"factory\\P1", L"saved", L"base", L"second"})
            CreateDirectoryW((m_folder / name).c_str(), nullptr);
    }

    std::wstring operator/(const std::wstring& name) const { return m_folder / name; }

private:
    TemporaryFolder m_folder;
    StoreFolder m_stores[5] = {{1, m_folder / L"fallback"},
                               {22, m_folder / L"saved"},
                               {37, m_folder / L"factory\\P1"},
                               {38, m_folder / L"base"},
                               {39, m_folder / L"second"}};
};

} // namespace test_support
