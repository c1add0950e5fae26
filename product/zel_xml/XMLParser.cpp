#include "XMLParser.h"

#include <base/Encoding.h>

#include <expat.h>

#include <algorithm>
#include <cwchar>
#include <exception>
#include <memory>
#include <string>
#include <type_traits>

namespace zel_xml {

namespace {

static_assert(std::is_same_v<XML_Char, wchar_t>, "expat has to be built for wide strings");

struct ParserDeleter
{
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter>;

// Describes the one code page that is read besides the encodings known to expat.
int XMLCALL DescribeEncoding(void*, const XML_Char* name, XML_Encoding* encoding) noexcept
try {
    constexpr UINT windows1252 = 1252;
    if (_wcsicmp(name, L"windows-1252") != 0) return XML_STATUS_ERROR;
    for (int byte = 0; byte < 256; ++byte) {
        const auto text = base::WideFromBytes(windows1252, std::string(1, static_cast<char>(byte)),
                                              MB_ERR_INVALID_CHARS);
        encoding->map[byte] = text ? text->front() : -1;
    }
    return XML_STATUS_OK;
} catch (const std::exception&) {
    return XML_STATUS_ERROR;
}

Parser CreateParser()
{
    Parser parser(XML_ParserCreate(nullptr));
    if (!parser) throw std::bad_alloc();
    XML_SetUnknownEncodingHandler(parser.get(), DescribeEncoding, nullptr);
    // A document of the largest size may not grow at all.
    XML_SetBillionLaughsAttackProtectionActivationThreshold(parser.get(), maxDocumentSize);
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser.get(), 1.0f);
    return parser;
}

bool Parse(const Parser& parser, std::string_view bytes)
{
    const int size = static_cast<int>(bytes.size());
    return XML_Parse(parser.get(), bytes.data(), size, XML_TRUE) == XML_STATUS_OK;
}

// The parser takes any text for a version.
bool IsVersion(std::wstring_view version) noexcept
{
    return version.starts_with(L"1.") && version.size() > 2 &&
           version.find_first_not_of(L"0123456789", 2) == std::wstring_view::npos;
}

// The text of a document type declaration without its internal subset, whose entities and default
// attributes are expanded in the tree.
std::wstring DoctypeText(const wchar_t* name, const wchar_t* systemId, const wchar_t* publicId)
{
    const auto quoted = [](const std::wstring& id) {
        const wchar_t* const quote = id.find(L'"') == std::wstring::npos ? L"\"" : L"'";
        return L" " + (quote + id) + quote;
    };
    std::wstring text = name;
    if (publicId) text += L" PUBLIC" + quoted(publicId);
    if (systemId) text += (publicId ? L"" : L" SYSTEM") + quoted(systemId);
    return text;
}

// Builds the tree from the parser's reports.
class TreeBuilder
{
public:
    TreeBuilder(pugi::xml_document& tree, ElementLines& lines)
        : m_parser(CreateParser()), m_parent(tree.root()), m_lines(lines)
    {
        XML_Parser const parser = m_parser.get();
        XML_SetUserData(parser, this);
        XML_SetXmlDeclHandler(parser, On<&TreeBuilder::CheckDeclaration>);
        XML_SetElementHandler(parser, On<&TreeBuilder::StartElement>, On<&TreeBuilder::EndElement>);
        XML_SetCharacterDataHandler(parser, On<&TreeBuilder::AddText>);
        XML_SetCommentHandler(parser, On<&TreeBuilder::AddComment>);
        XML_SetProcessingInstructionHandler(parser, On<&TreeBuilder::AddInstruction>);
        XML_SetDoctypeDeclHandler(parser, On<&TreeBuilder::StartDoctype>,
                                  On<&TreeBuilder::EndDoctype>);
    }

    TreeBuilder(const TreeBuilder&) = delete;
    TreeBuilder& operator=(const TreeBuilder&) = delete;

    bool Build(std::string_view bytes) { return Parse(m_parser, bytes); }
    int Line() const { return static_cast<int>(XML_GetCurrentLineNumber(m_parser.get())); }

private:
    // No exception may pass through the parser.
    template <auto handle, typename... Arguments>
    static void XMLCALL On(void* self, Arguments... arguments) noexcept
    {
        auto& builder = *static_cast<TreeBuilder*>(self);
        try {
            (builder.*handle)(arguments...);
        } catch (const std::exception&) {
            builder.Require(false);
        }
    }

    // Stops the parser when the condition is false. A few reports may still follow.
    void Require(bool isSound) noexcept
    {
        if (!isSound) XML_StopParser(m_parser.get(), XML_FALSE);
    }

    // Counts the texts of the tree, because the parser's limit does not include default attributes.
    // Checks the characters, because the parser lets lone surrogates of UTF-16 pass.
    const wchar_t* Checked(const wchar_t* text) noexcept
    {
        const std::wstring_view view(text);
        m_characters += view.size();
        Require(m_characters <= maxDocumentSize && IsXmlText(view));
        return text;
    }

