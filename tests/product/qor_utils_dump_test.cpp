// Memory dumps, read back by their published layout.
#include <base/Handles.h>
#include <gtest/gtest.h>
#include <qor_utils/MemoryDumper.h>
#include <test_support/ChildTest.h>
#include <test_support/Files.h>
#include <test_support/ImportHook.h>
#include <test_support/TemporaryFolder.h>

#include <windows.h>
#include <dbghelp.h>

#include <atomic>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using test_support::FileExists;
using test_support::TemporaryFolder;

// Reads a dump's structures and checks each offset against the file's size. The structures are
// packed to 4 bytes, so an expectation must get a copy (+member) of a 64-bit member, never a
// reference to it.
class Dump
{
public:
    explicit Dump(const std::wstring& path)
        : m_bytes(test_support::ReadFile(path)), m_header(At<MINIDUMP_HEADER>(0))
    {
    }

    const MINIDUMP_HEADER& Header() const { return m_header; }

    template <typename T>
    T At(std::size_t offset) const
    {
        if (offset > m_bytes.size() || m_bytes.size() - offset < sizeof(T))
            throw std::runtime_error("offset beyond file");
        T value;
        std::memcpy(&value, m_bytes.data() + offset, sizeof value);
        return value;
    }

    std::optional<MINIDUMP_LOCATION_DESCRIPTOR> Stream(ULONG32 type) const
    {
        for (ULONG32 i = 0; i < m_header.NumberOfStreams; ++i) {
            const auto entry = At<MINIDUMP_DIRECTORY>(m_header.StreamDirectoryRva +
                                                      i * sizeof(MINIDUMP_DIRECTORY));
            if (entry.StreamType == type) return entry.Location;
        }
        return std::nullopt;
    }

    // The entries of a stream that is a count followed by an array.
    template <typename Entry>
    std::vector<Entry> List(ULONG32 type) const
    {
        const auto location = Stream(type);
        if (!location) return {};
        std::vector<Entry> entries(At<ULONG32>(location->Rva));
        std::size_t offset = location->Rva + sizeof(ULONG32);
        for (Entry& entry : entries) {
            entry = At<Entry>(offset);
            offset += sizeof(Entry);
        }
        return entries;
    }

    std::string Bytes(const MINIDUMP_LOCATION_DESCRIPTOR& location) const
    {
        return m_bytes.substr(location.Rva, location.DataSize);
    }

    std::wstring Name(RVA rva) const
    {
        std::wstring text(At<ULONG32>(rva) / sizeof(wchar_t), L'\0');
        for (std::size_t i = 0; i < text.size(); ++i)
            text[i] = At<wchar_t>(rva + sizeof(ULONG32) + i * sizeof(wchar_t));
        return text;
    }

    bool Contains(std::string_view bytes) const { return m_bytes.find(bytes) != std::string::npos; }

private:
    std::string m_bytes;
    MINIDUMP_HEADER m_header;
};

struct CapturedException
{
    CapturedException()
    {
        RtlCaptureContext(&context);
        record.ExceptionCode = 0xC0000005;
        record.ExceptionAddress = reinterpret_cast<void*>(&RtlCaptureContext);
        record.NumberParameters = 2;
        record.ExceptionInformation[0] = 1;
        record.ExceptionInformation[1] = 0x1234;
    }

    CONTEXT context = {};
    EXCEPTION_RECORD record = {};
    EXCEPTION_POINTERS pointers = {&record, &context};
};

MINIDUMP_THREAD ThreadOf(const Dump& dump, DWORD id)
{
    for (const auto& thread : dump.List<MINIDUMP_THREAD>(ThreadListStream)) {
        if (thread.ThreadId == id) return thread;
    }
    throw std::runtime_error("the thread is not in the dump");
}

// The captured exception, in this thread.
MINIDUMP_EXCEPTION_STREAM ExceptionOf(const Dump& dump)
{
    const auto location = dump.Stream(ExceptionStream);
    if (!location) throw std::runtime_error("no exception is in the dump");
    const auto stream = dump.At<MINIDUMP_EXCEPTION_STREAM>(location->Rva);
    EXPECT_EQ(stream.ThreadId, GetCurrentThreadId());
    EXPECT_EQ(stream.ExceptionRecord.ExceptionCode, 0xC0000005u);
    return stream;
}

class MiniDump : public testing::Test
{
protected:
    bool Write(EXCEPTION_POINTERS* exception = nullptr, int type = 0) const
    {
        return MemoryDumper::GenerateMiniDump(m_path.c_str(), exception, type);
    }

    const TemporaryFolder m_folder;
    const std::wstring m_path = m_folder / L"a.dmp";
};

