// Uses something of everything that crosses the boundary: exported functions, data members,
// strings, and a class that the library calls back. Then sets up everything that the library reads,
// as the host application does.
#include <pro_actions/CProActionCollection.h>
#include <pro_actions/NotifiedConsumer.h>
#include <pro_actions/VocabularyLoading.h>
#include <qor_imgproc/ConvertFrame.h>
#include <qor_imgproc/FrameMap.h>
#include <qor_utils/ConversionModel.h>
#include <qor_utils/HostProfile.h>
#include <qor_utils/LogOutput.h>
#include <qor_utils/ScanGeometry.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>
#include <Utils_Statics/Utils_Statics.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_xml/XMLDiagnosis.h>
#include <zel_xml/XMLEditing.h>

#include <cstdio>
#include <string>

namespace {

class Listener : public IStateChangeConsumer
{
public:
    long heard = 0;

private:
    void OnStateChange(StateChangeType, unsigned int, long param2) override { heard += param2; }
};

bool Check(bool held, const char* what)
{
    std::printf("  %-8s%s\n", held ? "ok" : "FAILED", what);
    return held;
}

std::wstring InFolder(const wchar_t* name)
{
    return zelPath::getPath(qor_utils::applicationStore, name);
}

// Writes a document with one action type that has one action, in the form that the vocabulary
// reads.
bool WriteVocabulary(const std::wstring& path)
{
    zelXMLFile file;
    if (!zel_xml::CreateDocument(file, path.c_str(), L"actions")) return false;
    const zelXMLNode type = zel_xml::AppendChild(file.getRootElement(), L"type");
    const zelXMLNode action = zel_xml::AppendChild(type, L"action");
    return type.setAttribute(L"name", L"Imaging") && type.setAttributeInt(L"value", 1) &&
           action.setAttribute(L"name", L"Freeze") && action.setAttributeInt(L"code", 7) &&
           zel_xml::SaveDocument(file);
}

bool WriteButtons(const std::wstring& path)
{
    zelXMLFile file;
    if (!zel_xml::CreateDocument(file, path.c_str(), L"buttons")) return false;
    const zelXMLNode button = zel_xml::AppendChild(file.getRootElement(), L"button");
    const zelXMLNode push = zel_xml::AppendChild(button, L"Push1");
    return button.setAttribute(L"name", L"F1") && push.setAttribute(L"actionType", L"Imaging") &&
           push.setAttribute(L"action", L"Freeze") && zel_xml::SaveDocument(file);
}

void KeepText(const qor_utils::LogMessage& message, void* kept)
{
    *static_cast<std::wstring*>(kept) = message.text;
}

// Checks the log line of a repository without a file, and then the repository with a file in the
// folder set for it.
bool IsHosted()
{
    std::wstring logged;
    qor_utils::SetLogDirectory(InFolder(L"logs"));
    qor_utils::SetLogHook(KeepText, &logged);
    qor_utils::SetStoreFolder(qor_utils::currentFactoryStore, InFolder(L"protocol"));
    CreateDirectoryW(InFolder(L"protocol").c_str(), nullptr);
    ActionRepository::GetInstance();
    qor_utils::SetLogHook(nullptr, nullptr);
    bool held = Check(logged == L"Could not load actions from file", "the log reaches the host");

    ActionRepository::DestroyInstance();
    const std::wstring buttons = InFolder(L"protocol\\ButtonActions.xml");
    held &= Check(WriteVocabulary(InFolder(L"actions.xml")) && WriteButtons(buttons) &&
                      zel_xml::FaultLineOf(buttons.c_str()) == 0,
                  "documents of its own");
    held &= Check(pro_actions::LoadVocabulary(InFolder(L"actions.xml")), "the vocabulary");
    const ButtonAction* const button = ActionRepository::GetInstance()->GetAction(L"F1");
    held &= Check(button && button->push1.action == 7, "a store folder of its own");
    held &= Check(pro_actions::ActionName(ActionType(1), 7) == L"Freeze", "names of actions");
    ActionRepository::DestroyInstance();

    qor_utils::SetProfileRoot(L"Software\\Utils_Statics client");
    held &= Check(qor_utils::ReadProfileInt(L"Settings", L"Unset", 5) == 5, "the profile root");
    held &= Check(zel_string_convert::LoadTable(InFolder(L"client.xlf")) &&
                      zel_string_convert::SetLanguage(L"de") &&
                      GetStr("client.depth", 3) == L"Tiefe: 3 cm" &&
                      TranslateStr(L"Depth: %d cm") == L"Tiefe: %d cm",
                  "a string table of its own");
    return held;
}

} // namespace

int main()
{
    bool held = Check(utilsExam::MapConsoleType(L"Tavren") == EConsoleType(4), "the console map");
    utilsExam::DevMode = true;
    held &= Check(utilsExam::DevMode, "a public flag");

    Listener listener;
    utilsExam::StateChangeSignal(StateChangeType(1), 0, 42);
    held &= Check(listener.heard == 42, "a state change reaches a consumer");

    CStringArray words;
    StringParse::GetAllWords(L"a,b,c", words, L',');
    held &= Check(words.GetSize() == 3 && words[2] == L"c", "texts and arrays");

    double identity[4] = {};
    MAT_MakeIdentity(identity, 2);
    held &= Check(identity[0] == 1 && identity[1] == 0 && identity[3] == 1, "the matrix routines");

    held &= IsHosted();

    std::puts(held ? "client: all held" : "client: FAILED");
    return held ? 0 : 1;
}