    pugi::xml_node Append(pugi::xml_node_type type) noexcept
    {
        const pugi::xml_node node = m_parent.append_child(type);
        Require(!node.empty());
        return node;
    }

    void CheckDeclaration(const wchar_t* version, const wchar_t*, int) noexcept
    {
        Require(IsVersion(version));
    }

    void StartElement(const wchar_t* name, const wchar_t** attributes)
    {
        EndText();
        Require(++m_depth <= maxDepth);
        m_parent = Append(pugi::node_element);
        Require(m_parent.set_name(Checked(name)));
        m_lines.emplace_back(m_parent.internal_object(), Line());
        for (; *attributes; attributes += 2) {
            pugi::xml_attribute attribute = m_parent.append_attribute(Checked(attributes[0]));
            Require(attribute.set_value(Checked(attributes[1])));
        }
    }

    void EndElement(const wchar_t*)
    {
        EndText();
        --m_depth;
        m_parent = m_parent.parent();
    }

    // Text is reported in pieces.
    void AddText(const wchar_t* text, int length)
    {
        m_text.append(text, static_cast<std::size_t>(length));
    }

    void EndText() noexcept
    {
        if (m_text.empty()) return;
        Require(Append(pugi::node_pcdata).set_value(Checked(m_text.c_str())));
        m_text.clear();
    }

    void AddComment(const wchar_t* text) noexcept
    {
        if (m_isInDoctype) return;
        EndText();
        Require(Append(pugi::node_comment).set_value(Checked(text)));
    }

    void AddInstruction(const wchar_t* target, const wchar_t* data) noexcept
    {
        if (m_isInDoctype) return;
        EndText();
        pugi::xml_node instruction = Append(pugi::node_pi);
        Require(instruction.set_name(Checked(target)) && instruction.set_value(Checked(data)));
    }

    void StartDoctype(const wchar_t* name, const wchar_t* systemId, const wchar_t* publicId, int)
    {
        const std::wstring text = DoctypeText(name, systemId, publicId);
        Require(Append(pugi::node_doctype).set_value(Checked(text.c_str())));
        m_isInDoctype = true;
    }

    void EndDoctype() noexcept { m_isInDoctype = false; }

    Parser m_parser;
    pugi::xml_node m_parent; // the parent of the next report
    ElementLines& m_lines;
    std::wstring m_text; // reported, but not in the tree yet
    std::size_t m_characters = 0;
    int m_depth = 0;
    bool m_isInDoctype = false;
};

bool IsHighSurrogate(wchar_t c) noexcept
{
    return c >= 0xD800 && c <= 0xDBFF;
}

bool IsLowSurrogate(wchar_t c) noexcept
{
    return c >= 0xDC00 && c <= 0xDFFF;
}

bool IsPlainCharacter(wchar_t c) noexcept
{
    if (c < 0x20) return c == L'\t' || c == L'\n' || c == L'\r';
    return c < 0xD800 || (c > 0xDFFF && c < 0xFFFE);
}

// The verdict on a name by its characters; only names beyond ASCII need expat.
enum class NameVerdict
{
    no,
    yes,
    askParser
};

NameVerdict JudgeName(std::wstring_view name) noexcept
{
    const auto isStart = [](wchar_t c) {
        return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || c == L'_' || c == L':';
    };
    const auto isPart = [&](wchar_t c) {
        return isStart(c) || (c >= L'0' && c <= L'9') || c == L'-' || c == L'.';
    };
    const auto isAscii = [](wchar_t c) { return c < 0x80; };
    const auto isPossible = [&](wchar_t c) { return isPart(c) || !isAscii(c); };
    if (name.empty() || !std::all_of(name.begin(), name.end(), isPossible)) return NameVerdict::no;
    if (!std::all_of(name.begin(), name.end(), isAscii)) return NameVerdict::askParser;
    return isStart(name[0]) ? NameVerdict::yes : NameVerdict::no;
}

} // namespace

int ParseXml(std::string_view bytes, pugi::xml_document& tree, ElementLines& lines)
{
    TreeBuilder builder(tree, lines);
    if (!builder.Build(bytes)) return builder.Line();
    std::sort(lines.begin(), lines.end());
    return 0;
}

bool IsXmlName(const wchar_t* name) noexcept
try {
    const NameVerdict verdict = name ? JudgeName(name) : NameVerdict::no;
    if (verdict != NameVerdict::askParser) return verdict == NameVerdict::yes;
    const std::string element = base::Utf8FromWide(std::wstring(L"<").append(name).append(L"/>"));
    return element.size() <= maxDocumentSize && IsXmlText(name) && Parse(CreateParser(), element);
} catch (const std::exception&) {
    return false;
}

bool IsXmlText(std::wstring_view text) noexcept
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsPlainCharacter(text[i])) continue;
        if (!IsHighSurrogate(text[i]) || i + 1 == text.size() || !IsLowSurrogate(text[i + 1]))
            return false;
        ++i;
    }
    return true;
}

} // namespace zel_xml
