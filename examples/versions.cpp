// Version resources: of any file by CMiniVersion, and of the running program by utilsExam.
#include <Utils_Statics/CMiniVersion.h>
#include <Utils_Statics/utilsExam.h>

#include <cstdio>

int main()
{
    CMiniVersion library(L"Utils_Statics.dll");
    unsigned short number[4] = {}, text[80] = {};
    library.GetFileVersion(number);
    library.GetFileDescription(text, 80);
    std::printf("%ls\n", reinterpret_cast<const wchar_t*>(text));
    std::printf("has a version: %s\n", number[0] || number[1] ? "yes" : "no");
    library.Release(); // the object is a plain value; the one who made it frees its buffer

    CMiniVersion nothing(L"no such file.dll");
    nothing.GetFileVersion(number);
    std::printf("a missing file reads as %d.%d\n", number[0], number[1]);

    // This program has no resource, and no string table to say so in words.
    std::printf("this program's version: %ls\n", utilsExam::GetProductVersion().GetString());
}
