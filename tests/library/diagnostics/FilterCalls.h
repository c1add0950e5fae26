#pragma once

#include <Utils_Statics/MiniDumper.h>

#include <windows.h>

// Calls of the crash handler's filter without a crash. Each ends the process.
namespace crash_test {

// An exception as the platform hands it to the filter.
struct Exception
{
    Exception()
    {
        RtlCaptureContext(&context);
        record.ExceptionCode = STATUS_ILLEGAL_INSTRUCTION;
    }
    LONG Filter() { return MiniDumper::TopLevelFilter(&pointers); }

    CONTEXT context = {};
    EXCEPTION_RECORD record = {};
    EXCEPTION_POINTERS pointers = {&record, &context};
};

// Calls the filter twice as the platform would. The exit code has the first result as its tens and
// the second one as its ones.
void CallFilter();

// Calls the filter twice. The exit code holds the error modes after the first and after the second
// call, in 4 bits each.
void CallFilterForErrorModes();

// Calls the filter with an unreadable page in this very stack, and a stack pointer 64 bytes below
// it.
void CallFilterWithAnUnreadableStack();

// Calls the filter. The exit code is 1 when the report's file was created correctly.
void CallFilterForCreation();

// Calls the filter after a run of so many units of 100 nanoseconds that ends on the 30th of June
// 2024, 09:05:07.
void CallFilterAfter(long long units);

// Calls the filter while the first setting of the reporter cannot be written without a fault. The
// exit code is the result.
void CallFilterWithAFaultInIt();

// The same, but each setting is written with an exception that the platform handles itself.
void CallFilterWithAMessageInIt();

// Calls the filter while the platform does not tell the user's name.
void CallFilterForAnUnknownUser();

// Calls the filter on a system of an old version. No crash handler was made before, so the filter
// asks for the version now.
void CallFilterOnAnOldSystem();

} // namespace crash_test
