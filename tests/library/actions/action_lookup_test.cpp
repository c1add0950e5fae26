// Looking buttons up: among many names, among names that are hard to tell apart, and without
// allocating.
#include "../../support/guardheap/Modules.h"
#include "RepositoryFixture.h"

#include <cstdlib>
#include <map>
#include <random>
#include <string>

namespace {

constinit int s_allocations = 0;

void* CountingMalloc(std::size_t size)
{
    ++s_allocations;
    return std::malloc(size);
}

void* CountingCalloc(std::size_t count, std::size_t size)
{
    ++s_allocations;
    return std::calloc(count, size);
}

void* CountingRealloc(void* block, std::size_t size)
{
    ++s_allocations;
    return std::realloc(block, size);
}

// Counts every allocation of the libraries from here on; each still goes to the heap.
void CountAllocations()
{
    const guardheap::Redirection redirections[] = {
        {"malloc", reinterpret_cast<void*>(&CountingMalloc)},
        {"calloc", reinterpret_cast<void*>(&CountingCalloc)},
        {"realloc", reinterpret_cast<void*>(&CountingRealloc)}};
    guardheap::RedirectAllImports(redirections, 3);
}

std::string NamedButtons(const std::map<std::wstring, int>& params)
{
    std::string xml = "<b>";
    for (const auto& [name, param] : params) {
        xml += "<b name='";
        for (const wchar_t unit : name)
            xml += "&#" + std::to_string(static_cast<unsigned>(unit)) + ';';
        xml += "'><Push1 actionParam='" + std::to_string(param) + "'/></b>";
    }
    return xml + "</b>";
}

void ExpectSame(const ActionRepository& repository, const std::map<std::wstring, int>& params,
                const std::wstring& name)
{
    const auto expected = params.find(name);
    const ButtonAction* const found = repository.GetAction(name.c_str());
    ASSERT_EQ(found != nullptr, expected != params.end()) << testing::PrintToString(name);
    if (!found) return;
    ASSERT_EQ(found->push1.param, expected->second);
}

// Names of few different letters, so that many share a start, an end or a sum.
std::wstring RandomName(std::mt19937& random)
{
    static constexpr wchar_t letters[] = {L'a', L'b', L'B', 0x61 + 0x100, 0xFF41, 0xFFFD, 0x20};
    std::wstring name;
    for (unsigned length = random() % 12; length > 0; --length)
        name += letters[random() % std::size(letters)];
    return name;
}

TEST_F(RepositoryTest, FindsAmongManyNamesWhatAMapOfThemFinds)
{
    for (unsigned seed = 0; seed < 8; ++seed) {
        std::mt19937 random(seed);
        std::map<std::wstring, int> params;
        const unsigned count = 1u << (2 * seed);
        for (unsigned i = 0; i < count && i < 5000; ++i) {
            const std::wstring name = RandomName(random);
            if (!name.empty()) params.try_emplace(name, static_cast<int>(i));
        }
        const ActionRepository* const repository = Load(NamedButtons(params));
        for (const auto& [name, param] : params)
            ExpectSame(*repository, params, name);
        for (int i = 0; i < 5000; ++i)
            ExpectSame(*repository, params, RandomName(random));
    }
}

TEST_F(RepositoryTest, ThousandsOfButtonsOfOneNameAreOne)
{
    std::string xml = "<b>";
    for (int i = 0; i < 5000; ++i)
        xml += "<b name='x" + std::to_string(i % 3) + "'><Push1 actionParam='" + std::to_string(i) +
               "'/></b>";
    const ActionRepository* const repository = Load(xml + "</b>");
    ExpectSame(*repository, {{L"x0", 0}, {L"x1", 1}, {L"x2", 2}}, L"x0");
    ExpectSame(*repository, {{L"x0", 0}, {L"x1", 1}, {L"x2", 2}}, L"x2");
    EXPECT_FALSE(repository->GetAction(L"x"));
    EXPECT_FALSE(repository->GetAction(L"x3"));
}

TEST_F(RepositoryTest, LooksUpWithoutAllocating)
{
    const std::wstring longName(500, L'n');
    const ActionRepository* const repository =
        Load(NamedButtons({{L"short", 1}, {longName, 2}, {L"other", 3}}));
    CountAllocations();
    s_allocations = 0;
    ActionInfo info;
    info.name = longName; // shows that the counting works
    EXPECT_GT(s_allocations, 0);
    s_allocations = 0;
    const ButtonAction* const found[] = {repository->GetAction(L"short"),
                                         repository->GetAction(longName.c_str()),
                                         repository->GetAction(L"none"),
                                         repository->GetAction(longName.c_str() + 1),
                                         repository->GetAction(L""),
                                         repository->GetAction(nullptr),
                                         ActionRepository::GetInstance()->GetAction(L"other")};
    EXPECT_EQ(s_allocations, 0);
    EXPECT_TRUE(found[0] && found[1] && found[6]);
    EXPECT_FALSE(found[2] || found[3] || found[4] || found[5]);
}

} // namespace
