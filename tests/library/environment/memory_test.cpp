// Lack of memory: std::bad_alloc leaves only the operations that return texts or containers.
#include <base/InFolder.h>
#include <gtest/gtest.h>
#include <qor_utils/ULine.h>
#include <qor_utils/ZelProbe.h>
#include <test_support/Files.h>
#include <test_support/NoMemory.h>
#include <test_support/ProtocolFolders.h>
#include <test_support/TemporaryFolder.h>
#include <test_support/TemporaryRegistryKey.h>
#include <Utils_Statics/Utils_Statics.h>
#include <zel_xml/zelXMLFile.h>
#include <zel_xml/zelXMLNode.h>

#include <afxdisp.h>
#include <afxwin.h>

#include <cstdlib>
#include <cwchar>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace {

using test_support::NoMemory;
using test_support::TemporaryFolder;

class Handler : public IMouseHandler
{
public:
    bool OnMouseInput(unsigned int, unsigned int, int, int) override { return false; }
    void GetBackgroundRect(CRect& rect) override { rect = CRect(0, 0, 9, 9); }
};

class Consumer : public IStateChangeConsumer
{
public:
    void OnStateChange(StateChangeType, unsigned int, long) override {}
};

class PrecisionControl : public IPrecisionControl
{
public:
    void SetHandler(IPrecisionHandler*) override {}
};

CWinApp application(L"memory");

// The objects that the operations work on. All of them are made while there is memory.
class MemoryTest : public testing::Test
{
protected:
    MemoryTest()
    {
        application.SetRegistryKey(m_settings.Path().c_str() + std::wcslen(L"Software\\"));
        test_support::WriteFile(m_protocol / L"factory\\P1\\ButtonActions.xml",
                                "<b><b name='a button with a long name'><Push1 "
                                "actionType='Imaging' action='Depth'/></b></b>");
        test_support::WriteFile(m_folder / L"node.xml",
                                "<b name='a button with a long name'><Push1 name='long enough to "
                                "need memory'/></b>");
        CreateDirectoryW((m_folder / L"a folder").c_str(), nullptr);
        EXPECT_TRUE(m_document.open(m_folder / L"node.xml", true));
    }
    ~MemoryTest() override
    {
        ActionRepository::DestroyInstance();
        DerivedState::DestroyAll();
        CStatusFactory::destroyInstance();
    }

    void StoreSetting(const std::wstring& section, const wchar_t* name,
                      const std::wstring& text) const
    {
        m_settings.SetText(L"memory\\" + section, name, text);
    }

    // Calls the operation with memory for none of its allocations, then for one, two and so on,
    // until it lacks none. True when std::bad_alloc came out.
    static bool Throws(const std::function<void()>& operation)
    {
        bool thrown = false;
        for (int allocation = 0; allocation < 1000; ++allocation) {
            NoMemory::From(allocation);
            try {
                operation();
            } catch (const std::bad_alloc&) {
                thrown = true;
            }
            if (!NoMemory::End()) return thrown;
        }
        ADD_FAILURE() << "it never has enough";
        return thrown;
    }

    test_support::ProtocolFolders m_protocol;
    test_support::TestVocabulary m_vocabulary{m_protocol / L"actions.xml"};
    TemporaryFolder m_folder;
    test_support::TemporaryRegistryKey m_settings;
    base::InFolder m_inside{m_folder.Path()}; // where entries of archives go
    zelXMLFile m_document;
    NoMemory m_memory;
};

struct Operation
{
    const char* name;
    std::function<void()> call;
};

TEST_F(MemoryTest, LeavesOperationsThatReturnTextsOrContainers)
{
    const std::wstring text(40, L'x');
    const CString words = L"a text that is too long for any small buffer";
    CStringArray list;
    CString copy;
    std::wstring standardCopy;
    const Operation operations[] = {
        {"GetStr", [] { GetStr("a key without a text that is long"); }},
        {"GetAllWords", [&] { StringParse::GetAllWords(words, list, L' '); }},
        {"GetFirstWord", [&] { StringParse::GetFirstWord(words, L'!'); }},
        {"QOR_2_MFC", [&] { QOR_MFC_CONVERSIONS::QOR_2_MFC(text); }},
        {"MFC_2_QOR", [&] { QOR_MFC_CONVERSIONS::MFC_2_QOR(words); }},
        {"StlListToMfcList", [&] { utilsExam::StlListToMfcList({text}, list); }},
        {"GetApplicationPath", [] { utilsExam::GetApplicationPath(); }},
        {"GetObjectPath", [&] { utilsExam::GetObjectPath(text.c_str()); }},
        {"GetImage", [&] { utilsExam::GetImage(text.c_str()); }},
        {"ParsePath", [&] { utilsExam::ParsePath(L"C:\\a\\b.xml", text.c_str()); }},
        {"GetProtocolFile", [] { utilsExam::GetProtocolFile(L"ButtonActions.xml"); }},
        {"GetLocalIP", [] { utilsExam::GetLocalIP(); }},
        {"ActionRepository::GetInstance",
         [] {
             ActionRepository::GetInstance();
             ActionRepository::DestroyInstance();
         }},
    };
    for (const Operation& operation : operations)
        EXPECT_TRUE(Throws(operation.call)) << operation.name;
}

