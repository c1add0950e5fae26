// Random texts: they are formatted as the C library does, and accepted or refused as a regular
// expression says.
#include "GetStrFixture.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <random>
#include <regex>
#include <utility>

namespace {

// A conversion of the given type with random flags, width and precision.
std::string RandomConversion(std::mt19937& random, const std::string& type)
{
    std::string conversion = "%";
    const bool isUnsigned = std::string("uxXo").find(type.back()) != std::string::npos;
    // A sign flag means nothing for unsigned numbers, and the C libraries differ about it.
    const std::string flags = isUnsigned ? "-#" : "-+ #";
    for (const char flag : flags)
        if (random() % 4 == 0) conversion += flag;
    const bool isText = type == "s" || type == "S" || type == "c";
    if (!isText && random() % 4 == 0) conversion += '0';
    if (random() % 2 == 0) conversion += std::to_string(1 + random() % 30);
    if (type != "c" && random() % 2 == 0) conversion += '.' + std::to_string(random() % 20);
    return conversion + type;
}

template <class Value>
void ExpectLikeThePlatform(const std::string& key, const std::string& format, Value value)
{
    wchar_t expected[512];
    ASSERT_GE(_snwprintf(expected, 512, Wide(format).c_str(), value), 0);
    EXPECT_EQ(std::wstring(GetStr(key.c_str(), value)), expected) << format;
}

// Compares with the compiler's C library, because the platform's own writes out of bounds for some
// integer formats with '#' and a precision.
template <class Value>
void ExpectLikeTheStandard(const std::string& key, const std::string& format, Value value)
{
    char expected[512];
    ASSERT_GE(__mingw_snprintf(expected, 512, format.c_str(), value), 0);
    EXPECT_EQ(std::wstring(GetStr(key.c_str(), value)), Wide(expected)) << format;
}

TEST_F(GetStrTest, FormatsLikeTheCLibrary)
{
    constexpr int rounds = 200;
    const std::string types[] = {"d", "i", "u", "x", "X", "o", "I64d", "I64u", "I64x", "f",
                                 "e", "E", "g", "G", "s", "S", "c",    "hd",   "ld"};
    std::mt19937 random(7);
    std::vector<std::pair<std::string, std::string>> formats;
    for (const std::string& type : types) {
        for (int round = 0; round < rounds; ++round) {
            formats.emplace_back(type, "<" + RandomConversion(random, type) + ">");
            table.Add("k" + std::to_string(formats.size() - 1), formats.back().second);
        }
    }
    table.Load();
    for (std::size_t at = 0; at < formats.size(); ++at) {
        const auto& [type, format] = formats[at];
        const std::string key = "k" + std::to_string(at);
        const long long bits =
            static_cast<long long>((static_cast<unsigned long long>(random()) << 32) | random());
        if (type[0] == 'I')
            ExpectLikeTheStandard(key, format, bits >> (random() % 64));
        else if (type == "s")
            ExpectLikeThePlatform(key, format, L"a wide text");
        else if (type == "S")
            ExpectLikeThePlatform(key, format, "a narrow text");
        else if (type == "c")
            ExpectLikeThePlatform(key, format, static_cast<int>(L'A' + random() % 50));
        else if (std::string("feEgG").find(type) != std::string::npos)
            ExpectLikeThePlatform(key, format, static_cast<double>(bits >> (random() % 64)) / 1024);
        else
            ExpectLikeTheStandard(key, format, static_cast<int>(bits >> (random() % 32)));
    }
    EXPECT_EQ(log.Take(), Messages{});
}

// The argument kind of one conversion as a letter; 0 when the conversion is unusable.
char KindOf(const std::string& size, char type)
{
    const bool isPlain = size.empty();
    if (std::strchr("diuoxX", type)) {
        if (size == "w") return 0;
        if (size == "ll" || size == "I64" || size == "j") return 'L';
        return (size == "I" || size == "z" || size == "t") && sizeof(void*) == 8 ? 'L' : 'i';
    }
    if (std::strchr("eEfFgGaA", type)) return isPlain || size == "l" ? 'f' : 0;
    if (type == 'p') return isPlain ? 'p' : 0;
    if (!isPlain && size != "h" && size != "l" && size != "w") return 0;
    if (type == 'c' || type == 'C') return 'i';
    return size == "h" || (isPlain && type == 'S') ? 'N' : 'W';
}

// The argument kinds of a whole text, found by a regular expression; nothing when the text is
// unusable.
std::optional<std::string> KindsOf(const std::string& text)
{
    static const std::regex conversion(
        "%[-+ #0]*([0-9]*)(?:\\.([0-9]*))?(hh|h|ll|l|w|j|z|t|I64|I32|I)?([diuoxXeEfFgGaAsScCp])");
    std::string kinds;
    for (auto at = text.begin(); at != text.end();) {
        std::smatch match;
        if (*at != '%' || (at + 1 != text.end() && at[1] == '%')) {
            at += *at == '%' ? 2 : 1;
            continue;
        }
        if (!std::regex_search(at, text.end(), match, conversion,
                               std::regex_constants::match_continuous))
            return std::nullopt;
        const char kind = KindOf(match.str(3), match.str(4)[0]);
        if (std::atof(match.str(1).c_str()) > 1024 || std::atof(match.str(2).c_str()) > 1024 ||
            kind == 0)
            return std::nullopt;
        kinds += kind;
        at = match[0].second;
    }
    return kinds;
}

TEST_F(GetStrTest, TakesOfGarbledTranslationsThoseThatKeepToTheContract)
{
    constexpr int count = 8000;
    const std::string base = "[%d|%s|%I64d|%f|%S]";
    std::mt19937 random(99);
    std::vector<std::string> texts;
    for (int at = 0; at < count; ++at) {
        const std::string alphabet = "%%%%%dddsssSfnxlIhw64*$.0-+# 19zLpc|";
        std::string text = "[";
        for (auto left = 1 + random() % 14; left > 0; --left)
            text += alphabet[random() % alphabet.size()];
        texts.push_back(text + "]");
        table.Add("k" + std::to_string(at), base, texts.back().c_str());
    }
    table.Load();
    int formatted = 0;
    for (int at = 0; at < count; ++at) {
        const std::string key = "k" + std::to_string(at);
        const std::string& text = texts[static_cast<std::size_t>(at)];
        const std::wstring result(GetStr(key.c_str(), 11, L"wide", 1ll << 40, 2.5, "narrow"));
        const std::optional<std::string> kinds = KindsOf(text);
        if (kinds && std::string("iWLfN").starts_with(*kinds)) {
            ++formatted;
            EXPECT_EQ(log.Take(), Messages{}) << text;
            EXPECT_TRUE(result.starts_with(L'[') && result.ends_with(L']')) << text;
            continue;
        }
        EXPECT_EQ(result, L"[11|wide|1099511627776|2.500000|narrow]") << text;
        EXPECT_EQ(log.Take(), Messages{DoesNotMatch(key, text, base)});
    }
    EXPECT_GT(formatted, count / 50);
    EXPECT_LT(formatted, count * 49 / 50);
}

} // namespace
