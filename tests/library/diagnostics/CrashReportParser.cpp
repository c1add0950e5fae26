#include "CrashReportParser.h"

#include <base/Encoding.h>

#include <cstring>
#include <regex>
#include <stdexcept>

namespace crash_test {

namespace {

#ifdef _WIN64
#define ADDRESS L"([0-9a-f]{16})"
constexpr int addressDigits = 16;
#else
#define ADDRESS L"([0-9a-f]{8})"
constexpr int addressDigits = 8;
#endif
#define HEX L"([0-9a-f]{8})"
#define TIME L"(\\d{1,2}/\\d{1,2}/\\d{4} \\d\\d:\\d\\d:\\d\\d)"

using Match = std::vector<std::wstring>;

// The lines of a file, read from first to last.
class Lines
{
public:
    explicit Lines(const std::string& file)
    {
        if (file.size() < 2 || file.size() % 2 != 0 || !file.starts_with("\xFF\xFE"))
            throw std::runtime_error("the report is not UTF-16 with its byte-order mark");
        std::wstring text((file.size() - 2) / 2, L'\0');
        std::memcpy(text.data(), file.data() + 2, file.size() - 2);
        if (text.find(L'\0') != std::wstring::npos) throw std::runtime_error("a null in the text");
        Split(text);
    }

    bool IsAtEnd() const { return m_next == m_lines.size(); }

    // Takes the next line, which has to match, and returns its groups.
    Match Take(const std::wstring& pattern)
    {
        std::optional<Match> match = TakeIf(pattern);
        if (match) return *match;
        Fail(pattern);
    }

    // Takes the next line if it matches, and leaves it otherwise.
    std::optional<Match> TakeIf(const std::wstring& pattern)
    {
        std::wsmatch found;
        if (IsAtEnd() || !std::regex_match(m_lines[m_next], found, Compiled(pattern)))
            return std::nullopt;
        ++m_next;
        Match groups;
        for (std::size_t i = 1; i < found.size(); ++i)
            groups.push_back(found[i].str());
        return groups;
    }

    // The next line, unchanged.
    std::wstring Any()
    {
        if (IsAtEnd()) Fail(L"any line");
        return m_lines[m_next++];
    }

    [[noreturn]] void Fail(const std::wstring& wanted) const
    {
        const std::wstring line = IsAtEnd() ? L"(the end)" : m_lines[m_next];
        throw std::runtime_error("line " + std::to_string(m_next + 1) + " is '" +
                                 base::Utf8FromWide(line) + "', expected " +
                                 base::Utf8FromWide(wanted));
    }

private:
    // Every line ends in a carriage return and a line feed, which occur nowhere else.
    void Split(const std::wstring& text)
    {
        std::size_t begin = 0;
        while (begin < text.size()) {
            const std::size_t end = text.find(L"\r\n", begin);
            if (end == std::wstring::npos) throw std::runtime_error("the last line has no end");
            m_lines.push_back(text.substr(begin, end - begin));
            if (m_lines.back().find_first_of(L"\r\n") != std::wstring::npos)
                throw std::runtime_error("a line is broken");
            begin = end + 2;
        }
    }

    static const std::wregex& Compiled(const std::wstring& pattern)
    {
        static std::map<std::wstring, std::wregex> known;
        return known.try_emplace(pattern, pattern).first->second;
    }

