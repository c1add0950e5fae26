// Eight threads at once on every operation that a header allows from any thread. threads-check
// compares the headers named here with those whose comments allow it.
#include <base/GdiPlusSession.h>
#include <gtest/gtest.h>
#include <pro_actions/CProActionCollection.h>
#include <qor_imgproc/ConvertFrame.h>
#include <qor_imgproc/ScanConverter.h>
#include <qor_utils/ConversionModel.h>
#include <qor_utils/HostProfile.h>
#include <qor_utils/LogOutput.h>
#include <qor_utils/PixelCoordinates.h>
#include <qor_utils/Profile.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelLogger.h>
#include <qor_utils/zelPath.h>
#include <test_support/LockOrder.h>
#include <test_support/ProtocolFolders.h>
#include <test_support/ResourceCounts.h>
#include <test_support/TemporaryRegistryKey.h>
#include <Utils_Statics/Utils_Statics.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <map>
#include <mutex>
#include <random>
#include <string_view>
#include <thread>

namespace {

constexpr unsigned threadCount = 8;

class Consumer : public IActionStateConsumer
{
public:
    void Register(const ActionStateInfo& state) { RegisterActionSignal(state); }
    void ActionStateChanged(const ActionStateInfo&, int value) override { m_value = value; }
    void ActionNotification(ActionType, int, int) override {}

    int Value() const { return m_value; }

private:
    std::atomic<int> m_value = -1;
};

constexpr ZelProbe probe = {qor_utils::linearProbe, 128, 300};

qor_utils::ScanGeometry Geometry()
{
    qor_utils::ScanGeometry geometry{};
    geometry.probe = &probe;
    geometry.lines = 64;
    geometry.samples = 64;
    geometry.samplingFreq = 40'000'000;
    geometry.soundSpeed = 1540;
    geometry.micronsPerPixel = {100, 100};
    geometry.width = 32;
    geometry.height = 32;
    return geometry;
}

struct Operation
{
    const char* header;
    std::function<bool()> isRight;
};

// The operations work on this. Those that change something change it between two values.
class Threads : public testing::Test
{
protected:
    Threads()
    {
        qor_utils::SetProfileRoot(m_key.Path().c_str());
        m_key.SetText(L"S", L"Text", L"right");
        m_key.SetNumber(L"S", L"Number", 7);
        test_support::WriteFile(
            m_folder / L"table.xlf",
            "<?xml version=\"1.0\"?><xliff version=\"1.2\" "
            "xmlns=\"urn:oasis:names:tc:xliff:document:1.2\"><file original=\"t\" "
            "datatype=\"plaintext\" source-language=\"en\" target-language=\"de\"><body>"
            "<trans-unit id=\"k\" resname=\"k\"><source>base</source><target>Ziel</target>"
            "</trans-unit></body></file></xliff>");
        zel_string_convert::LoadTable(m_folder / L"table.xlf");
        qor_utils::SetLogDirectory(m_folder / L"log0");
        qor_utils::SetStoreFolder(qor_utils::imagesStore, m_folder / L"0");
        BalloonMessageService::Create();
    }
    ~Threads() override
    {
        BalloonMessageService::Destroy();
        zel_string_convert::ClearTable();
        qor_utils::SetStoreFolder(qor_utils::imagesStore, L"");
        qor_utils::SetLogDirectory(L"");
        qor_utils::SetProfileRoot(L"");
    }

    std::vector<Operation> Library() const;
    std::vector<Operation> Product();
    std::vector<Operation> Computing() const;

    // One of two names, and the other next time. Their lengths differ, so that a text that is read
    // while it changes shows.
    std::wstring Next() { return ++m_changes % 2 ? L"0" : std::wstring(60, L'1'); }

    // The consumer of the calling thread. It stays until all threads have ended, because no
    // consumer may be destroyed while another thread is telling it.
    Consumer& OwnConsumer()
    {
        const std::scoped_lock lock(m_lock);
        return m_consumers[std::this_thread::get_id()];
    }

