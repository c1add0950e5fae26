#pragma once

#include <test_support/ImportHook.h>

#include <windows.h>
#include <gdiplus.h>
#include <objidl.h>

#include <cwchar>
#include <string>
#include <utility>
#include <vector>

// Records the library's drawings beside icons while it lives, one line for each call in order. The
// calls are carried out. One object at a time.
class DrawingRecord
{
public:
    // `hasArial`: true when the platform has the requested family.
    explicit DrawingRecord(bool hasArial = true)
    {
        s_lines.clear();
        s_hasArial = hasArial;
    }

    // The lines since the last time.
    std::vector<std::wstring> Take() { return std::exchange(s_lines, {}); }

private:
    using Status = Gdiplus::GpStatus;

    template <class... Arguments>
    static void Note(const wchar_t* format, Arguments... arguments)
    {
        wchar_t line[256] = {};
        std::swprintf(line, std::size(line), format, arguments...);
        s_lines.emplace_back(line);
    }

    static std::wstring FontOf(const Gdiplus::GpFont* font)
    {
        auto* const used = const_cast<Gdiplus::GpFont*>(font);
        Gdiplus::REAL size = 0;
        INT style = 0;
        Gdiplus::Unit unit = Gdiplus::UnitWorld;
        Gdiplus::DllExports::GdipGetFontSize(used, &size);
        Gdiplus::DllExports::GdipGetFontStyle(used, &style);
        Gdiplus::DllExports::GdipGetFontUnit(used, &unit);
        wchar_t text[64] = {};
        std::swprintf(text, std::size(text), L"%g%ls %ls", size,
                      unit == Gdiplus::UnitPoint ? L"pt" : L"?",
                      style == Gdiplus::FontStyleBold      ? L"bold"
                      : style == Gdiplus::FontStyleRegular ? L"regular"
                                                           : L"?");
        return text;
    }
    static std::wstring AlignmentOf(const Gdiplus::GpStringFormat* format)
    {
        Gdiplus::StringAlignment across = {}, down = {};
        auto* const used = const_cast<Gdiplus::GpStringFormat*>(format);
        Gdiplus::DllExports::GdipGetStringFormatAlign(used, &across);
        Gdiplus::DllExports::GdipGetStringFormatLineAlign(used, &down);
        static constexpr const wchar_t* names[] = {L"near", L"centre", L"far"};
        return std::wstring(names[across]) + L"/" + names[down];
    }
    static unsigned int ColourOf(const Gdiplus::GpBrush* brush)
    {
        Gdiplus::ARGB colour = 0;
        Gdiplus::DllExports::GdipGetSolidFillColor(
            static_cast<Gdiplus::GpSolidFill*>(const_cast<Gdiplus::GpBrush*>(brush)), &colour);
        return static_cast<unsigned int>(colour);
    }

    static Status WINAPI DrawString(Gdiplus::GpGraphics* graphics, const WCHAR* text, INT length,
                                    const Gdiplus::GpFont* font, const Gdiplus::RectF* layout,
                                    const Gdiplus::GpStringFormat* format,
                                    const Gdiplus::GpBrush* brush)
    {
        Note(L"%ls, %ls, %ls, %08X in %g %g %g %g",
             std::wstring(text, static_cast<std::size_t>(length)).c_str(), FontOf(font).c_str(),
             AlignmentOf(format).c_str(), ColourOf(brush), layout->X, layout->Y, layout->Width,
             layout->Height);
        return Gdiplus::DllExports::GdipDrawString(graphics, text, length, font, layout, format,
                                                   brush);
    }
    static Status WINAPI FillPie(Gdiplus::GpGraphics* graphics, Gdiplus::GpBrush* brush,
                                 Gdiplus::REAL x, Gdiplus::REAL y, Gdiplus::REAL width,
                                 Gdiplus::REAL height, Gdiplus::REAL start, Gdiplus::REAL sweep)
    {
        Note(L"pie %08X in %g %g %g %g from %g by %g", ColourOf(brush), x, y, width, height, start,
             sweep);
        return Gdiplus::DllExports::GdipFillPie(graphics, brush, x, y, width, height, start, sweep);
    }
    static Status WINAPI DrawArc(Gdiplus::GpGraphics* graphics, Gdiplus::GpPen* pen,
                                 Gdiplus::REAL x, Gdiplus::REAL y, Gdiplus::REAL width,
                                 Gdiplus::REAL height, Gdiplus::REAL start, Gdiplus::REAL sweep)
    {
        Gdiplus::ARGB colour = 0;
        Gdiplus::REAL penWidth = 0;
        Gdiplus::DllExports::GdipGetPenColor(pen, &colour);
        Gdiplus::DllExports::GdipGetPenWidth(pen, &penWidth);
        Note(L"arc %08X %g wide in %g %g %g %g from %g by %g", static_cast<unsigned int>(colour),
             penWidth, x, y, width, height, start, sweep);
        return Gdiplus::DllExports::GdipDrawArc(graphics, pen, x, y, width, height, start, sweep);
    }
    static Status WINAPI CreateFamily(const WCHAR* name, Gdiplus::GpFontCollection* collection,
                                      Gdiplus::GpFontFamily** family)
    {
        Note(L"family %ls", name);
        if (!s_hasArial) return Gdiplus::FontFamilyNotFound;
        return Gdiplus::DllExports::GdipCreateFontFamilyFromName(name, collection, family);
    }
    static Status WINAPI GenericFamily(Gdiplus::GpFontFamily** family)
    {
        Note(L"family without serifs");
        const Status status = Gdiplus::DllExports::GdipGetGenericFontFamilySansSerif(family);
        if (status != Gdiplus::FontFamilyNotFound) return status;
        // A platform without a font for it.
        return Gdiplus::DllExports::GdipCreateFontFamilyFromName(L"Arial", nullptr, family);
    }

    inline static std::vector<std::wstring> s_lines;
    inline static bool s_hasArial = true;

    static constexpr const wchar_t* library = L"Utils_Statics.dll";
    const test_support::ImportHook m_string{library, "GdipDrawString", DrawString};
    const test_support::ImportHook m_pie{library, "GdipFillPie", FillPie};
    const test_support::ImportHook m_arc{library, "GdipDrawArc", DrawArc};
    const test_support::ImportHook m_family{library, "GdipCreateFontFamilyFromName", CreateFamily};
    const test_support::ImportHook m_generic{library, "GdipGetGenericFontFamilySansSerif",
                                             GenericFamily};
};
