// xml_verdicts FOLDER: prints the names of those files in a folder that are read as XML, for
// check-xml-verdicts.
#include <zel_xml/zelXMLFile.h>

#include <cstdio>
#include <filesystem>

int wmain(int count, wchar_t** arguments)
{
    if (count != 2) return 2;
    for (const auto& entry : std::filesystem::directory_iterator(arguments[1])) {
        zelXMLFile file;
        if (file.open(entry.path().wstring(), true))
            std::printf("%ls\n", entry.path().filename().c_str());
    }
    std::puts("xml_verdicts: done");
    return 0;
}
