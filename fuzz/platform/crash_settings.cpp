// The target reads a crash setting of the registry. The first byte is the type of the value, and
// the rest are its bytes.
#include "diagnostics/CrashFiles.h"

#include <fuzz/Input.h>
#include <fuzz/Require.h>

#include <windows.h>

namespace {

constexpr wchar_t section[] = L"Fuzz";

// The key of that section, deleted with the program.
class SectionKey
{
public:
    SectionKey() { RegCreateKeyW(HKEY_CURRENT_USER, path, m_key.put()); }
    ~SectionKey()
    {
        m_key.reset();
        RegDeleteKeyW(HKEY_CURRENT_USER, path);
    }
    SectionKey(const SectionKey&) = delete;
    SectionKey& operator=(const SectionKey&) = delete;

    void Set(DWORD type, std::string_view bytes) const
    {
        // Some platforms look for a text's null behind it.
        const std::string followed = std::string(bytes) + "..";
        RegSetValueExW(m_key.get(), L"Value", 0, type,
                       reinterpret_cast<const BYTE*>(followed.data()),
                       static_cast<DWORD>(bytes.size()));
    }

private:
    static constexpr wchar_t path[] = L"Software\\Kestrow\\Exam\\Fuzz";
    base::RegistryKey m_key;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace utils_statics;
    static const SectionKey key;
    fuzz::Input input(data, size);
    const DWORD type = input.Take<std::uint8_t>() % 12u;
    const std::string_view bytes = input.Rest();
    key.Set(type, bytes);
    const int number = CrashSettingNumber(section, L"Value", -17);
    if (type != REG_DWORD || bytes.size() != sizeof number)
        fuzz::Require(number == -17, "what is no number gives the default");
    static SettingText text;
    CrashSettingText(section, L"Value", L"default", text);
    fuzz::Require(text.View().size() <= SettingText::capacity, "a text has room for its null");
    if (type != REG_SZ)
        fuzz::Require(text.View() == L"default", "what is no text gives the default");
    return 0;
}
