// Every kind of file that the application opens, finds or is given, in every state that a file may
// be in: a sentence names it, nothing is lost, and nothing crashes.
#include "BadInputKinds.h"
#include "record/Repair.h"

#include <base/Handles.h>
#include <gtest/gtest.h>
#include <pro_actions/VocabularyLoading.h>
#include <test_support/Files.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <random>
#include <vector>

using namespace exam;
using bad_input::Harm;
using bad_input::Kind;
using bad_input::Kinds;
using bad_input::Place;
using test_support::ReadFile;
using test_support::WriteFile;

namespace {

namespace fs = std::filesystem;

std::string RandomBytes(unsigned seed)
{
    std::mt19937 random(seed);
    std::string bytes(seed % 2 == 0 ? 5000 : 200'000, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

class BadInput : public testing::TestWithParam<Kind>
{
protected:
    ~BadInput() override
    {
        zel_string_convert::ClearTable();
        pro_actions::ClearVocabulary();
    }

    bool NeedsSentence(Harm harm) const
    {
        const auto& harmless = GetParam().harmless;
        return std::ranges::find(harmless, harm) == harmless.end();
    }

    // Brings about one harm and holds what is said and left. `change` makes bytes of the sound
    // ones.
    void Try(Harm harm, const std::function<std::string(const std::string&)>& change)
    {
        Place place;
        GetParam().write(place);
        const std::wstring path = PathIn(place);
        std::string bytes;
        if (change) {
            bytes = change(ReadFile(path));
            WriteFile(path, bytes);
        }
        const std::wstring said = GetParam().use(place, path);
        if (change) ExpectKept(path, bytes);
        const bool isWhole = GetParam().isRepaired && RepairRecording(path).problem.empty();
        if (NeedsSentence(harm) && !isWhole) ExpectNamed(said, path);
    }

    static std::wstring PathIn(const Place& place)
    {
        if (GetParam().file.starts_with(L"saved\\"))
            return utilsExam::GetProtocolSavePath(GetParam().file.substr(6).c_str(), nullptr)
                .GetString();
        return place / GetParam().file;
    }

    static void ExpectNamed(const std::wstring& said, const std::wstring& path)
    {
        EXPECT_NE(said.find(fs::path(path).filename().wstring()), std::wstring::npos)
            << "said: " << fs::path(said);
    }

    static void ExpectKept(const std::wstring& path, const std::string& bytes)
    {
        if (GetParam().isRepaired && ReadFile(path) != bytes)
            EXPECT_EQ(RepairRecording(path).problem, L"") << "it was changed and is not whole";
        else
            EXPECT_TRUE(ReadFile(path) == bytes) << "its bytes are others";
    }
};

TEST_P(BadInput, IsNamedInASentenceAndKept)
{
    SCOPED_TRACE("a file that is");
    {
        SCOPED_TRACE("empty");
        Try(Harm::empty, [](const std::string&) { return std::string(); });
    }
    {
        SCOPED_TRACE("one byte");
        Try(Harm::oneByte, [](const std::string& sound) { return sound.substr(0, 1); });
    }
    {
        SCOPED_TRACE("of another kind");
        Try(Harm::otherKind, [](const std::string&) { return std::string("<html/>\n"); });
    }
    for (std::size_t part = 1; part < 16; ++part) {
        SCOPED_TRACE("cut after sixteenths: " + std::to_string(part));
        Try(Harm::cut,
            [&](const std::string& sound) { return sound.substr(0, sound.size() * part / 16); });
    }
    for (unsigned seed = 1; seed <= 4; ++seed) {
        SCOPED_TRACE("random, seed " + std::to_string(seed));
        Try(Harm::random, [&](const std::string&) { return RandomBytes(seed); });
    }
}

TEST_P(BadInput, ThatCannotBeOpenedIsNamed)
{
    {
        SCOPED_TRACE("missing");
        Place place;
        GetParam().write(place);
        const std::wstring path = PathIn(place);
        fs::remove(path);
        const std::wstring said = GetParam().use(place, path);
        if (NeedsSentence(Harm::missing)) ExpectNamed(said, path);
    }
    {
        SCOPED_TRACE("a folder");
        Place place;
        GetParam().write(place);
        const std::wstring path = PathIn(place);
        fs::remove(path);
        fs::create_directory(path);
        const std::wstring said = GetParam().use(place, path);
        if (NeedsSentence(Harm::folder)) ExpectNamed(said, path);
        EXPECT_TRUE(fs::is_directory(path));
    }
    {
        SCOPED_TRACE("locked");
        Place place;
        GetParam().write(place);
        const std::wstring path = PathIn(place);
        const std::string sound = ReadFile(path);
        {
            const base::File lock(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                              nullptr, OPEN_EXISTING, 0, nullptr));
            ASSERT_TRUE(lock);
            ExpectNamed(GetParam().use(place, path), path);
        }
        EXPECT_TRUE(ReadFile(path) == sound);
    }
}

// The application does not choose the names of these kinds itself.
class BadDevice : public BadInput
{
};

TEST_P(BadDevice, IsNamedInASentence)
{
    Place place;
    GetParam().write(place);
    for (const std::wstring device : {L"NUL", L"CON", L"\\\\.\\NUL", L"COM1"}) {
        const std::wstring said = GetParam().use(place, device);
        EXPECT_NE(said.find(device), std::wstring::npos)
            << fs::path(device) << ": " << fs::path(said);
    }
}

std::vector<Kind> KindsOfAnyName()
{
    std::vector<Kind> kinds = Kinds();
    std::erase_if(kinds, [](const Kind& kind) {
        return std::ranges::find(kind.harmless, Harm::device) != kind.harmless.end();
    });
    return kinds;
}

std::string NameOf(const testing::TestParamInfo<Kind>& kind)
{
    return kind.param.name;
}

INSTANTIATE_TEST_SUITE_P(AllKinds, BadInput, testing::ValuesIn(Kinds()), NameOf);
INSTANTIATE_TEST_SUITE_P(AllKinds, BadDevice, testing::ValuesIn(KindsOfAnyName()), NameOf);

} // namespace
