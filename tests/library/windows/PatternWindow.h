#pragma once

#include <afxwin.h>

#include <cstdint>
#include <vector>

// The pixels of a rectangle, row by row, as 0x00RRGGBB.
struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;

    std::uint32_t& At(int x, int y) { return pixels[static_cast<std::size_t>(y * width + x)]; }
    friend bool operator==(const Picture&, const Picture&) = default;
};

// The number of pixels that differ; -1 for pictures of different sizes.
int Differences(const Picture& a, const Picture& b);

// A topmost window in which neighbouring pixels have different colours. It does not clip its
// children, so that they show through it.
class PatternWindow : public CWnd
{
public:
    static constexpr int width = 240;
    static constexpr int height = 160;

    PatternWindow();
    ~PatternWindow() override;

    static std::uint32_t PatternAt(int x, int y);
    static Picture Pattern();

    // Paints everything that is due, here and in the children.
    void PaintAll();
    // The screen's content over the client area.
    Picture Screen();

protected:
    afx_msg void OnPaint();
    DECLARE_MESSAGE_MAP()
};
