// Texts: a table of translated texts is loaded from beside the program, and a text comes with its
// arguments in the user's language. A list in one text becomes words.
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>
#include <Utils_Statics/Utils_Statics.h>
#include <zel_string_convert/TableLoading.h>

#include <cstdio>

int main()
{
    using namespace zel_string_convert;
    const auto texts = zelPath::getPath(qor_utils::applicationStore, L"client.xlf");
    std::wstring problem;
    if (!LoadTable(texts, &problem) || !SetLanguage(L"de")) {
        std::fprintf(stderr, "no texts: %ls\n", problem.c_str());
        return 1;
    }
    std::printf("%ls\n", GetStr("client.depth", 12).GetString());

    CStringArray words;
    StringParse::GetAllWords(L"gain,depth,focus", words, L',');
    for (const CString& word : words)
        std::printf("%ls\n", word.GetString());
}
