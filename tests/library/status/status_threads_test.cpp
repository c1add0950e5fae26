// Setters on eight threads at once while another one paints.
#include "StatusFixture.h"

#include <test_support/ChildTest.h>
#include <Utils_Statics/CStatusBurning.h>
#include <Utils_Statics/CStatusFtpTransfer.h>
#include <Utils_Statics/CStatusGps.h>
#include <Utils_Statics/CStatusNetwork.h>
#include <Utils_Statics/CStatusProbeSensor.h>
#include <Utils_Statics/CStatusRecording.h>
#include <Utils_Statics/CStatusStreaming.h>
#include <Utils_Statics/CStatusWireless.h>

#include <atomic>
#include <barrier>
#include <chrono>
#include <set>
#include <thread>
#include <vector>

using namespace std::chrono;

namespace {

constexpr int threadCount = 8;

// Counts the repaints that the setters ask for, not those of the timer's thread.
std::atomic<long long> s_repaints;
thread_local bool t_isSetter = false;

// Sets every item once. The result is the number of repaints that this requests.
int SetAll(int thread, int round)
{
    const bool state = round % 2 == 0;
    CStatusNetwork::setState(state);
    CStatusWireless::setConnected(state);
    CStatusWireless::setAvailable(state);
    CStatusWireless::update();
    CStatusBurning::setState(state);
    CStatusFtpTransfer::setState(state);
    CStatusGps::setState(state);
    CStatusRecording::setState(state);
    CStatusStreaming::setState(static_cast<CStatusStreaming::StreamingStatus>(round % 3));
    // All fields hold the same number, so that a torn reading shows.
    const double number = thread * 1'000'000.0 + round;
    CStatusProbeSensor::setState(
        {true, number, number, static_cast<std::uint8_t>(round % 251), static_cast<int>(number)});
    return 10;
}

bool IsWhole(const CStatusProbeSensor::SensorData& data)
{
    if (data == CStatusProbeSensor::SensorData()) return true;
    const int round = data.muxVersion % 1'000'000;
    return data.isSensorSupported && data.temperature == data.angle &&
           data.temperature == data.muxVersion && data.errorStatus == round % 251;
}

class StatusThreads : public StatusTest
{
protected:
    StatusThreads()
    {
        for (const wchar_t* const name :
             {L"burn.png", L"cineiRecord.png", L"connection.png", L"connectionon.png",
              L"pacemaker.png", L"ftpconnectionon.png", L"streamingon.png", L"streamingdisk.png",
              L"wireless1.png"})
            WriteIcon(name, 24, 24, 0xFFFF0000);
        for (const wchar_t* const name : {L"CDBurning", L"CineRecording", L"NetworkConnection",
                                          L"FTPTransfer", L"Streaming", L"WirelessStrength"})
            Set(name, 1);
        s_repaints = 0;
        IStatusItem::SetStatusCallback([] {
            if (t_isSetter) ++s_repaints;
        });
    }

    static std::vector<IStatusItem*> Items()
    {
        return {CStatusNetwork::getInstance(),  CStatusWireless::getInstance(),
                CStatusBurning::getInstance(),  CStatusFtpTransfer::getInstance(),
                CStatusGps::getInstance(),      CStatusRecording::getInstance(),
                CStatusStreaming::getInstance()};
    }
};

TEST_F(StatusThreads, SettersOfEightThreadsAreAllCountedWhileOnePaints)
{
    const auto end = steady_clock::now() + seconds(10);
    std::atomic<long long> expected = 0;
    std::atomic<int> torn = 0;
    std::vector<std::jthread> setters;
    for (int thread = 1; thread <= threadCount; ++thread)
        setters.emplace_back([&, thread] {
            t_isSetter = true;
            for (int round = 0; steady_clock::now() < end; ++round) {
                expected += SetAll(thread, round % 1'000'000);
                if (!IsWhole(CStatusProbeSensor::getState())) ++torn;
            }
        });
    int paintings = 0, widths = 0;
    for (; steady_clock::now() < end; ++paintings) {
        Row row(400, 30);
        int right = 400;
        for (IStatusItem* const item : Items()) {
            item->updateVisibleState();
            const int width = item->drawIcon(CRect(0, 0, right, 30), row.Graphics());
            EXPECT_TRUE(width == 0 || width == 24);
            right -= width;
        }
        widths += 400 - right;
        const int state = CStatusStreaming::getState();
        EXPECT_TRUE(state >= 0 && state <= 2);
    }
    setters.clear();
    EXPECT_EQ(s_repaints, expected);
    EXPECT_EQ(torn, 0);
    EXPECT_GT(paintings, 10);
    EXPECT_GT(widths, 0);
    std::printf("%lld calls of setters, %d paintings\n", static_cast<long long>(expected),
                paintings);
}

// Whatever the order of the last states, no timer remains that makes a lit icon blink.
TEST_F(StatusThreads, NoBlinkingIsLeftOverFromARace)
{
    {
        std::vector<std::jthread> setters;
        for (int thread = 0; thread < threadCount; ++thread)
            setters.emplace_back([thread] {
                for (int round = 0; round < 300; ++round)
                    CStatusStreaming::setState(
                        static_cast<CStatusStreaming::StreamingStatus>((round + thread) % 3));
            });
    }
    CStatusStreaming::setState(CStatusStreaming::StreamingOn);
    static std::atomic<int> s_calls;
    s_calls = 0;
    IStatusItem::SetStatusCallback([] { ++s_calls; });
    Sleep(2500);
    EXPECT_EQ(s_calls, 0);
    Row row;
    Draw(CStatusStreaming::getInstance(), row);
    EXPECT_NE(row.Drawn(), CRect());
    CStatusStreaming::setState(CStatusStreaming::StreamingOff);
}

// The first call makes the object, and only one is made. The test has a fresh process.
TEST(FirstUse, DISABLED_OnEightThreads)
{
    std::barrier start(threadCount);
    std::mutex mutex;
    std::set<const void*> objects;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < threadCount; ++thread)
            threads.emplace_back([&] {
                start.arrive_and_wait();
                const void* const found[] = {
                    CStatusNetwork::getInstance(), CStatusBurning::getInstance(),
                    CStatusStreaming::getInstance(), CStatusProbeSensor::getInstance()};
                const std::lock_guard lock(mutex);
                objects.insert(std::begin(found), std::end(found));
            });
    }
    std::exit(objects.size() == 4 ? 42 : 1);
}

TEST(FirstUse, OnEightThreadsMakesOneObjectOfEachClass)
{
    for (int round = 0; round < 5; ++round) {
        test_support::ChildTest child("FirstUse.DISABLED_OnEightThreads");
        EXPECT_EQ(child.Wait(60'000), 42u);
    }
}

TEST(StatusStates, AreLockFree)
{
    static_assert(std::atomic<bool>::is_always_lock_free);
    static_assert(std::atomic<CStatusStreaming::StreamingStatus>::is_always_lock_free);
    static_assert(std::atomic<IStatusItem*>::is_always_lock_free);
    static_assert(std::atomic<IStatusItem::StatusCallback>::is_always_lock_free);
    SUCCEED();
}

} // namespace
