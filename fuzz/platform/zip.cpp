// The target extracts a zip archive as a whole. Nothing may appear outside of the current folder.
#include <fuzz/Input.h>
#include <fuzz/InputFile.h>
#include <fuzz/Require.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/ZipExtract.h>

#include <windows.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

// A folder "around\inside", whose inner one is current; nothing else may come to lie in the outer.
class Folders
{
public:
    Folders()
    {
        fs::create_directories(Inside());
        fs::current_path(Inside());
    }
    ~Folders()
    {
        std::error_code error;
        fs::current_path(fs::path(m_folder.Path()).parent_path(), error);
    }
    Folders(const Folders&) = delete;
    Folders& operator=(const Folders&) = delete;

    // Empties the inner one.
    void Clean() const
    {
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(Inside(), error))
            fs::remove_all(entry.path(), error);
    }

    bool IsOuterUntouched() const
    {
        const auto count =
            std::distance(fs::directory_iterator(m_folder.Path()), fs::directory_iterator());
        return count == 1;
    }

private:
    fs::path Inside() const { return fs::path(m_folder.Path()) / L"inside"; }

    test_support::TemporaryFolder m_folder;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Folders folders;
    const fuzz::Input input(data, size);
    ZipExtract archive;
    if (!archive.Open(fuzz::InputFile(input.Rest()).c_str())) return 0;
    constexpr int mostEntries = 64;
    for (int entry = 0; entry < mostEntries && archive.ExtractNext("secret"); ++entry) {
    }
    archive.Close();
    folders.Clean();
    fuzz::Require(folders.IsOuterUntouched(), "no entry leaves the current folder");
    return 0;
}
