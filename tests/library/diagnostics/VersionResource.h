#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// Version resources composed byte by byte, so that a test can write what no compiler writes.
namespace version_resource {

constexpr std::uint32_t english = 0x04B00409; // code page 1200

// A node of the resource's tree: a key, a value, children.
struct Node
{
    std::wstring key;
    std::string value; // its bytes
    bool isText = false;
    std::vector<Node> children;
    // The node's claim about itself, when that is not the truth.
    std::optional<std::uint16_t> length;
    std::optional<std::uint16_t> valueLength;
    std::optional<std::uint16_t> type;
};

// The numbers of a resource, in the resource's order.
struct Fixed
{
    std::uint32_t signature = 0xFEEF04BD;
    std::uint32_t layout = 0x10000;
    std::uint32_t fileHigh = 0x00010002;
    std::uint32_t fileLow = 0x00030004;
    std::uint32_t productHigh = 0x00050006;
    std::uint32_t productLow = 0x00070008;
    std::uint32_t flagsMask = 0x3F;
    std::uint32_t flags = 0x142; // sets more bits than the mask allows
    std::uint32_t os = 0x40004;
    std::uint32_t type = 3;
    std::uint32_t subtype = 7;
    std::uint32_t dateHigh = 0;
    std::uint32_t dateLow = 0;
};

Node Root(const Fixed& fixed, std::vector<Node> children);
Node Text(std::wstring key, const std::wstring& value);
Node StringTable(std::wstring language, std::vector<Node> texts);
// The three texts that the version reader knows.
Node StringTable(const std::wstring& language, const std::wstring& company,
                 const std::wstring& description, const std::wstring& product);
Node StringFileInfo(std::vector<Node> tables);
Node Translations(const std::vector<std::uint32_t>& languages);
// A resource with one table of texts, in the one language English.
Node InEnglish(Node table);

// The bytes of a tree.
std::string Bytes(const Node& root);
// The bytes as 16-bit files have them: ASCII texts, no types.
std::string NarrowBytes(const Node& root);

// Writes a copy of a program file without a version resource to `path`, with this resource.
void WriteFile(const std::wstring& path, const std::string& resource);

// The bytes of a 16-bit program file that holds nothing but that version resource.
std::string File16(const std::string& resource);

} // namespace version_resource