TEST_F(MemoryTest, LeavesNoOperationOnFilesAndFolders)
{
    const std::wstring folder = m_folder / L"a new folder";
    const std::wstring file = m_folder / L"node.xml";
    const std::wstring copy = m_folder / L"copy.xml";
    const std::wstring archive = m_folder / L"an archive.zip";
    const std::wstring base = m_folder / L"";
    const CString whole = m_folder.Path().c_str();
    const Operation operations[] = {
        {"CreateDirectoryW", [&] { utilsExam::CreateDirectoryW(folder.c_str()); }},
        {"RemoveDirectoryW", [&] { utilsExam::RemoveDirectoryW(folder.c_str(), TRUE); }},
        {"GetDirectorySize", [&] { utilsExam::GetDirectorySize(whole); }},
        {"SHFileOperationW",
         [&] {
             utilsExam::SHFileOperationW(FO_COPY, file.c_str(), copy.c_str(), 1, 0, nullptr,
                                         nullptr, nullptr);
         }},
        {"CheckFileIsWritable", [&] { utilsExam::CheckFileIsWritable(file.c_str()); }},
        {"CMiniVersion", [&] { const CMiniVersion version(file.c_str()); }},
        {"ZipCompress",
         [&] {
             ZipCompress zip;
             zip.SetBasePath(base);
             if (zip.Create(archive.c_str())) zip.AddFile(file.c_str());
             zip.Close();
         }},
        {"ZipCompress without a base path",
         [&] {
             ZipCompress zip;
             if (zip.Create(archive.c_str())) zip.AddFile(file.c_str());
         }},
        {"ZipExtract",
         [&] {
             ZipExtract zip;
             if (zip.Open(archive.c_str())) zip.ExtractNext(nullptr);
             zip.Close();
         }},
        {"IsWirelessAdapterAvailable", [] { utilsExam::IsWirelessAdapterAvailable(); }},
        {"FindFirstRemovableDrive",
         [] {
             CString drive;
             utilsExam::FindFirstRemovableDrive(drive);
         }},
    };
    for (const Operation& operation : operations)
        EXPECT_FALSE(Throws(operation.call)) << operation.name;
}

TEST_F(MemoryTest, LeavesNoRegistration)
{
    Handler handlers[40];
    PrecisionControl controls[40];
    const Operation operations[] = {
        {"MouseCapture::Register",
         [&] {
             for (Handler& handler : handlers)
                 MouseCapture::Register(&handler);
         }},
        {"MouseCapture::HandleMouse",
         [] {
             MouseCapture::HandleMouse(WM_LBUTTONDOWN, MK_LBUTTON, {3, 3});
         }},
        {"MouseCapture::LockNext", [] { MouseCapture::LockNext(); }},
        {"PrecisionMouse::Register",
         [&] {
             for (PrecisionControl& control : controls)
                 PrecisionMouse::Register(&control);
         }},
        {"PrecisionMouse::UpdateHandler", [] { PrecisionMouse::UpdateHandler(nullptr); }},
        {"IStateChangeConsumer", [] { Consumer consumers[40]; }},
        {"StateChangeSignal",
         [] {
             Consumer consumer;
             utilsExam::StateChangeSignal(StateChangeType{}, 0, 0);
         }},
    };
    for (const Operation& operation : operations)
        EXPECT_FALSE(Throws(operation.call)) << operation.name;
    for (Handler& handler : handlers)
        MouseCapture::Unregister(&handler);
    for (PrecisionControl& control : controls)
        PrecisionMouse::Unregister(&control);
}

TEST_F(MemoryTest, LeavesNoOperationOnButtonsAndStates)
{
    const Operation operations[] = {
        {"ButtonAction::Load", [&] { ButtonAction().Load(m_document.getRootElement()); }},
        {"ButtonPlacement::Load", [&] { ButtonPlacement().Load(m_document.getRootElement()); }},
        {"DerivedState::LoadAll", [] { DerivedState::LoadAll(); }},
    };
    for (const Operation& operation : operations)
        EXPECT_FALSE(Throws(operation.call)) << operation.name;
}

TEST_F(MemoryTest, LeavesNoOperationOnTheStatusRow)
{
    IStatusItem* const items[] = {CStatusNetwork::getInstance(), CStatusStreaming::getInstance(),
                                  CStatusWireless::getInstance(),
                                  CStatusProbeSensor::getInstance()};
    CWmiService::getInstance();
    const Operation operations[] = {
        {"addItem",
         [] {
             CStatusFactory::addItem(nullptr);
             CStatusFactory::getItems() = {}; // without storage, so it has to allocate again
         }},
        {"CStatusNetwork::setState", [] { CStatusNetwork::setState(true); }},
        {"setState", [] { CStatusStreaming::setState(CStatusStreaming::StreamingOn); }},
        {"updateVisibleState",
         [&items] {
             for (IStatusItem* const item : items)
                 item->updateVisibleState();
         }},
        {"CWmiService::Query", [] { CWmiService::getInstance()->Query(1, L"SELECT"); }},
    };
    for (const Operation& operation : operations)
        EXPECT_FALSE(Throws(operation.call)) << operation.name;
}

