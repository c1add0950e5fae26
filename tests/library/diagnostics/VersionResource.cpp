#include "VersionResource.h"

#include <test_support/Program.h>

#include <windows.h>

#include <stdexcept>

namespace version_resource {

namespace {

std::string RawText(const std::wstring& text)
{
    return std::string(reinterpret_cast<const char*>(text.c_str()),
                       (text.size() + 1) * sizeof(wchar_t));
}

void Align(std::string& bytes)
{
    bytes.resize((bytes.size() + 3) / 4 * 4);
}

void SetWord(std::string& bytes, std::size_t offset, std::size_t value)
{
    bytes[offset] = static_cast<char>(value & 0xFF);
    bytes[offset + 1] = static_cast<char>(value >> 8);
}

} // namespace

Node Root(const Fixed& fixed, std::vector<Node> children)
{
    return {L"VS_VERSION_INFO",
            std::string(reinterpret_cast<const char*>(&fixed), sizeof fixed),
            false,
            std::move(children),
            {},
            {},
            {}};
}

Node Text(std::wstring key, const std::wstring& value)
{
    return {std::move(key), RawText(value), true, {}, {}, {}, {}};
}

Node StringTable(std::wstring language, std::vector<Node> texts)
{
    return {std::move(language), {}, true, std::move(texts), {}, {}, {}};
}

Node StringTable(const std::wstring& language, const std::wstring& company,
                 const std::wstring& description, const std::wstring& product)
{
    return StringTable(language,
                       {Text(L"CompanyName", company), Text(L"FileDescription", description),
                        Text(L"ProductName", product)});
}

Node StringFileInfo(std::vector<Node> tables)
{
    return {L"StringFileInfo", {}, true, std::move(tables), {}, {}, {}};
}

Node Translations(const std::vector<std::uint32_t>& languages)
{
    const std::string value(reinterpret_cast<const char*>(languages.data()),
                            languages.size() * sizeof(std::uint32_t));
    Node translation = {L"Translation", value, false, {}, {}, {}, {}};
    return {L"VarFileInfo", {}, true, {std::move(translation)}, {}, {}, {}};
}

Node InEnglish(Node table)
{
    return Root({}, {StringFileInfo({std::move(table)}), Translations({english})});
}

std::string Bytes(const Node& node)
{
    std::string bytes(6, '\0');
    bytes += RawText(node.key);
    Align(bytes);
    bytes += node.value;
    for (const Node& child : node.children) {
        Align(bytes);
        bytes += Bytes(child);
    }
    SetWord(bytes, 0, node.length.value_or(static_cast<std::uint16_t>(bytes.size())));
    SetWord(bytes, 2,
            node.valueLength.value_or(
                static_cast<std::uint16_t>(node.value.size() / (node.isText ? 2 : 1))));
    SetWord(bytes, 4, node.type.value_or(node.isText ? 1 : 0));
    return bytes;
}

std::string NarrowBytes(const Node& node)
{
    const auto narrow = [](const std::wstring& text) {
        return std::string(text.begin(), text.end()) + '\0';
    };
    const std::wstring text(reinterpret_cast<const wchar_t*>(node.value.data()),
                            node.value.size() / sizeof(wchar_t));
    std::string value = node.isText ? std::string(text.begin(), text.end()) : node.value;
    std::string bytes = std::string(4, '\0') + narrow(node.key);
    Align(bytes);
    bytes += value;
    for (const Node& child : node.children) {
        Align(bytes);
        bytes += NarrowBytes(child);
    }
    SetWord(bytes, 0, node.length.value_or(static_cast<std::uint16_t>(bytes.size())));
    SetWord(bytes, 2, node.valueLength.value_or(static_cast<std::uint16_t>(value.size())));
    return bytes;
}

std::string File16(const std::string& resource)
{
    constexpr std::size_t header = 0x40;
    constexpr std::size_t table = header + 0x40;
    constexpr std::size_t tableSize = 2 + 8 + 12 + 2; // shift, a type, a resource, the end
    constexpr std::size_t data = 0x100;
    constexpr unsigned shift = 4;
    std::string bytes(data, '\0');
    bytes.replace(0, 2, "MZ");
    bytes[0x3C] = header;
    bytes.replace(header, 2, "NE");
    SetWord(bytes, header + 0x24, table - header);
    SetWord(bytes, header + 0x26, table + tableSize - header);
    SetWord(bytes, table, shift);
    SetWord(bytes, table + 2, 0x8010); // RT_VERSION
    SetWord(bytes, table + 4, 1);
    SetWord(bytes, table + 10, data >> shift);
    SetWord(bytes, table + 12, (resource.size() + 15) >> shift);
    SetWord(bytes, table + 16, 0x8001); // VS_VERSION_INFO
    bytes += resource;
    bytes.resize((bytes.size() + 15) / 16 * 16);
    return bytes;
}

void WriteFile(const std::wstring& path, const std::string& resource)
{
    std::string bytes = resource;
    if (!CopyFileW(test_support::BesideProgram(L"blank.dll").c_str(), path.c_str(), FALSE))
        throw std::runtime_error("cannot copy blank.dll");
    const HANDLE update = BeginUpdateResourceW(path.c_str(), TRUE);
    if (!update ||
        !UpdateResourceW(update, reinterpret_cast<LPCWSTR>(RT_VERSION),
                         MAKEINTRESOURCEW(VS_VERSION_INFO), LOWORD(english), bytes.data(),
                         static_cast<DWORD>(bytes.size())) ||
        !EndUpdateResourceW(update, FALSE))
        throw std::runtime_error("cannot put a resource into a file");
}

} // namespace version_resource
