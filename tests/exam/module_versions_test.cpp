// Damaged files are asked for their version: whatever bit is wrong, the answer is a text or none.
#include "service/ModuleVersions.h"

#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string>

using namespace exam;

namespace {

// A part of a file, in bytes from its beginning.
struct Part
{
    std::size_t begin = 0;
    std::size_t size = 0;
};

// A copy of a DLL with a version resource, one of whose bits is wrong at a time.
class FlippedDllTest : public testing::Test
{
protected:
    FlippedDllTest()
    {
        std::memcpy(&m_dos, m_image.data(), sizeof m_dos);
        std::memcpy(&m_headers, m_image.data() + m_dos.e_lfanew, sizeof m_headers);
        test_support::WriteFile(m_path, m_image);
    }

    // The headers say where the resource is. The rest of the file is code and data.
    // The section table follows the optional header.
    std::size_t SectionTable() const
    {
        return static_cast<std::size_t>(m_dos.e_lfanew) +
               offsetof(IMAGE_NT_HEADERS, OptionalHeader) +
               m_headers.FileHeader.SizeOfOptionalHeader;
    }
    Part Headers() const
    {
        const std::size_t sections =
            m_headers.FileHeader.NumberOfSections * sizeof(IMAGE_SECTION_HEADER);
        return {0, SectionTable() + sections};
    }
    Part Resources() const
    {
        for (WORD i = 0; i < m_headers.FileHeader.NumberOfSections; ++i) {
            IMAGE_SECTION_HEADER section;
            std::memcpy(&section, m_image.data() + SectionTable() + i * sizeof section,
                        sizeof section);
            if (std::memcmp(section.Name, ".rsrc", 6) == 0)
                return {section.PointerToRawData, section.SizeOfRawData};
        }
        return {};
    }

    static constexpr std::size_t step = 7; // so that each place in a byte has its turn

    // Reads the version once for each `step`-th bit of a part, with that bit wrong. The result is
    // the number of times that a text was read.
    int Read(const Part& part)
    {
        std::FILE* const file = _wfopen(m_path.c_str(), L"r+b");
        int texts = 0;
        for (std::size_t bit = 8 * part.begin; file && bit < 8 * (part.begin + part.size);
             bit += step) {
            Put(file, bit / 8, static_cast<char>(m_image[bit / 8] ^ 1 << bit % 8));
            texts += FileVersionText(m_path).has_value();
            Put(file, bit / 8, m_image[bit / 8]);
        }
        if (file) std::fclose(file);
        return texts;
    }

    static void Put(std::FILE* file, std::size_t place, char byte)
    {
        std::fseek(file, static_cast<long>(place), SEEK_SET);
        std::fputc(byte, file);
        std::fflush(file);
    }

    test_support::TemporaryFolder m_folder;
    std::wstring m_path = m_folder / L"flipped.dll";
    std::string m_image = test_support::ReadFile(test_support::BesideProgram(L"pro_actions.dll"));
    IMAGE_DOS_HEADER m_dos{};
    IMAGE_NT_HEADERS m_headers{}; // headers of this program, whose architecture is the DLL's
};

} // namespace

TEST_F(FlippedDllTest, ASoundFileHasAVersion)
{
    ASSERT_GT(Resources().size, 0u);
    const auto text = FileVersionText(m_path);
    ASSERT_TRUE(text);
    EXPECT_NE(text->find(L"file version     1."), std::wstring::npos);
}

TEST_F(FlippedDllTest, NoWrongBitOfTheResourceFaults)
{
    const int texts = Read(Resources());
    EXPECT_GT(texts, 0); // most bits belong to the texts
    EXPECT_LT(texts, static_cast<int>(8 * Resources().size / step));
}

TEST_F(FlippedDllTest, NoWrongBitOfTheHeadersFaults)
{
    const int texts = Read(Headers());
    EXPECT_GT(texts, 0);
    EXPECT_LT(texts, static_cast<int>(8 * Headers().size / step));
}
