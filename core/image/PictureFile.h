#pragma once

#include "base/FileReader.h"
#include "image/PixelFrames.h"

#include <string>

namespace exam {

/// A picture of any format that the platform reads, as one frame. It is in memory until Rest().
class PictureFile : public PixelFrames
{
public:
    /// False when the file holds no picture that can be shown. A very large one is made smaller.
    bool Open(const std::wstring& path);

    bool ReadFrame(int frame, std::vector<std::uint8_t>& bytes) const override;
    void Rest() const override;

private:
    bool Decode() const;

    std::wstring m_path;
    FileReader m_file;                          // tells when the file was changed
    mutable std::vector<std::uint8_t> m_planes; // empty at rest
};

/// Saves a bitmap, which no context holds, as a PNG file. False when it could not be written.
bool SavePng(HBITMAP bitmap, const std::wstring& path);

} // namespace exam
