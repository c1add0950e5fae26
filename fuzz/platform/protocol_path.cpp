// The target looks for a file by a name in UTF-16, as a protocol or layout document has it.
#include <fuzz/Input.h>
#include <fuzz/Require.h>
#include <test_support/ProtocolFolders.h>
#include <Utils_Statics/utilsExam.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const test_support::ProtocolFolders folders;
    const fuzz::Input input(data, size);
    const std::wstring name = input.RestAsText();
    const std::wstring reference = folders / L"factory\\P1\\layout.xml";
    utilsExam::ParsePath(reference.c_str(), name.c_str());
    utilsExam::ParsePath(name.c_str(), L"a.png");
    utilsExam::GetProtocolFile(name.c_str());
    utilsExam::GetFactoryProtocolFile(name.c_str());
    utilsExam::GetObjectPath(name.c_str());
    utilsExam::GetStudyPath(name.c_str());
    utilsExam::GetPatientPath(name.c_str());
    utilsExam::GetImage(name.c_str());
    return 0;
}