TEST_F(MiniDump, HasTheHeaderOfItsKind)
{
    CapturedException exception;
    ASSERT_TRUE(Write(&exception.pointers));
    const Dump dump(m_path);
    EXPECT_EQ(dump.Header().Signature, 0x504D444Du); // "MDMP"
    EXPECT_EQ(dump.Header().Version & 0xFFFF, 0xA793u);
    EXPECT_EQ(+dump.Header().Flags, 0u);
}

TEST_F(MiniDump, DescribesTheSystemAndTheModules)
{
    ASSERT_TRUE(Write());
    const Dump dump(m_path);
    const auto system = dump.Stream(SystemInfoStream);
    ASSERT_TRUE(system);
    EXPECT_EQ(dump.At<USHORT>(system->Rva),
              sizeof(void*) == 8 ? PROCESSOR_ARCHITECTURE_AMD64 : PROCESSOR_ARCHITECTURE_INTEL);
    const auto own = reinterpret_cast<ULONG64>(GetModuleHandleW(L"qor_utils.dll"));
    bool found = false;
    for (const auto& module : dump.List<MINIDUMP_MODULE>(ModuleListStream))
        found |= module.BaseOfImage == own &&
                 dump.Name(module.ModuleNameRva).ends_with(L"qor_utils.dll");
    EXPECT_TRUE(found);
}

TEST_F(MiniDump, RecordsTheExceptionForTheCallingThread)
{
    CapturedException exception;
    ASSERT_TRUE(Write(&exception.pointers));
    const Dump dump(m_path);
    const MINIDUMP_EXCEPTION_STREAM stream = ExceptionOf(dump);
    EXPECT_EQ(stream.ExceptionRecord.NumberParameters, 2u);
    EXPECT_EQ(+stream.ExceptionRecord.ExceptionInformation[1], 0x1234u);
    const auto context = dump.At<CONTEXT>(stream.ThreadContext.Rva);
#if defined(_WIN64)
    EXPECT_EQ(context.Rip, exception.context.Rip);
    EXPECT_EQ(context.Rsp, exception.context.Rsp);
#else
    EXPECT_EQ(context.Eip, exception.context.Eip);
    EXPECT_EQ(context.Esp, exception.context.Esp);
#endif
}

TEST_F(MiniDump, HasNoExceptionWithoutPointers)
{
    ASSERT_TRUE(Write());
    EXPECT_FALSE(Dump(m_path).Stream(ExceptionStream));
}

// The stack is complete, down to the caller's own frame.
TEST_F(MiniDump, HoldsTheCallersStack)
{
    char marker[32] = {};
    std::strcpy(marker, "stack marker of this very");
    volatile char* const onStack = marker;
    ASSERT_TRUE(Write());
    const Dump dump(m_path);
    const MINIDUMP_THREAD thread = ThreadOf(dump, GetCurrentThreadId());
    const auto address = reinterpret_cast<ULONG64>(onStack);
    ASSERT_GE(address, +thread.Stack.StartOfMemoryRange);
    const auto offset = static_cast<std::size_t>(address - thread.Stack.StartOfMemoryRange);
    const std::string stack = dump.Bytes(thread.Stack.Memory);
    ASSERT_LT(offset + sizeof marker, stack.size());
    EXPECT_STREQ(stack.data() + offset, marker);
}

TEST_F(MiniDump, HoldsTheHeapWhenFullMemoryIsAskedFor)
{
    std::vector<char> marker(100);
    for (std::size_t i = 0; i < marker.size(); ++i)
        marker[i] = static_cast<char>(i * 37 + 11);
    const std::string_view bytes(marker.data(), marker.size());
    ASSERT_TRUE(
        MemoryDumper::GenerateMiniDump((m_folder / L"small.dmp").c_str(), nullptr, MiniDumpNormal));
    ASSERT_TRUE(MemoryDumper::GenerateMiniDump((m_folder / L"full.dmp").c_str(), nullptr,
                                               MiniDumpWithFullMemory));
    EXPECT_FALSE(Dump(m_folder / L"small.dmp").Contains(bytes));
    const Dump full(m_folder / L"full.dmp");
    EXPECT_EQ(+full.Header().Flags, static_cast<ULONG64>(MiniDumpWithFullMemory));
    EXPECT_TRUE(full.Contains(bytes));
}

TEST_F(MiniDump, IsWrittenWhateverTheTypeSays)
{
    for (const int type : {~MiniDumpWithFullMemory, 1 << 30, 1, 4}) {
        ASSERT_TRUE(Write(nullptr, type)) << type;
        EXPECT_EQ(Dump(m_path).Header().Signature, 0x504D444Du) << type;
    }
}

