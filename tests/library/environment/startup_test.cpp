// The order in which the library's objects are constructed when it is loaded and destroyed when it
// is unloaded. This program does not link the library. It loads it and learns of it before any of
// its code has run. Then it watches every access to the library's writable memory: it guards the
// pages and runs each access as a single step.
#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr wchar_t libraryName[] = L"Utils_Statics.dll";

struct Access
{
    std::uintptr_t address;
    bool isWrite;
};

struct Range
{
    std::uintptr_t begin = 0, end = 0;
};

// The ranges where a module keeps its variables.
std::vector<Range> WritableSections(const std::byte* module)
{
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(module);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(module + dos->e_lfanew);
    const IMAGE_SECTION_HEADER* section = IMAGE_FIRST_SECTION(headers);
    std::vector<Range> ranges;
    for (int i = 0; i < headers->FileHeader.NumberOfSections; ++i, ++section) {
        const std::string_view name(reinterpret_cast<const char*>(section->Name),
                                    strnlen(reinterpret_cast<const char*>(section->Name), 8));
        if (name != ".data" && name != ".bss") continue; // the others belong to the loader
        const auto begin = reinterpret_cast<std::uintptr_t>(module) + section->VirtualAddress;
        ranges.push_back({begin, begin + section->Misc.VirtualSize});
    }
    return ranges;
}

// Watches memory: while it is on, every access from code of this process is recorded in order. Only
// one watch and one thread at a time.
class MemoryWatch
{
public:
    static constexpr std::size_t capacity = 1 << 16;

    static void Start(std::byte* module)
    {
        sections = WritableSections(module);
        count = 0;
        handler = AddVectoredExceptionHandler(1, &OnException);
        Protect(PAGE_NOACCESS);
    }

    // The memory may have been unmapped meanwhile.
    static void Stop()
    {
        Protect(PAGE_READWRITE);
        RemoveVectoredExceptionHandler(handler);
    }

    static std::vector<Access> Recorded()
    {
        return {log.begin(), log.begin() + static_cast<std::ptrdiff_t>(count)};
    }

private:
    static void Protect(DWORD protection)
    {
        DWORD old;
        for (const Range& range : sections)
            VirtualProtect(reinterpret_cast<void*>(range.begin), range.end - range.begin,
                           protection, &old);
    }

    static bool IsWatched(std::uintptr_t address)
    {
        constexpr std::uintptr_t pageMask =
            0xFFF; // an access may also hit the rest of a section's last page
        return std::any_of(sections.begin(), sections.end(), [address](const Range& range) {
            return address >= range.begin && address < ((range.end + pageMask) & ~pageMask);
        });
    }

    static LONG CALLBACK OnException(EXCEPTION_POINTERS* exception)
    {
        constexpr DWORD trapFlag = 0x100;
        const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
        if (record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION &&
            IsWatched(record.ExceptionInformation[1])) {
            if (count < capacity)
                log[count++] = {record.ExceptionInformation[1],
                                record.ExceptionInformation[0] == 1};
            Protect(PAGE_READWRITE);
            exception->ContextRecord->EFlags |= trapFlag;
            isStepping = true;
            return EXCEPTION_CONTINUE_EXECUTION;
        }
        if (record.ExceptionCode == EXCEPTION_SINGLE_STEP && isStepping) {
            isStepping = false;
            Protect(PAGE_NOACCESS);
            return EXCEPTION_CONTINUE_EXECUTION;
        }
        return EXCEPTION_CONTINUE_SEARCH;
    }

    static inline std::vector<Range> sections;
    static inline std::array<Access, capacity> log;
    static inline std::size_t count = 0;
    static inline void* handler = nullptr;
    static inline bool isStepping = false;
};

// ---- The loader's notification, which comes when a library is mapped and before its code runs

struct UnicodeText
{
    USHORT bytes, capacity;
    const wchar_t* text;
};

struct LoadedNotification
{
    ULONG flags;
    const UnicodeText* fullName;
    const UnicodeText* baseName;
    void* base;
    ULONG size;
};

