#pragma once

#include <gtest/gtest.h>
#include <test_support/ImportHook.h>
#include <test_support/LogCapture.h>
#include <test_support/Messages.h>
#include <test_support/ResourceCounts.h>
#include <test_support/TipReader.h>
#include <Utils_Statics/BalloonMessageService.h>
#include <Utils_Statics/utilsExam.h>

#include <afxwin.h>

#include <string>

using test_support::MessageOnlyWindows;
using test_support::Pump;
using test_support::PumpUntil;
using test_support::ShownTip;
using test_support::ShowsText;
using test_support::TipText;
using test_support::TipTitle;
using test_support::TipWindows;
using test_support::TitleWatch;

extern CWinApp application;

// Counts the library's posts to its balloon window, and how many of them were freed, as long as the
// object lives. One object at a time.
class RequestCounter
{
public:
    RequestCounter();

    int Posted() const;
    // The requests that were posted and not freed.
    int Alive() const;

    // Makes the platform refuse posts from now on.
    void Refuse();

private:
    test_support::ImportHook m_post;
    test_support::ImportHook m_delete;
};

// A service on the test's thread, with its log and its posts.
class BalloonTest : public testing::Test
{
public:
    // Dispatches messages until a tip with this text is shown.
    static HWND WaitForTip(const std::wstring& text);
    // The requested duration of the last tip, in milliseconds.
    static UINT LastTime();

protected:
    BalloonTest();
    ~BalloonTest() override;

    // Expects that the tip points at this place of the screen.
    static void ExpectPointer(HWND tip, POINT at);

    test_support::LogCapture m_log;
    RequestCounter m_requests;
    TitleWatch m_titles;
    const std::wstring m_productName = utilsExam::GetProductName().GetString();

private:
    test_support::ImportHook m_setTimer;
};
