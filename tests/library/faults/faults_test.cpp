// Each call that can fail, failed once: no crash, no hang, no lost handle, and nothing untrue told.
#include "FaultHooks.h"
#include "KnownFaults.h"
#include "Script.h"

#include <base/GdiPlusSession.h>
#include <gtest/gtest.h>
#include <qor_utils/HostProfile.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/ComScope.h>
#include <test_support/ExamWindow.h>
#include <test_support/LogCapture.h>
#include <test_support/Messages.h>
#include <test_support/ProtocolFolders.h>
#include <test_support/ResourceCounts.h>
#include <test_support/TemporaryRegistryKey.h>
#include <Utils_Statics/Utils_Statics.h>
#include <wmi_server/WmiServer.h>

#include <comdef.h>

#include <cstdio>
#include <new>

CWinApp theApplication(L"faults");

namespace faults {
namespace {

// Counts what a program has open.
struct Resources
{
    DWORD handles = test_support::HandleCount();
    DWORD drawingObjects = test_support::DrawingObjectCount();
    DWORD userObjects = test_support::UserObjectCount();

    bool IsAbove(const Resources& before) const
    {
        return handles > before.handles || drawingObjects > before.drawingObjects ||
               userObjects > before.userObjects;
    }
};

std::ostream& operator<<(std::ostream& out, const Resources& resources)
{
    return out << resources.handles << " handles, " << resources.drawingObjects
               << " drawing objects, " << resources.userObjects << " user objects";
}

// The surroundings of an application.
class FaultsTest : public testing::Test
{
protected:
    FaultsTest()
    {
        qor_utils::SetProfileRoot(m_key.Path().c_str());
        theApplication.SetRegistryKey(m_key.Path().c_str() + std::wstring(L"Software\\").size());
        m_key.Set(L"System\\Path", L"Export", REG_EXPAND_SZ, L"D:\\export", 20);
        m_key.SetNumber(L"faults\\Settings\\Capture", L"PrintButton1_Action", 5);
        m_key.SetText(L"faults\\Settings\\Capture", L"RecordCodec", L"Uncompressed");
        for (const wchar_t* const item : {L"CDBurning", L"CineRecording", L"FTPTransfer",
                                          L"NetworkConnection", L"Streaming", L"WirelessStrength"})
            m_key.SetNumber(L"faults\\Settings\\Status", item, 1);
        m_key.SetText(L"faults\\Settings", L"StreamingIP", L"192.168.1.9");
        m_server.SetAnswer(
            L"SELECT * FROM MSNdis_EnumerateAdapter",
            {{{L"InstanceName", L"a Wireless adapter"}, {L"DeviceName", L"\\DEVICE\\{5}"}}});
        test_support::WriteFile(m_protocol / L"factory\\P1\\ButtonActions.xml",
                                "<b><b name='b'><Push1 actionType='Imaging' action='Depth'/></b>"
                                "</b>");
        test_support::WriteFile(m_protocol / L"fallback\\button_states.xml", "<states/>");
    }
    ~FaultsTest() override
    {
        ActionRepository::DestroyInstance();
        CStatusFactory::destroyInstance();
        qor_utils::SetProfileRoot(L"");
    }

    std::vector<Step> Script() const
    {
        std::vector<Step> steps = FileSteps(m_folder);
        for (const auto& more : {RecordingSteps(m_folder), PictureSteps(m_folder), WindowSteps(),
                                 StatusSteps(), FrameworkSteps(), ComputingSteps(m_folder)})
            steps.insert(steps.end(), more.begin(), more.end());
        return steps;
    }

    static Outcome Run(const Step& step)
    {
        Outcome outcome;
        try {
            step.run(outcome);
        } catch (const std::bad_alloc&) { // as the contract says of some
            outcome.Result(false);
        } catch (const _com_error&) {
            outcome.Result(false);
        }
        test_support::Pump();
        return outcome;
    }

    test_support::ProtocolFolders m_protocol;
    test_support::TestVocabulary m_vocabulary{m_protocol / L"actions.xml"};
    test_support::TemporaryRegistryKey m_key;
    test_support::TemporaryFolder m_folder;
    test_support::StoreFolder m_images{qor_utils::imagesStore, m_folder.Path()};
    test_support::ComScope m_com;
    base::GdiPlusSession m_session;
    simulation::WmiServer m_server;
    test_support::ExamWindow m_window;
    test_support::AsMainWindow m_main{m_window};
};

// Every import of the modules stands in the table.
TEST_F(FaultsTest, TheTableIsWhole)
{
    const Hooks hooks;
    for (const std::string& import : hooks.missing)
        ADD_FAILURE() << import << " has no row, and no reason to have none";
    std::printf("%u functions can fail, %u cannot\n", static_cast<unsigned>(hooks.rows.size()),
                static_cast<unsigned>(hooks.exempt.size()));
}

// Counts what became of the faults.
struct Tally
{
    unsigned sites = 0;    // places of calls
    unsigned told = 0;     // a result told
    unsigned logged = 0;   // a log line told
    unsigned same = 0;     // the operation reached its end all the same
    unsigned noResult = 0; // the contract has nothing that tells
    unsigned notAgain = 0; // the call came once only
    unsigned spared = 0;   // known not to be survived

