#pragma once

#include <windows.h>
#include <vfw.h>

#include <cstddef>

namespace utils_statics {

// The options of a compressed stream, with the codec's state block that they point to.
class CodecOptions
{
public:
    CodecOptions() = default;
    ~CodecOptions() { delete[] static_cast<std::byte*>(m_options.lpParms); }
    CodecOptions(const CodecOptions&) = delete;
    CodecOptions& operator=(const CodecOptions&) = delete;

    AVICOMPRESSOPTIONS& Get() { return m_options; }

private:
    AVICOMPRESSOPTIONS m_options{}; // lpParms: null, or an array of std::byte
};

} // namespace utils_statics