    static constexpr ActionStateInfo freeze = {static_cast<ActionType>(1), 0, 0};
    base::GdiPlusSession m_session;
    test_support::TemporaryRegistryKey m_key;
    test_support::ProtocolFolders m_protocol;
    test_support::TestVocabulary m_vocabulary{m_protocol / L"actions.xml"};
    test_support::TemporaryFolder m_folder;
    std::atomic<unsigned> m_changes = 0;

private:
    std::mutex m_lock;
    std::map<std::thread::id, Consumer> m_consumers;
};

std::vector<Operation> Threads::Library() const
{
    return {
        {"BitmapFunctions.h",
         [] {
             Gdiplus::Bitmap image(4, 4, PixelFormat32bppARGB);
             image.SetPixel(1, 1, Gdiplus::Color(0xFF646464));
             Gdiplus::Color colour;
             return GrayScaleBitmap(&image, -1) && image.GetPixel(1, 1, &colour) == Gdiplus::Ok &&
                    colour.GetR() <= 0x64 && colour.GetR() >= 0x63 &&
                    colour.GetR() == colour.GetB();
         }},
        {"CImgGeometry.h",
         [] { return CImgGeometry::GetUSDistance(10, 35, 7'700'000, 1540) == 2500; }},
        {"MatrixRoutines.h",
         [] {
             const double a[] = {2, 0, 0, 4};
             double b[] = {2, 4}, x[2] = {};
             MAT_MatrixVectorProduct(a, 2, 2, b, 2, x);
             return x[0] == 4 && x[1] == 16;
         }},
        {"BalloonMessageService.h",
         [] {
             BalloonMessageService("threads", 1, false, BalloonMessageService::information)(
                 L"title", L"a notice with %d", 5);
             return true;
         }},
        {"ShowCursorHelper.h",
         [] {
             const ShowCursorHelper guard(false);
             return true;
         }},
        {"utilsExam.h", [] { return utilsExam::FindPopupWindow(GetDesktopWindow()) == nullptr; }},
        {"CStatusBurning.h", [] { return CStatusBurning::setState(true), true; }},
        {"CStatusFtpTransfer.h", [] { return CStatusFtpTransfer::setState(true), true; }},
        {"CStatusGps.h", [] { return CStatusGps::setState(true), true; }},
        {"CStatusNetwork.h",
         [] { return CStatusNetwork::setState(true), CStatusNetwork::getState(); }},
        {"CStatusProbeSensor.h", [] { return CStatusProbeSensor::getState().errorStatus == 0; }},
        {"CStatusRecording.h",
         [] { return CStatusRecording::setState(true), CStatusRecording::getState(); }},
        {"CStatusStreaming.h",
         [] {
             CStatusStreaming::setState(CStatusStreaming::StreamingOn);
             return CStatusStreaming::getState() == CStatusStreaming::StreamingOn;
         }},
        {"CStatusWireless.h",
         [] { return CStatusWireless::setConnected(true), CStatusWireless::isConnected(); }},
    };
}

std::vector<Operation> Threads::Product()
{
    return {
        {"CProActionCollection.h",
         [] { return CProActionCollection::MapActionType(L"Imaging") == 1; }},
        {"VocabularyLoading.h",
         [this] {
             return pro_actions::LoadVocabulary(m_protocol / L"actions.xml") &&
                    pro_actions::ActionName(static_cast<ActionType>(1), 7) == L"Depth";
         }},
        {"IActionStateConsumer.h",
         [this] {
             Consumer& consumer = OwnConsumer();
             consumer.Register(freeze);
             IActionStateConsumer::ActionStateSignal(freeze, 1);
             return consumer.Value() == 1;
         }},
        {"HostProfile.h", [] { return qor_utils::ReadProfileInt(L"S", L"Number", 0) == 7; }},
        {"Profile.h", [] { return qor_utils::ReadProfileString(L"S", L"Text", L"") == L"right"; }},
        {"StoreFolders.h",
         [this] {
             qor_utils::SetStoreFolder(qor_utils::imagesStore, m_folder / Next());
             return true;
         }},
        {"zelPath.h",
         [this] {
             const std::wstring path = zelPath::getPath(qor_utils::imagesStore, L"a");
             return path == m_folder / L"0\\a" ||
                    path == m_folder / (std::wstring(60, L'1') + L"\\a");
         }},
        {"LogOutput.h",
         [this] {
             qor_utils::SetLogDirectory(m_folder / (L"log" + Next()));
             return true;
         }},
        {"zelLogger.h",
         [] {
             zelLogger::zelLogHelper("threads", 1, qor_utils::warningLevel)(L"a line %d", 5);
             return true;
         }},
        {"TableLoading.h",
         [this] {
             return zel_string_convert::LoadTable(m_folder / L"table.xlf") &&
                    zel_string_convert::SetLanguage(Next() == L"0" ? L"en" : L"de");
         }},
        {"ZelTString.h",
         [] {
             const std::wstring text = ZelTString::get("k", true);
             return text == L"base" || text == L"Ziel";
         }},
    };
}

std::vector<Operation> Threads::Computing() const
{
    return {
        {"ConvertFrame.h",
         [] {
             const std::vector<unsigned char> frame(64 * 64, 9);
             std::vector<unsigned char> image(32 * 32);
             return qor_imgproc::ConvertFrame(Geometry(), frame.data(), image.data());
         }},
        {"ScanConverter.h",
         [] {
             int line = -1, sample = -1;
             unsigned lineFraction = 0, sampleFraction = 0;
             ScanConverter::GetPreciseUSCoordinates(
                 3, 4, &line, &sample, &lineFraction, &sampleFraction, {0, 0, 64, 64}, &probe, 1540,
                 0, 0, 64, 40'000'000, {16, 0}, {100, 100}, 0, 1, false);
             return sample >= 0;
         }},
        {"PixelCoordinates.h", [] { return qor_utils::GetSampleSize(40'000'000, 1540) > 19; }},
        {"ConversionModel.h",
         [] {
             return qor_utils::ConversionModel(Geometry()).Shape() == qor_utils::ScanShape::linear;
         }},
    };
}

// Calls the operations in random order on eight threads for a time. Each result has to be right,
// and no two locks may be taken in two orders.
void CallOnEight(const std::vector<Operation>& operations, std::chrono::seconds time)
{
    const test_support::LockOrder order;
    const auto end = std::chrono::steady_clock::now() + time;
    std::vector<std::atomic<unsigned>> calls(operations.size());
    std::vector<std::atomic<unsigned>> wrong(operations.size());
    std::vector<std::jthread> threads;
    for (unsigned seed = 1; seed <= threadCount; ++seed)
        threads.emplace_back([&, seed] {
            std::minstd_rand random(seed);
            while (std::chrono::steady_clock::now() < end) {
                const std::size_t i = random() % operations.size();
                if (!operations[i].isRight()) ++wrong[i];
                ++calls[i];
            }
        });
    MSG message; // the notices come to this thread, faster than it shows them
    while (std::chrono::steady_clock::now() < end)
        if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
        else
            Sleep(1);
    threads.clear();

    for (std::size_t i = 0; i < operations.size(); ++i) {
        std::printf("%-26s %8u calls\n", operations[i].header, calls[i].load());
        EXPECT_EQ(wrong[i], 0u) << operations[i].header;
        EXPECT_GT(calls[i], threadCount) << operations[i].header;
    }
    std::printf("%u pairs of locks\n", static_cast<unsigned>(order.Pairs()));
    EXPECT_EQ(order.Circles(), "");
}

TEST_F(Threads, EightOnEveryOperationThatIsAllowedFromAny)
{
    std::vector<Operation> operations = Library();
    for (const auto& more : {Product(), Computing()})
        operations.insert(operations.end(), more.begin(), more.end());
    for (const Operation& operation : operations)
        EXPECT_TRUE(operation.isRight()) << operation.header;
    const DWORD handles = test_support::HandleCount();
    CallOnEight(operations, std::chrono::seconds(10));
    EXPECT_GT(test_support::LockOrder::Pairs(), 0u);
    EXPECT_LE(test_support::HandleCount(), handles + threadCount); // each keeps one for its locks
}

// Few operations are called far more often, so that they meet where they are short.
TEST_F(Threads, EightOnThoseThatShareAState)
{
    const std::vector<std::string_view> groups[] = {
        {"StoreFolders.h", "zelPath.h"}, {"TableLoading.h", "ZelTString.h"},
        {"LogOutput.h", "zelLogger.h"},  {"VocabularyLoading.h", "CProActionCollection.h"},
        {"IActionStateConsumer.h"},
    };
    for (const auto& group : groups) {
        std::vector<Operation> operations = Product();
        std::erase_if(operations, [&](const Operation& operation) {
            return std::ranges::find(group, operation.header) == group.end();
        });
        ASSERT_EQ(operations.size(), group.size());
        CallOnEight(operations, std::chrono::seconds(2));
    }
}

// The check itself, with locks that nobody waits for.
TEST(LockOrder, TwoOrdersAreACircleEvenByWayOfAThirdLock)
{
    const test_support::LockOrder order;
    const int a = 0, b = 0, c = 0;
    const auto nest = [&](const int& first, const int& second) {
        order.WaitsFor(&first, &first);
        order.WaitsFor(&second, &second);
        order.Releases(&first);
        order.Releases(&second);
    };
    nest(a, b);
    nest(b, c);
    EXPECT_EQ(order.Pairs(), 2u);
    EXPECT_EQ(order.Circles(), "");
    nest(c, a);
    EXPECT_NE(order.Circles(), "");
}

} // namespace
