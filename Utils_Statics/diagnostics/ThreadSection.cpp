// The registers, the code and the stack of the crashed thread.
#include "diagnostics/FaultGuard.h"
#include "diagnostics/ReportSections.h"

#include <algorithm>
#include <iterator>

namespace utils_statics {

namespace {

constexpr std::size_t longestStack = 0x3000; // bytes
constexpr std::size_t wordsOfLine = 4;

// The words of one line of the stack; the last line may have fewer.
struct StackLine
{
    std::uint32_t words[wordsOfLine];
    std::size_t count;
};

wchar_t Printable(std::uint8_t byte) noexcept
{
    return byte >= 0x20 && byte <= 0x7E ? static_cast<wchar_t>(byte) : L'.';
}

FixedText<40> WordsText(const StackLine& line) noexcept
{
    FixedText<40> text;
    for (std::size_t i = 0; i < wordsOfLine; ++i) {
        wchar_t word[12] = L"         ";
        if (i < line.count) wsprintfW(word, L"%08x ", line.words[i]);
        text += word;
    }
    return text;
}

FixedText<20> BytesText(const StackLine& line) noexcept
{
    FixedText<20> text;
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(line.words);
    for (std::size_t i = 0; i < line.count * sizeof line.words[0]; ++i) {
        const wchar_t character = Printable(bytes[i]);
        text += std::wstring_view(&character, 1);
    }
    return text;
}

} // namespace

void WriteRegisters(ReportText& report, const CONTEXT& context) noexcept
{
    report.Write(L"Context:\r\n");
#ifdef _WIN64
    const auto pair = [&](const wchar_t* format, DWORD64 first, DWORD64 second) {
        report.Write(format, first, second);
    };
    pair(L"RDI:    0x%016I64x  RSI: 0x%016I64x\r\n", context.Rdi, context.Rsi);
    pair(L"RAX:    0x%016I64x  RBX: 0x%016I64x\r\n", context.Rax, context.Rbx);
    pair(L"RCX:    0x%016I64x  RDX: 0x%016I64x\r\n", context.Rcx, context.Rdx);
    pair(L"R8:     0x%016I64x  R9:  0x%016I64x\r\n", context.R8, context.R9);
    pair(L"R10:    0x%016I64x  R11: 0x%016I64x\r\n", context.R10, context.R11);
    pair(L"R12:    0x%016I64x  R13: 0x%016I64x\r\n", context.R12, context.R13);
    pair(L"R14:    0x%016I64x  R15: 0x%016I64x\r\n", context.R14, context.R15);
    pair(L"RIP:    0x%016I64x  RBP: 0x%016I64x\r\n", context.Rip, context.Rbp);
    report.Write(L"EFlags: 0x%08x          RSP: 0x%016I64x\r\n", context.EFlags, context.Rsp);
    report.Write(L"SegCs:  0x%08x          SegSs: 0x%08x\r\n", static_cast<unsigned>(context.SegCs),
                 static_cast<unsigned>(context.SegSs));
#else
    report.Write(L"EDI:    0x%08x  ESI: 0x%08x  EAX:   0x%08x\r\n", context.Edi, context.Esi,
                 context.Eax);
    report.Write(L"EBX:    0x%08x  ECX: 0x%08x  EDX:   0x%08x\r\n", context.Ebx, context.Ecx,
                 context.Edx);
    report.Write(L"EIP:    0x%08x  EBP: 0x%08x  SegCs: 0x%08x\r\n", context.Eip, context.Ebp,
                 context.SegCs);
    report.Write(L"EFlags: 0x%08x  ESP: 0x%08x  SegSs: 0x%08x\r\n", context.EFlags, context.Esp,
                 context.SegSs);
#endif
}

void WriteCodeBytes(ReportText& report, const CONTEXT& context) noexcept
{
    constexpr std::size_t count = 16;
    report.Write(L"\r\nBytes at CS:EIP:\r\n");
    for (std::size_t i = 0; i < count; ++i) {
        std::uint8_t byte = 0;
        if (ReadMemory(context.*codeAddress + i, byte))
            report.Write(L"%02x ", byte);
        else
            report.Write(L"?? ");
    }
}

void WriteStack(ReportText& report, const CONTEXT& context, std::uintptr_t stackBase) noexcept
{
    report.Write(L"\r\n\r\nStack:\r\n");
    const std::uintptr_t first = context.*stackAddress;
    if (first >= stackBase) return;
    std::size_t words = std::min<std::size_t>(stackBase - first, longestStack) / 4;
    for (std::uintptr_t address = first; words > 0;) {
        StackLine line = {};
        line.count = std::min(words, std::size(line.words));
        const std::size_t size = line.count * sizeof line.words[0];
        if (!ReadMemory(address, line.words, size)) {
            report.Write(L"Exception encountered during stack dump.\r\n");
            return;
        }
        report.Write(L"0x" ADDRESS_FORMAT L": %s%s\r\n", address, WordsText(line).Text(),
                     BytesText(line).Text());
        address += size;
        words -= line.count;
    }
}

} // namespace utils_statics