TEST_F(MiniDump, ReplacesAFileThatIsThere)
{
    test_support::WriteFile(m_path, std::string(20'000'000, 'x'));
    ASSERT_TRUE(Write());
    EXPECT_FALSE(Dump(m_path).Contains("xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"));
}

TEST_F(MiniDump, TakesAPathWithAnyCharacters)
{
    const std::wstring path = m_folder / L"\x4E2D \xD83D\xDE00.dmp";
    ASSERT_TRUE(MemoryDumper::GenerateMiniDump(path.c_str(), nullptr, 0));
    EXPECT_TRUE(FileExists(path));
}

TEST_F(MiniDump, FailsWhereNoFileCanBe)
{
    EXPECT_FALSE(MemoryDumper::GenerateMiniDump(nullptr, nullptr, 0));
    EXPECT_FALSE(MemoryDumper::GenerateMiniDump(L"", nullptr, 0));
    EXPECT_FALSE(MemoryDumper::GenerateMiniDump(m_folder.Path().c_str(), nullptr, 0));
    EXPECT_FALSE(
        MemoryDumper::GenerateMiniDump((m_folder / L"missing\\a.dmp").c_str(), nullptr, 0));
    EXPECT_FALSE(
        MemoryDumper::GenerateMiniDump((m_folder / std::wstring(2000, L'x')).c_str(), nullptr, 0));
    EXPECT_TRUE(Write()) << "a failure ends with its call";
}

TEST_F(MiniDump, IsOneAtATime)
{
    std::atomic<int> written = 0;
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&, t] {
                const std::wstring path = m_folder / std::to_wstring(t);
                if (MemoryDumper::GenerateMiniDump(path.c_str(), nullptr, 0)) {
                    ++written;
                    EXPECT_EQ(Dump(path).Header().Signature, 0x504D444Du);
                } else {
                    EXPECT_FALSE(FileExists(path));
                }
            });
        }
    }
    EXPECT_GE(written, 1);
}

// A crash in a library's entry function holds the loader's lock, so no thread can begin then.
TEST_F(MiniDump, IsWrittenUnderTheLoadersLock)
{
    using Lock = LONG(WINAPI*)(ULONG, ULONG*, ULONG_PTR*);
    using Unlock = LONG(WINAPI*)(ULONG, ULONG_PTR);
    const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    const auto lock =
        reinterpret_cast<Lock>(reinterpret_cast<void*>(GetProcAddress(ntdll, "LdrLockLoaderLock")));
    const auto unlock = reinterpret_cast<Unlock>(
        reinterpret_cast<void*>(GetProcAddress(ntdll, "LdrUnlockLoaderLock")));
    if (!lock || !unlock) GTEST_SKIP() << "the platform does not offer the loader's lock";
    CapturedException exception;
    ULONG_PTR cookie = 0;
    ASSERT_EQ(lock(0, nullptr, &cookie), 0);
    const bool written = Write(&exception.pointers);
    unlock(0, cookie);
    ASSERT_TRUE(written);
    const Dump dump(m_path);
    ExceptionOf(dump);
    EXPECT_FALSE(dump.List<MINIDUMP_MODULE>(ModuleListStream).empty());
    EXPECT_TRUE(Write()) << "and the next as ever";
}

// A crash inside an allocation holds the heap's lock.
TEST_F(MiniDump, IsWrittenUnderTheHeapsLock)
{
    CapturedException exception;
    ASSERT_TRUE(HeapLock(GetProcessHeap()));
    const bool written = Write(&exception.pointers);
    HeapUnlock(GetProcessHeap());
    ASSERT_TRUE(written);
    EXPECT_TRUE(Dump(m_path).Stream(ExceptionStream));
    EXPECT_TRUE(Write()) << "and the next as ever";
}

// The dumper switches to a stack of its own and back.
TEST_F(MiniDump, LeavesTheThreadAsItWas)
{
    ASSERT_TRUE(Write());
    EXPECT_FALSE(IsThreadAFiber());
    void* const fiber = ConvertThreadToFiber(nullptr);
    ASSERT_TRUE(fiber);
    EXPECT_TRUE(Write());
    EXPECT_EQ(GetCurrentFiber(), fiber);
    ConvertFiberToThread();
}

// Acts as if the writer never ended: a long wait times out at once.
DWORD WINAPI TimeOut(HANDLE object, DWORD milliseconds)
{
    return milliseconds > 60'000 ? WAIT_TIMEOUT : WaitForSingleObject(object, milliseconds);
}

TEST_F(MiniDump, IsGivenUpWhereItTakesTooLong)
{
    {
        const test_support::ImportHook hook(L"qor_utils.dll", "WaitForSingleObject", &TimeOut);
        EXPECT_FALSE(Write());
    }
    EXPECT_FALSE(FileExists(m_path));
    EXPECT_TRUE(Write());
}

} // namespace