TEST_F(MemoryTest, LeavesNoOperationOnWindowsAndFacts)
{
    StoreSetting(L"Settings", L"TeeTempThresh", L"40.5" + std::wstring(40, L'0'));
    const Operation operations[] = {
        {"MapConsoleType", [] { utilsExam::MapConsoleType(L"a console of another maker"); }},
        {"CToolTipProvider",
         [] {
             CToolTipProvider provider;
             provider.SetToolTip(L"text", L"title", {0, 0}, CToolTipProvider::iconNone, 10);
             const CToolTipProvider copy(provider);
         }},
        {"ClosePopups", [] { utilsExam::ClosePopups(nullptr); }},
        {"GetPrintButtonAction", [] { EXPECT_EQ(utilsExam::GetPrintButtonAction(1), 18u); }},
        {"GetPrintButtonFlags", [] { EXPECT_EQ(utilsExam::GetPrintButtonFlags(1), 13u); }},
        {"getTemperatureThreshold", [] { CStatusProbeSensor::getTemperatureThreshold(); }},
        {"CalculateDialogRect", [] { utilsExam::CalculateDialogRect(); }},
        {"BalloonMessageService",
         [] {
             BalloonMessageService::Create();
             BalloonMessageService("file", 1, true, BalloonMessageService::warning)(
                 1, L"a title", L"a text that is long enough for the heap: %s", L"so it is");
             BalloonMessageService::Destroy();
         }},
    };
    for (const Operation& operation : operations)
        EXPECT_FALSE(Throws(operation.call)) << operation.name;
    EXPECT_EQ(CStatusProbeSensor::getTemperatureThreshold(), 40.5);
}

TEST_F(MemoryTest, LeavesNoRecording)
{
    StoreSetting(L"Settings\\Capture", L"RecordCodec", L"Uncompressed");
    const CString raw = (m_folder / L"a raw cine.bin").c_str();
    const CString movie = (m_folder / L"a movie.avi").c_str();
    CCineStore store;
    ASSERT_TRUE(store.InitStorage(raw, uData{}, uDataDesc{}, 0, 0, 0, 0, 0, 0));
    int calls = 0;
    store.SetCompleteCallback([](const wchar_t*, void* count) { ++*static_cast<int*>(count); },
                              &calls);
    CCineStoreAVI movies;
    std::vector<unsigned char> data(64);
    CBitmap frame;
    frame.Attach(CreateBitmap(16, 16, 1, 32, nullptr));
    const std::vector<CRect> planes(6, CRect(0, 0, 16, 16));
    unsigned int image[16 * 16] = {};
    CBitmap mask;
    mask.Attach(CreateBitmap(16, 16, 1, 1, nullptr));
    const Operation operations[] = {
        {"CCineStore",
         [&] {
             store.AddFrame(data.data(), 64);
             store.EndStorage();
         }},
        {"CCineStoreAVI",
         [&] {
             movies.InitStorage(movie, nullptr, 16, 16, CRect(0, 0, 16, 16), 32);
             movies.AddFrame(frame, false, false);
             movies.EndStorage();
         }},
        {"CCineStoreAVI of planes",
         [&] {
             movies.InitStorage(movie, &frame, 16, 16, planes, 32);
             movies.AddFrame(image, image, image, image, image, mask, mask, false, false, false,
                             false);
             movies.EndStorage();
         }},
    };
    for (const Operation& operation : operations)
        EXPECT_FALSE(Throws(operation.call)) << operation.name;
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(movies.InitStorage(movie, &frame, 16, 16, planes, 32)) << "nothing was recorded";
}

TEST_F(MemoryTest, LeavesNoOperationOnPictures)
{
    CBitmap pixels;
    pixels.Attach(CreateBitmap(16, 16, 1, 32, nullptr));
    const std::wstring path = m_folder / L"picture.png";
    const auto handle = static_cast<HBITMAP>(pixels.GetSafeHandle());
    const Operation operations[] = {
        {"SaveBitmap", [&] { SaveBitmap(handle, 0, path.c_str()); }},
        {"BitmapFromFile", [&] { delete BitmapFromFile(path.c_str()); }},
        {"GrayScale", [&] { GrayScale(handle, 255); }},
        {"LoadImageFromIconStore", [] { delete LoadImageFromIconStore(L"none.png"); }},
    };
    for (const Operation& operation : operations)
        EXPECT_FALSE(Throws(operation.call)) << operation.name;
}

} // namespace