using NotificationFunction = void(CALLBACK*)(ULONG reason, const LoadedNotification* data,
                                             void* context);
using RegisterNotification = LONG(NTAPI*)(ULONG flags, NotificationFunction function, void* context,
                                          void** cookie);
using UnregisterNotification = LONG(NTAPI*)(void* cookie);

template <class Function>
Function NtFunction(const char* name)
{
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
}

void CALLBACK OnLibrary(ULONG reason, const LoadedNotification* data, void*)
{
    constexpr ULONG loaded = 1;
    const std::wstring_view name(data->baseName->text, data->baseName->bytes / sizeof(wchar_t));
    if (reason == loaded && name == libraryName)
        MemoryWatch::Start(static_cast<std::byte*>(data->base));
}

// ---- The watched objects

using Object = Range;

class Library
{
public:
    explicit Library(HMODULE module) : m_module(module) {}

    // The first `size` bytes of an exported object.
    Object Exported(const char* name, std::size_t size) const
    {
        const auto address = reinterpret_cast<std::uintptr_t>(GetProcAddress(m_module, name));
        EXPECT_NE(address, 0u) << name;
        return {address, address + size};
    }

    // The module object is not exported, so its run-time type information identifies it.
    Object ModuleObject() const
    {
        for (const Range& range : WritableSections(reinterpret_cast<const std::byte*>(m_module)))
            for (std::uintptr_t word = range.begin; word + sizeof word <= range.end;
                 word += sizeof word)
                if (TypeName(*reinterpret_cast<const std::uintptr_t*>(word)) ==
                    "17CUtils_StaticsApp")
                    return {word, word + sizeof word};
        return {};
    }

private:
    DWORD ImageSize() const
    {
        const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(m_module);
        const auto* const base = reinterpret_cast<const std::byte*>(m_module);
        return reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew)
            ->OptionalHeader.SizeOfImage;
    }

    bool Contains(std::uintptr_t address) const
    {
        const auto base = reinterpret_cast<std::uintptr_t>(m_module);
        return address >= base + sizeof(void*) && address < base + ImageSize() - 64;
    }

    // The mangled name of the class whose virtual table would be at `table`; empty when it is none.
    std::string_view TypeName(std::uintptr_t table) const
    {
        if (!Contains(table) || table % sizeof(void*) != 0) return {};
        const auto type = reinterpret_cast<const std::uintptr_t*>(table)[-1];
        if (!Contains(type) || type % sizeof(void*) != 0) return {};
        const auto name = reinterpret_cast<const std::uintptr_t*>(type)[1];
        if (!Contains(name)) return {};
        return {reinterpret_cast<const char*>(name),
                strnlen(reinterpret_cast<const char*>(name), 64)};
    }

    HMODULE m_module;
};

struct Span
{
    std::size_t first, last; // places in the recording
};

std::optional<Span> AccessesOf(const Object& object, const std::vector<Access>& record,
                               bool onlyWrites)
{
    std::optional<Span> span;
    for (std::size_t i = 0; i < record.size(); ++i) {
        if (record[i].address < object.begin || record[i].address >= object.end) continue;
        if (onlyWrites && !record[i].isWrite) continue;
        if (!span) span = Span{i, i};
        span->last = i;
    }
    return span;
}

class Startup : public testing::Test
{
protected:
    void SetUp() override
    {
        if (GetModuleHandleW(libraryName)) GTEST_FAIL() << "the library is loaded already";
        const auto registerFunction =
            NtFunction<RegisterNotification>("LdrRegisterDllNotification");
        ASSERT_NE(registerFunction, nullptr);
        ASSERT_EQ(registerFunction(0, &OnLibrary, nullptr, &m_cookie), 0);
        m_module = LoadLibraryW(libraryName);
        ASSERT_NE(m_module, nullptr) << "error " << GetLastError();
        MemoryWatch::Stop();
        m_construction = MemoryWatch::Recorded();

        const Library library(m_module);
        m_signal = library.Exported("_ZN20IStateChangeConsumer21m_onStateChangeSignalE",
                                    4 * sizeof(void*));
        m_thumbnailPath =
            library.Exported("_ZN9utilsExam18ThumbnailImagePathE", sizeof(std::wstring));
        m_map = library.Exported("_ZN9utilsExam16m_consoleTypeMapE", 8 * sizeof(void*));
        m_staticInit = library.Exported("_ZN9utilsExam12m_staticInitE", 1);
        m_moduleObject = library.ModuleObject();
        ASSERT_NE(m_moduleObject.begin, 0u);
    }

