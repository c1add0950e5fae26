// utilsExam: single files, drives and pixel bytes.
#include "Utils_Statics/utilsExam.h"

#include "environment/PathText.h"

#include <base/Handles.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

using namespace utils_statics;

namespace {

// The roots of all drives, each ended by a zero. One more zero ends the list.
std::vector<wchar_t> LogicalDriveRoots()
{
    std::vector<wchar_t> roots(1);
    DWORD length = GetLogicalDriveStringsW(0, nullptr);
    while (length >= roots.size()) { // repeats when a drive was added between the calls
        roots.assign(length + 1, L'\0');
        length = GetLogicalDriveStringsW(static_cast<DWORD>(roots.size()), roots.data());
    }
    return roots;
}

bool IsSystemDrive(const std::wstring& root)
{
    return root == L"C:\\" || root == L"D:\\" || root == L"A:\\" || root == L"B:\\";
}

// Fixed drives are accepted on purpose: external disks report as fixed.
bool IsExportDriveType(UINT type)
{
    return type == DRIVE_REMOVABLE || type == DRIVE_FIXED || type == DRIVE_RAMDISK;
}

} // namespace

int utilsExam::GetFileData(const wchar_t* path, WIN32_FIND_DATAW* data)
{
    if (!path || !data) return 0;
    return base::Find(FindFirstFileW(path, data)) ? 1 : 0;
}

bool utilsExam::CheckFileIsWritable(const wchar_t* path)
{
    const DWORD attributes = GetFileAttributesW(OrEmpty(path));
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0)
        return true;
    return SetFileAttributesW(path, FILE_ATTRIBUTE_NORMAL) != FALSE;
}

bool utilsExam::FindFirstRemovableDrive(CString& drive)
try {
    const std::vector<wchar_t> roots = LogicalDriveRoots();
    for (const wchar_t* next = roots.data(); *next;) {
        const std::wstring root = next;
        next += root.size() + 1;
        if (IsSystemDrive(root) || !IsExportDriveType(GetDriveTypeW(root.c_str()))) continue;
        drive = root.c_str();
        return true;
    }
    return false;
} catch (const std::bad_alloc&) {
    return false;
}

void utilsExam::BGRtoRGB(unsigned char* pixels, int width, int height)
{
    const std::int64_t count = static_cast<std::int64_t>(width) * height;
    // Only the product of the sizes counts. No buffer can hold more than the upper bound.
    if (!pixels || count < 1 || count > PTRDIFF_MAX / 3) return;
    for (std::ptrdiff_t at = 0; at < static_cast<std::ptrdiff_t>(count) * 3; at += 3)
        std::swap(pixels[at], pixels[at + 2]);
}
