#pragma once

// This finds the texts that are written, and whether they have room, in windows of several sizes
// and resolutions.

#include "record/PixelCanvas.h"

#include <base/Encoding.h>
#include <gtest/gtest.h>

#include <commctrl.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace exam {

// A window on a screen.
struct Screen
{
    CSize size; // of the window
    int dpi;
};

constexpr Screen screens[] = {{{800, 600}, 96},
                              {{1280, 800}, 96},
                              {{1920, 1080}, 96},
                              {{1280, 800}, 144},
                              {{1920, 1080}, 192}};

inline void PrintTo(const Screen& screen, std::ostream* out)
{
    *out << screen.size.cx << "x" << screen.size.cy << " at " << screen.dpi << " dpi";
}

// A text that was drawn, and the room that it had. Both are in pixels of the picture.
struct WrittenText
{
    std::wstring text;
    CRect place;
    CRect room;

    // Metafiles round the ends of a room.
    bool IsWhole() const
    {
        CRect all = room;
        all.InflateRect(2, 2);
        CRect seen;
        seen.IntersectRect(&place, &all);
        return text.find(L"...") == std::wstring::npos && seen == place;
    }
};

inline std::ostream& operator<<(std::ostream& out, const WrittenText& text)
{
    const auto box = [&out](const CRect& rect) {
        out << rect.left << "," << rect.top << " - " << rect.right << "," << rect.bottom;
    };
    out << base::Utf8FromWide(text.text) << " at ";
    box(text.place);
    out << " in ";
    box(text.room);
    return out;
}

namespace written_texts {

struct Playing
{
    std::vector<WrittenText> texts;
};

inline int CALLBACK Play(HDC dc, HANDLETABLE* handles, const ENHMETARECORD* record, int count,
                         LPARAM parameter)
{
    PlayEnhMetaFileRecord(dc, handles, record, static_cast<UINT>(count));
    if (record->iType != EMR_EXTTEXTOUTW) return TRUE;
    const auto& drawn = *reinterpret_cast<const EMREXTTEXTOUTW*>(record);
    const auto* const letters = reinterpret_cast<const wchar_t*>(
        reinterpret_cast<const BYTE*>(record) + drawn.emrtext.offString);
    WrittenText text;
    text.text.assign(letters, drawn.emrtext.nChars);
    if (text.text.find_first_not_of(L' ') == std::wstring::npos) return TRUE;
    SIZE size = {};
    GetTextExtentPoint32W(dc, text.text.c_str(), static_cast<int>(text.text.size()), &size);
    text.place = CRect(CPoint(drawn.emrtext.ptlReference.x, drawn.emrtext.ptlReference.y), size);
    GetClipBox(dc, &text.room);
    const CRect clip(drawn.emrtext.rcl.left, drawn.emrtext.rcl.top, drawn.emrtext.rcl.right,
                     drawn.emrtext.rcl.bottom);
    if (drawn.emrtext.fOptions & ETO_CLIPPED) text.room.IntersectRect(&text.room, &clip);
    reinterpret_cast<Playing*>(parameter)->texts.push_back(text);
    return TRUE;
}

// The pixels of the screen that a metafile's frame has. Played into them it is as large as it was.
inline CRect PixelsOf(HENHMETAFILE file)
{
    ENHMETAHEADER header = {};
    GetEnhMetaFileHeader(file, sizeof header, &header);
    const auto pixels = [](LONG hundredths, LONG device, LONG millimetres) {
        return MulDiv(hundredths, device, 100 * millimetres);
    };
    const SIZEL& device = header.szlDevice;
    const SIZEL& millimetres = header.szlMillimeters;
    return {pixels(header.rclFrame.left, device.cx, millimetres.cx),
            pixels(header.rclFrame.top, device.cy, millimetres.cy),
            pixels(header.rclFrame.right, device.cx, millimetres.cx),
            pixels(header.rclFrame.bottom, device.cy, millimetres.cy)};
}

struct MetafileTraits
{
    using Handle = HENHMETAFILE;
    static Handle Empty() noexcept { return nullptr; }
    static void Release(Handle file) noexcept { DeleteEnhMetaFile(file); }
};

} // namespace written_texts

// The texts that are drawn into a picture of a size.
inline std::vector<WrittenText> TextsDrawn(CSize size, const std::function<void(CDC&)>& draw)
{
    const HDC recorder = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
    draw(*CDC::FromHandle(recorder));
    const base::Owner<written_texts::MetafileTraits> file(CloseEnhMetaFile(recorder));
    PixelCanvas canvas(size);
    written_texts::Playing playing;
    const CRect all = written_texts::PixelsOf(file.get());
    EnumEnhMetaFile(canvas.Context(), file.get(), written_texts::Play, &playing, &all);
    return playing.texts;
}

// Expects the labels, buttons and check boxes of a window to have room for their texts. A check box
// takes `box` pixels for itself.
inline void ExpectWholeControls(HWND window, int box)
{
    int controls = 0;
    for (HWND control = GetWindow(window, GW_CHILD); control;
         control = GetWindow(control, GW_HWNDNEXT)) {
        wchar_t name[16] = {};
        wchar_t text[500] = {};
        GetClassNameW(control, name, 16);
        GetWindowTextW(control, text, 500);
        const CString kind(name);
        const bool isButton = kind.CompareNoCase(L"Button") == 0;
        if (!isButton && kind.CompareNoCase(L"Static") != 0) continue;
        ++controls;
        CRect client;
        GetClientRect(control, &client);
        if (isButton) client.DeflateRect(box / 2, 0);
        const base::WindowContext context(control);
        const base::Selection font(
            context.get(), reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0)));
        CRect needed = client;
        DrawTextW(context.get(), text, -1, &needed,
                  DT_CALCRECT | DT_NOPREFIX | (isButton ? DT_SINGLELINE : DT_WORDBREAK));
        EXPECT_LE(needed.Width(), client.Width()) << base::Utf8FromWide(text);
        EXPECT_LE(needed.Height(), client.Height()) << base::Utf8FromWide(text);
    }
    EXPECT_GT(controls, 1);
}

// The text of a cell of a list.
inline std::wstring CellOf(HWND list, int row, int column)
{
    wchar_t text[300] = {};
    LVITEMW item = {};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = 300;
    SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return text;
}

} // namespace exam