    void TearDown() override
    {
        if (m_module) FreeLibrary(m_module);
        if (m_cookie) NtFunction<UnregisterNotification>("LdrUnregisterDllNotification")(m_cookie);
    }

    std::vector<Access> Unload()
    {
        MemoryWatch::Start(reinterpret_cast<std::byte*>(m_module));
        EXPECT_TRUE(FreeLibrary(m_module));
        m_module = nullptr;
        MemoryWatch::Stop();
        EXPECT_EQ(GetModuleHandleW(libraryName), nullptr) << "the library was not unloaded";
        return MemoryWatch::Recorded();
    }

    HMODULE m_module = nullptr;
    void* m_cookie = nullptr;
    std::vector<Access> m_construction;
    Object m_signal, m_thumbnailPath, m_map, m_staticInit, m_moduleObject;
};

TEST_F(Startup, ObjectsAreConstructedInThePromisedOrder)
{
    ASSERT_LT(m_construction.size(), MemoryWatch::capacity);
    const auto signal = AccessesOf(m_signal, m_construction, true);
    const auto thumbnailPath = AccessesOf(m_thumbnailPath, m_construction, true);
    const auto map = AccessesOf(m_map, m_construction, true);
    const auto staticInit = AccessesOf(m_staticInit, m_construction, true);
    const auto moduleObject = AccessesOf(m_moduleObject, m_construction, true);
    ASSERT_TRUE(signal && thumbnailPath && map && staticInit && moduleObject);
    EXPECT_LT(signal->last, thumbnailPath->first);
    EXPECT_LT(thumbnailPath->last, map->first);
    EXPECT_LT(map->last, staticInit->first) << "the map is filled before m_staticInit is set";
    EXPECT_LT(staticInit->last, moduleObject->first);
}

TEST_F(Startup, StaticInitIsTrueAndThumbnailPathEmptyOnceLoaded)
{
    EXPECT_EQ(*reinterpret_cast<const bool*>(m_staticInit.begin), true);
    EXPECT_EQ(*reinterpret_cast<const wchar_t* const*>(m_thumbnailPath.begin)[0], L'\0');
}

TEST_F(Startup, ObjectsAreDestroyedInReverseOrder)
{
    const std::vector<Access> destruction = Unload();
    ASSERT_LT(destruction.size(), MemoryWatch::capacity);
    const auto moduleObject = AccessesOf(m_moduleObject, destruction, false);
    const auto map = AccessesOf(m_map, destruction, false);
    const auto thumbnailPath = AccessesOf(m_thumbnailPath, destruction, false);
    const auto signal = AccessesOf(m_signal, destruction, false);
    ASSERT_TRUE(moduleObject && map && thumbnailPath && signal);
    EXPECT_LT(moduleObject->last, map->first);
    EXPECT_LT(map->last, thumbnailPath->first);
    EXPECT_LT(thumbnailPath->last, signal->first);
}

TEST_F(Startup, LibraryMayBeLoadedAgain)
{
    Unload();
    m_module = LoadLibraryW(libraryName);
    ASSERT_NE(m_module, nullptr);
    MemoryWatch::Stop();
    const Library library(m_module);
    m_staticInit = library.Exported("_ZN9utilsExam12m_staticInitE", 1);
    EXPECT_EQ(*reinterpret_cast<const bool*>(m_staticInit.begin), true);
}

} // namespace
