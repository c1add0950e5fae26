// Failures that nobody tells of, and those that nobody survives, each with its reason.
#include "KnownFaults.h"

#include <algorithm>

namespace faults {

namespace {

struct Known
{
    std::string_view step;
    std::string_view function;
    const char* reason;
};

constexpr Known unheard[] = {
    {"BitmapFromFile, grey", "GdipGetImageHeight", "by contract, pixels that cannot be had stay"},
    {"BitmapFromFile, grey", "GdipGetImageWidth", "by contract, pixels that cannot be had stay"},
    {"AfxRegisterWndClass", "GetModuleHandleW", "the program's own module is always known"},
    {"CheckFileIsWritable", "GetFileAttributesW",
     "a file whose attributes cannot be read counts as one that is not there"},
    {"GetPatientRootPath", "GetModuleFileNameW", "a store's path begins with the program's folder"},
    {"GetImage", "GetModuleFileNameW", "a store's path begins with the program's folder"},
};

constexpr Known spared[] = {
    {"AfxBeginThread", "ResumeThread", "a thread that cannot be resumed stays for good"},
    {"ClosePopups", "ResumeThread", "a thread that cannot be resumed stays for good"},
    {"ZipExtract", "malloc", "the zip library keeps a file open when it has no memory for itself"},
    {"ZipCompress", "malloc", "the zip library writes to an entry's header without looking"},
};

constexpr Known kept[] = {
    {"CCineStoreAVI", "RegOpenKeyExW", "the platform's search for a missing codec keeps a key"},
    {"CCineStoreAVI", "RegQueryValueExW", "the platform's search for a missing codec keeps a key"},
};

template <std::size_t size>
bool Contains(const Known (&table)[size], std::string_view step, std::string_view function)
{
    return std::ranges::any_of(table, [&](const Known& known) {
        return known.step == step && known.function == function;
    });
}

} // namespace

bool IsUnheard(std::string_view step, std::string_view function)
{
    return Contains(unheard, step, function);
}

bool IsKept(std::string_view step, std::string_view function)
{
    return Contains(kept, step, function);
}

bool IsSpared(std::string_view step, std::string_view function)
{
    return Contains(spared, step, function);
}

} // namespace faults
