// Archives: the files of a study are packed under names relative to its folder, and unpacked into
// the current one.
#include <Utils_Statics/utilsExam.h>
#include <Utils_Statics/ZipCompress.h>
#include <Utils_Statics/ZipExtract.h>

#include <cstdio>
#include <fstream>

int main()
{
    utilsExam::CreateDirectoryW(L".\\study\\images");
    std::ofstream("study/study.xml") << "<study/>";
    std::ofstream("study/images/note.txt") << "left lobe";

    ZipCompress writer;
    if (!writer.Create(L"study.zip")) return 1;
    writer.SetBasePath(L"study\\");
    for (const wchar_t* const file : {L"study\\study.xml", L"study\\images\\note.txt"})
        std::printf("packed %ls: %d\n", file, writer.AddFile(file));
    writer.Close();

    utilsExam::RemoveDirectoryW(L"study", 0);
    utilsExam::CreateDirectoryW(L".\\unpacked\\here");
    SetCurrentDirectoryW(L"unpacked\\here");
    ZipExtract reader;
    if (!reader.Open(L"..\\..\\study.zip")) return 1;
    while (reader.ExtractNext(nullptr)) {
    } // false after the last entry, and at a damaged one
    reader.Close();

    std::string note;
    std::getline(std::ifstream("images/note.txt"), note);
    std::printf("unpacked \"%s\"\n", note.c_str());
    std::printf("%d bytes in all\n", static_cast<int>(utilsExam::GetDirectorySize(L".")));
}