    std::vector<std::wstring> m_lines;
    std::size_t m_next = 0;
};

std::uint64_t Hex(const std::wstring& digits)
{
    return std::stoull(digits, nullptr, 16);
}

std::uint32_t Hex32(const std::wstring& digits)
{
    return static_cast<std::uint32_t>(Hex(digits));
}

void ParseCause(Lines& lines, Report& report)
{
    const Match first = lines.Take(L"(.*) caused (an? .*) \\(0x" HEX L"\\) ");
    report.process = first[0];
    report.exception = first[1];
    report.code = Hex32(first[2]);
    const Match place = lines.Take(L"in module (.*) at ([0-9a-f]{4}):" ADDRESS L"\\.");
    report.faultModule = place[0];
    report.segment = Hex32(place[1]);
    report.instruction = Hex(place[2]);
    lines.Take(L"");
}

void ParseTimes(Lines& lines, Report& report)
{
    report.startTime = lines.Take(L"Process start time: " TIME L"\\.")[0];
    report.endTime = lines.Take(L"Process end time: " TIME L"\\.")[0];
    report.runTime =
        lines.Take(L"Process run time: (\\d+ days, \\d+ hours, \\d+ minutes, \\d+ seconds, \\d+ "
                   L"milliseconds|\\d+ 10ths of a \u00B5s)\\.")[0];
}

void ParseViolation(Lines& lines, Report& report)
{
    const auto match =
        lines.TakeIf(L"(Write to|Read from) location " ADDRESS L" caused an access violation\\.");
    if (!match) return;
    report.violation = {(*match)[0], Hex((*match)[1])};
    lines.Take(L"");
}

void ParseSystem(Lines& lines, Report& report)
{
    report.errorTime = lines.Take(L"Error occurred at " TIME L"\\.")[0];
    const Match run = lines.Take(L"(.*), run by (.*)\\.");
    report.program = run[0];
    report.user = run[1];
    const Match system = lines.Take(L"Operating system:  (.*) \\((\\d+\\.\\d+\\.\\d+)\\)\\.");
    report.system = system[0];
    report.systemVersion = system[1];
    const Match processors = lines.Take(L"(\\d+) processor\\(s\\), type (\\d+)\\.");
    report.processors = std::stoi(processors[0]);
    report.processorType = std::stoi(processors[1]);
}

void ParseMemory(Lines& lines, const wchar_t* heading, std::initializer_list<const wchar_t*> names,
                 std::vector<int>& values)
{
    lines.Take(heading);
    for (const wchar_t* name : names)
        values.push_back(std::stoi(lines.Take(std::wstring(L"(\\d+)") + name)[0]));
}

void ParseRegisters(Lines& lines, Report& report)
{
    lines.Take(L"Context:");
    const auto take = [&](const wchar_t* pattern, std::initializer_list<const wchar_t*> names) {
        const Match match = lines.Take(pattern);
        std::size_t i = 0;
        for (const wchar_t* name : names)
            report.registers[name] = Hex(match[i++]);
    };
#ifdef _WIN64
    take(L"RDI:    0x" ADDRESS L"  RSI: 0x" ADDRESS, {L"RDI", L"RSI"});
    take(L"RAX:    0x" ADDRESS L"  RBX: 0x" ADDRESS, {L"RAX", L"RBX"});
    take(L"RCX:    0x" ADDRESS L"  RDX: 0x" ADDRESS, {L"RCX", L"RDX"});
    take(L"R8:     0x" ADDRESS L"  R9:  0x" ADDRESS, {L"R8", L"R9"});
    take(L"R10:    0x" ADDRESS L"  R11: 0x" ADDRESS, {L"R10", L"R11"});
    take(L"R12:    0x" ADDRESS L"  R13: 0x" ADDRESS, {L"R12", L"R13"});
    take(L"R14:    0x" ADDRESS L"  R15: 0x" ADDRESS, {L"R14", L"R15"});
    take(L"RIP:    0x" ADDRESS L"  RBP: 0x" ADDRESS, {L"RIP", L"RBP"});
    take(L"EFlags: 0x" HEX L"          RSP: 0x" ADDRESS, {L"EFlags", L"RSP"});
    take(L"SegCs:  0x" HEX L"          SegSs: 0x" HEX, {L"SegCs", L"SegSs"});
#else
    take(L"EDI:    0x" HEX L"  ESI: 0x" HEX L"  EAX:   0x" HEX, {L"EDI", L"ESI", L"EAX"});
    take(L"EBX:    0x" HEX L"  ECX: 0x" HEX L"  EDX:   0x" HEX, {L"EBX", L"ECX", L"EDX"});
    take(L"EIP:    0x" HEX L"  EBP: 0x" HEX L"  SegCs: 0x" HEX, {L"EIP", L"EBP", L"SegCs"});
    take(L"EFlags: 0x" HEX L"  ESP: 0x" HEX L"  SegSs: 0x" HEX, {L"EFlags", L"ESP", L"SegSs"});
#endif
}

void ParseBytes(Lines& lines, Report& report)
{
    lines.Take(L"");
    lines.Take(L"Bytes at CS:EIP:");
    const std::wstring text = lines.Take(L"((?:(?:[0-9a-f]{2}|\\?\\?) ){16})")[0];
    for (std::size_t i = 0; i < text.size(); i += 3)
        report.bytes.push_back(text[i] == L'?' ? -1 : static_cast<int>(Hex(text.substr(i, 2))));
}

// Parses by position and not by pattern, because there are hundreds of these lines.
StackLine ParseStackLine(Lines& lines, const std::wstring& line)
{
    constexpr std::size_t wordsBegin = 2 + addressDigits + 2;
    constexpr std::size_t wordsSize = 4 * 9;
    if (line.size() < wordsBegin + wordsSize || !line.starts_with(L"0x") ||
        line.substr(wordsBegin - 2, 2) != L": ")
        lines.Fail(L"a line of the stack before this one");
    StackLine parsed = {
        Hex(line.substr(2, addressDigits)), {}, line.substr(wordsBegin + wordsSize)};
    for (std::size_t i = 0; i < 4; ++i) {
        const std::wstring word = line.substr(wordsBegin + i * 9, 9);
        if (word == L"         ") break;
        if (word[8] != L' ') lines.Fail(L"a word of the stack before this line");
        parsed.words.push_back(Hex32(word));
    }
    const std::size_t pads = 4 - parsed.words.size();
    if (parsed.words.empty() || parsed.characters.size() != parsed.words.size() * 4 ||
        line.substr(wordsBegin + wordsSize - pads * 9, pads * 9) != std::wstring(pads * 9, L' '))
        lines.Fail(L"a whole line of the stack before this one");
    return parsed;
}

void ParseStack(Lines& lines, Report& report)
{
    lines.Take(L"");
    lines.Take(L"Stack:");
    while (const auto line = lines.TakeIf(L"(0x[0-9a-f]+: .*)"))
        report.stack.push_back(ParseStackLine(lines, (*line)[0]));
    report.isStackCut = lines.TakeIf(L"Exception encountered during stack dump\\.").has_value();
}

void ParseVersion(Lines& lines, Module& module)
{
    if (!lines.TakeIf(L"Version Information:")) return;
    module.hasVersion = true;
    module.company = lines.Take(L"   Company:    (.*)")[0];
    module.product = lines.Take(L"   Product:    (.*)")[0];
    module.description = lines.Take(L"   FileDesc:   (.*)")[0];
    module.fileVersion = lines.Take(L"   FileVer:    (\\d+\\.\\d+\\.\\d+\\.\\d+)")[0];
    module.productVersion = lines.Take(L"   ProdVer:    (\\d+\\.\\d+\\.\\d+\\.\\d+)")[0];
}

Module ParseModule(Lines& lines)
{
    Module module;
    module.path = lines.Any();
    if (const auto image = lines.TakeIf(L"Image Base: 0x" ADDRESS L"  Image Size: 0x" HEX)) {
        module.base = Hex((*image)[0]);
        module.size = Hex32((*image)[1]);
        const Match sum = lines.Take(L"Checksum:   0x" HEX L"  Time Stamp: 0x" HEX);
        module.checksum = Hex32(sum[0]);
        module.timeStamp = Hex32(sum[1]);
    }
    if (const auto file = lines.TakeIf(L"File Size:  (\\d+) *  File Time:  " TIME)) {
        module.fileSize = std::stoll((*file)[0]);
        module.fileTime = (*file)[1];
    }
    ParseVersion(lines, module);
    lines.Take(L"");
    return module;
}

void ParseModules(Lines& lines, Report& report)
{
    while (const auto number = lines.TakeIf(L"Module (\\d+)")) {
        if (std::stoull((*number)[0]) != report.modules.size() + 1)
            lines.Fail(L"modules numbered one after the other before this line");
        report.modules.push_back(ParseModule(lines));
    }
}

} // namespace

Report ParseReport(const std::string& file)
{
    Lines lines(file);
    Report report;
    ParseCause(lines, report);
    ParseTimes(lines, report);
    ParseViolation(lines, report);
    ParseSystem(lines, report);
    ParseMemory(lines, L"System Memory Details\\.",
                {L"% memory in use\\.", L" MBytes physical memory\\.",
                 L" MBytes physical memory free\\.", L" MBytes paging file\\.",
                 L" MBytes paging file free\\.", L" MBytes user address space\\.",
                 L" MBytes user address space free\\."},
                report.systemMemory);
    ParseMemory(lines, L"Process Memory Details\\.",
                {L" page faults\\.", L" MBytes peak working set\\.", L" MBytes working set\\.",
                 L" MBytes peak paged pool\\.", L" MBytes paged pool\\.",
                 L" MBytes peak non-paged pool\\.", L" MBytes non-paged pool\\.",
                 L" MBytes peak pagefile usage\\.", L" MBytes pagefile usage\\.",
                 L" MBytes private memory usage\\."},
                report.processMemory);
    ParseRegisters(lines, report);
    ParseBytes(lines, report);
    ParseStack(lines, report);
    ParseModules(lines, report);
    lines.Take(L"");
    report.baseName = lines.Take(L"===== \\[end of (.*)\\.log\\] =====")[0];
    if (!lines.IsAtEnd()) lines.Fail(L"the end");
    return report;
}

} // namespace crash_test
