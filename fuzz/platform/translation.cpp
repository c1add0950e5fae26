// The target sends a translated text in UTF-16 through the string table to a call with arguments.
#include <base/Encoding.h>
#include <fuzz/Input.h>
#include <fuzz/InputFile.h>
#include <fuzz/Require.h>
#include <Utils_Statics/GetStr.h>
#include <zel_string_convert/TableLoading.h>

namespace {

std::string Escaped(const std::wstring& text)
{
    std::string result;
    for (const char byte : base::Utf8FromWide(text))
        result += byte == '<' ? "&lt;" : byte == '&' ? "&amp;" : std::string(1, byte);
    return result;
}

std::string TableWith(const std::string& translation)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><xliff version=\"1.2\"><file "
           "source-language=\"en\" target-language=\"de\"><body><trans-unit id=\"k\">"
           "<source>%s %d %f</source><target>" +
           translation + "</target></trans-unit></body></file></xliff>";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const fuzz::Input input(data, size);
    const std::string table = TableWith(Escaped(input.RestAsText()));
    if (!zel_string_convert::LoadTable(fuzz::InputFile(table))) return 0; // not of XML's characters
    zel_string_convert::SetLanguage(L"de"); // fails when the text is empty
    const CString text = GetStr("k", L"Kestrow", 5, 2.5);
    fuzz::Require(text.GetLength() <= static_cast<int>(size) * 1536 + 64, "a text has a bound");
    zel_string_convert::ClearTable();
    return 0;
}
