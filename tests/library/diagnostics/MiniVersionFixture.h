#pragma once

#include "VersionResource.h"

#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/CMiniVersion.h>

#include <array>

namespace version_resource {

using Numbers = std::array<unsigned, 4>;
constexpr Numbers none = {0, 0, 0, 0};

// Collects the results of one object, and reaches its protected members.
class Version : public CMiniVersion
{
public:
    using CMiniVersion::CMiniVersion;
    using CMiniVersion::GetFixedInfo;
    using CMiniVersion::GetStringInfo;

    Numbers File() const { return All(&CMiniVersion::GetFileVersion); }
    Numbers Product() const { return All(&CMiniVersion::GetProductVersion); }
    Numbers Words() const
    {
        unsigned long flags = 1, os = 1, type = 1, subtype = 1;
        EXPECT_EQ(GetFileFlags(flags) + GetFileOS(os) + GetFileType(type) + GetFileSubtype(subtype),
                  4);
        return {static_cast<unsigned>(flags), static_cast<unsigned>(os),
                static_cast<unsigned>(type), static_cast<unsigned>(subtype)};
    }
    std::wstring Company() const { return Read(&CMiniVersion::GetCompanyName); }
    std::wstring Description() const { return Read(&CMiniVersion::GetFileDescription); }
    std::wstring ProductName() const { return Read(&CMiniVersion::GetProductName); }
    std::wstring Texts() const { return Company() + L"|" + Description() + L"|" + ProductName(); }

private:
    Numbers All(int (CMiniVersion::*get)(unsigned short*) const) const
    {
        unsigned short out[4] = {9, 9, 9, 9};
        EXPECT_EQ((this->*get)(out), 1);
        return {out[0], out[1], out[2], out[3]};
    }
    std::wstring Read(int (CMiniVersion::*get)(unsigned short*, int) const) const
    {
        unsigned short out[600] = {};
        EXPECT_EQ((this->*get)(out, 600), 1);
        return std::wstring(out, out + wcsnlen(reinterpret_cast<const wchar_t*>(out), 600));
    }
};

inline Node Table(const std::wstring& language, const std::wstring& company)
{
    return StringTable(language, company, L"What", L"Exam");
}

inline Node Complete()
{
    return InEnglish(Table(L"040904b0", L"Kestrow"));
}

inline Node Narrow()
{
    return Root({}, {StringFileInfo({Table(L"040904e4", L"Kestrow, a company of old files")}),
                     Translations({0x04E40409})});
}

// Reads files with resources that a test has composed.
class MiniVersion : public testing::Test
{
protected:
    std::wstring File() const
    {
        return m_folder / (L"file" + std::to_wstring(m_fileNumber) + L".dll");
    }

    Version Of(const std::string& resource)
    {
        WriteFile(File(), resource);
        return Again();
    }
    Version Of(const Node& root) { return Of(Bytes(root)); }

    // Writes a file with a complete resource and returns its bytes.
    std::string WholeFile()
    {
        WriteFile(File(), Bytes(Complete()));
        return test_support::ReadFile(File());
    }

    // Reads the file that exists already.
    Version Again()
    {
        Version version(File().c_str());
        m_found = version.Init();
        version.Release();
        return version;
    }
    Version Of16(const Node& root)
    {
        test_support::WriteFile(File(), File16(NarrowBytes(root)));
        return Again();
    }

    // Expects that the numbers are right and that the texts are these.
    void ExpectTexts(const Node& root, const std::wstring& texts, const char* what)
    {
        const Version version = Of(root);
        EXPECT_EQ(m_found, 1) << what;
        EXPECT_EQ(version.File(), (Numbers{1, 2, 3, 4})) << what;
        EXPECT_EQ(version.Product(), (Numbers{5, 6, 7, 8})) << what;
        EXPECT_EQ(version.Texts(), texts) << what;
    }

    // Expects that nothing at all is read.
    void ExpectNothing(const Node& root, const char* what)
    {
        const Version version = Of(root);
        EXPECT_EQ(m_found, 0) << what;
        EXPECT_EQ(version.File(), none) << what;
        EXPECT_EQ(version.Words(), none) << what;
        EXPECT_EQ(version.Texts(), L"||") << what;
    }

    // Expects that what a damaged resource gave is within bounds.
    void ExpectNoHarm(const Version& version)
    {
        EXPECT_TRUE(m_found == 0 || m_found == 1);
        EXPECT_LT(version.Texts().size(), 3u * 520);
    }

    // Reads the file with one bit flipped. True when it has numbers.
    bool ReadsWithBit(std::string bytes, std::size_t bit)
    {
        char& byte = bytes[bit / 8];
        byte = static_cast<char>(byte ^ (1 << bit % 8));
        // Each has a name of its own: a platform was seen to keep a damaged file open.
        DeleteFileW(File().c_str());
        ++m_fileNumber;
        test_support::WriteFile(File(), bytes);
        const Version version = Again();
        const testing::ScopedTrace trace(__FILE__, __LINE__, "bit " + std::to_string(bit));
        EXPECT_TRUE(m_found == 1 || version.File() == none);
        ExpectNoHarm(version);
        return m_found == 1;
    }

    const test_support::TemporaryFolder m_folder;
    int m_found = 0; // the result of the last Init
    int m_fileNumber = 0;
};

} // namespace version_resource
