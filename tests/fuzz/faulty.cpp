// A target that goes wrong on purpose: as its input says, and without such a word by a lost handle.
#include <fuzz/Input.h>
#include <fuzz/Require.h>

#include <windows.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const fuzz::Input input(data, size);
    const std::string_view word = input.Rest();
    fuzz::Require(word != "abort", "the word is another");
    if (word == "crash") RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr);
    while (word == "hang")
        Sleep(1000);
    if (word != "sound") CreateEventW(nullptr, FALSE, FALSE, nullptr);
    return 0;
}
