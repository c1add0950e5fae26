#pragma once

#include <windows.h>

// A video codec for tests: it counts the requests it gets, and behaves as ordered. The test program
// loads the same DLL as Video for Windows does, gets its orders through
// TestCodecOrdersOfThisProcess, and so reaches every instance in its process.
struct TestCodecOrders
{
    static constexpr int scriptedFrames = 64;

    // The orders:
    wchar_t shortName[16];
    DWORD flags; // flags in its information record
    BOOL refuseOpen;
    BOOL refuseFormat;
    LONG stateSize;                  // bytes; 0: has no state; negative: does not know the message
    LONG failFrom;                   // the first frame that fails; negative: none
    LONG frameBytes[scriptedFrames]; // size of each compressed frame, which starts with the raw
                                     // frame's bytes
    HANDLE closing;  // set when an instance is about to end or to close; null: not told
    HANDLE mayClose; // awaited before that happens; null: not awaited

    // The requests it got:
    LONG opened;
    LONG closed;
    LONG statesRead;
    LONG statesWritten;
    LONG begun;
    LONG ended;
    LONG frames;
    LONG messages;
    LONG quality;   // quality of the last frame
    DWORD asked;    // ICCOMPRESS_KEYFRAME or 0, for the last frame
    BYTE state[32]; // the state that was written last
};

// The state's bytes count up from this value.
constexpr BYTE testCodecStateStart = 0x31;

// Exported as "TestCodecOrdersOfThisProcess".
using TestCodecOrdersFunction = TestCodecOrders* (*)();
