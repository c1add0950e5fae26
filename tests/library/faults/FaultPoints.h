#pragma once

#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <compare>
#include <cstdint>
#include <set>
#include <string_view>
#include <type_traits>

// Makes calls of the library and of the product's libraries fail, one at a time.
namespace faults {

// A call fails in one of two ways: in place of the platform's function, or after it, as the closing
// of something does, which is gone all the same.
enum class When
{
    instead,
    after
};

// A function of the platform that can fail.
struct Row
{
    const char* name;
    void* replacement;
    void (*setOriginal)(void* function);
};

// A place in a module that calls the function of a row. It is known by where the call returns to.
struct Site
{
    std::string_view function;
    void* address = nullptr;

    friend auto operator<=>(const Site&, const Site&) = default;
};

// From now on, the sites that calls come from are collected.
void Record();
// The sites since then, of all threads. Collects no more.
std::set<Site> Recorded();

// Lets the calls be that a test makes for itself.
class Rest
{
public:
    Rest();
    ~Rest();
    Rest(const Rest&) = delete;
    Rest& operator=(const Rest&) = delete;
};

// The next call that comes from this site fails; without an address, the next call of the function.
// `onFailure` is called then.
void FailNext(const Site& site, void (*onFailure)() = nullptr);
// True when it has failed. No call fails any more.
bool HasFailed();

// True for the call that has to fail.
bool IsDue(const Site& site);

// The result of a call that fails.
template <class Result>
Result Failure(std::intptr_t value)
{
    SetLastError(ERROR_ACCESS_DENIED);
    errno = EACCES;
    if constexpr (std::is_pointer_v<Result>)
        return reinterpret_cast<Result>(value);
    else
        return static_cast<Result>(value);
}

// The name of a function, as a part of a type.
template <std::size_t size>
struct Name
{
    constexpr Name(const char (&name)[size]) { std::copy_n(name, size, text); }

    char text[size] = {};
};

// The modules call this in place of the function.
template <class Function, Name name, std::intptr_t value, When when>
struct Fault;

template <class Result, class... Arguments, Name name, std::intptr_t value, When when>
struct Fault<Result(WINAPI*)(Arguments...), name, value, when>
{
    static Result WINAPI Call(Arguments... arguments)
    {
        if (!IsDue({name.text, __builtin_return_address(0)})) return s_original(arguments...);
        if (when == When::after) s_original(arguments...);
        return Failure<Result>(value);
    }

    inline static Result(WINAPI* s_original)(Arguments...) = nullptr;
};

#ifndef _WIN64 // where the two conventions of calls are one
template <class Result, class... Arguments, Name name, std::intptr_t value, When when>
struct Fault<Result (*)(Arguments...), name, value, when>
{
    static Result Call(Arguments... arguments)
    {
        if (!IsDue({name.text, __builtin_return_address(0)})) return s_original(arguments...);
        if (when == When::after) s_original(arguments...);
        return Failure<Result>(value);
    }

    inline static Result (*s_original)(Arguments...) = nullptr;
};
#endif

template <class Function, Name name, std::intptr_t value, When when>
Row MakeRow()
{
    using Replacement = Fault<Function, name, value, when>;
    return {name.text, reinterpret_cast<void*>(&Replacement::Call),
            [](void* function) { Replacement::s_original = reinterpret_cast<Function>(function); }};
}

} // namespace faults