    void Print(const char* name) const
    {
        std::printf("%-28s %6u %6u %6u %6u %6u %6u %6u\n", name, sites, told, logged, same,
                    noResult, notAgain, spared);
    }
    Tally& operator+=(const Tally& other)
    {
        sites += other.sites;
        told += other.told;
        logged += other.logged;
        same += other.same;
        noResult += other.noResult;
        notAgain += other.notAgain;
        spared += other.spared;
        return *this;
    }
};

class Trial
{
public:
    Trial(const Step& step, const std::function<Outcome(const Step&)>& run,
          std::set<std::string>& failed)
        : m_step(step), m_run(run), m_failed(failed)
    {
    }

    // Fails the calls of a step, one after the other.
    const Tally& Execute()
    {
        m_run(m_step);
        m_run(m_step);
        Record();
        m_normal = m_run(m_step);
        EXPECT_FALSE(m_normal.Tells()) << m_step.name << m_normal.Seen();
        m_resources = Resources();
        for (const Site& site : Recorded()) {
            ++m_tally.sites;
            if (IsSpared(m_step.name, site.function))
                ++m_tally.spared;
            else
                Fail(site);
        }
        return m_tally;
    }

private:
    void Fail(const Site& site)
    {
        std::printf("  %s in %s at %p\n", std::string(site.function).c_str(), m_step.name.c_str(),
                    site.address);
        std::fflush(stdout);
        FailOnce(site, true);
        const Resources before = std::exchange(m_resources, Resources());
        if (!m_resources.IsAbove(before)) return;
        // A block that is kept once is not lost, and neither is a thread that still works.
        if (!Grows(site, before) || !Grows(site, m_resources)) return;
        if (!IsKept(m_step.name, site.function))
            ADD_FAILURE() << site.function << " in " << m_step.name << ": before " << before
                          << ", now " << m_resources;
    }

    // Fails it again; true when more is open than before, and stays so.
    bool Grows(const Site& site, const Resources before)
    {
        FailOnce(site, false);
        return !test_support::PumpUntil(
            [&] {
                m_resources = Resources();
                return !m_resources.IsAbove(before);
            },
            6000);
    }

    void FailOnce(const Site& site, bool isCounted)
    {
        test_support::LogCapture log;
        FailNext(site);
        const Outcome outcome = m_run(m_step);
        const bool hasFailed = HasFailed();
        if (hasFailed) m_failed.insert(std::string(site.function));
        if (isCounted) Judge(site, hasFailed, outcome, !log.Take().empty());
        const Outcome again = m_run(m_step);
        EXPECT_EQ(again.Seen(), m_normal.Seen())
            << m_step.name << " after a failure of " << site.function;
    }

    void Judge(const Site& site, bool hasFailed, const Outcome& outcome, bool hasLogged)
    {
        if (!hasFailed)
            ++m_tally.notAgain;
        else if (outcome.Seen() == m_normal.Seen())
            ++m_tally.same;
        else if (outcome.Tells())
            ++m_tally.told;
        else if (hasLogged)
            ++m_tally.logged;
        else if (!m_step.hasResult || IsUnheard(m_step.name, site.function))
            ++m_tally.noResult;
        else
            ADD_FAILURE() << site.function << " failed in " << m_step.name
                          << ", and nobody told:" << outcome.Seen() << " instead of"
                          << m_normal.Seen();
    }

    const Step& m_step;
    const std::function<Outcome(const Step&)> m_run;
    std::set<std::string>& m_failed;
    Outcome m_normal;
    Resources m_resources; // counted last
    Tally m_tally;
};

TEST_F(FaultsTest, EachCallThatFailsIsToldAndCostsNothing)
{
    const std::vector<Step> script = Script();
    for (const Step& step : script) // what is kept from the first time on
        Run(step);
    const Hooks hooks;
    std::set<std::string> failed;
    Tally all;
    std::printf("%-28s %6s %6s %6s %6s %6s %6s %6s\n", "step", "sites", "told", "logged", "same",
                "void", "once", "spared");
    for (const Step& step : script) {
        const Tally tally = Trial(step, Run, failed).Execute();
        tally.Print(step.name.c_str());
        all += tally;
    }
    all.Print("all");
    std::printf("%u of %u functions failed\n", static_cast<unsigned>(failed.size()),
                static_cast<unsigned>(hooks.rows.size()));
    for (const std::string& row : hooks.rows)
        EXPECT_TRUE(failed.contains(row) || Contains(UncalledFunctions(), row))
            << row << " is never called, without a reason";
}

} // namespace
} // namespace faults
