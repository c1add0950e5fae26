#pragma once

#include "RawArchive.h"

#include <base/Encoding.h>
#include <base/Handles.h>
#include <base/InFolder.h>
#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/LogCapture.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/ZipExtract.h>

#include <windows.h>

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

using raw_archive::Deflated;
using raw_archive::Entry;
using raw_archive::Stored;
using raw_archive::WithDescriptor;
using test_support::LogCapture;
using Names = std::set<std::string>;

// An archive in one folder and extraction into a folder below it, so that a file written outside
// the target is noticed.
class ZipReading : public testing::Test
{
protected:
    ZipReading()
    {
        CreateDirectoryW(Target().c_str(), nullptr);
        m_inTarget.emplace(Target());
    }
    ~ZipReading() override { m_inTarget.reset(); }

    std::wstring Target() const { return m_folder / L"target"; }
    std::wstring Archive() const { return m_folder / L"archive.zip"; }

    // Puts an archive in place and opens it.
    void Open(const std::string& archive)
    {
        m_zip.Close();
        test_support::WriteFile(Archive(), archive);
        ASSERT_TRUE(m_zip.Open(Archive().c_str()));
    }
    void Open(const std::vector<Entry>& entries) { Open(raw_archive::Write(entries)); }

    // The files and folders below a folder, relative to it and with forward slashes. This does not
    // use <filesystem>, which loses its way in folders whose names end in dots.
    static Names Below(const std::wstring& folder)
    {
        Names found;
        AddBelow(folder, "", found);
        return found;
    }
    static void AddBelow(const std::wstring& folder, const std::string& prefix, Names& found)
    {
        WIN32_FIND_DATAW entry = {};
        const base::Find find(FindFirstFileW((folder + L"\\*").c_str(), &entry));
        if (!find) return;
        do {
            const std::wstring name = entry.cFileName;
            if (name == L"." || name == L"..") continue;
            const std::string path = prefix + base::Utf8FromWide(name);
            found.insert(path);
            if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
                AddBelow(folder + L"\\" + name, path + "/", found);
        } while (FindNextFileW(find.get(), &entry));
    }

    std::string Content(const std::wstring& name) const
    {
        return test_support::ReadFile(Target() + L"\\" + name);
    }

    // Expects that nothing was written outside of the target.
    void ExpectNothingOutside() const
    {
        Names outside;
        for (const std::string& name : Below(m_folder.Path()))
            if (!name.starts_with("target")) outside.insert(name);
        EXPECT_EQ(outside, Names{"archive.zip"});
    }

    const test_support::TemporaryFolder m_folder;
    std::optional<base::InFolder> m_inTarget;
    ZipExtract m_zip;
};
