#pragma once

#include "overlay/HoverTip.h"
#include "overlay/Overlay.h"

#include <Utils_Statics/BitmapFunctions.h> // includes the headers of GDI+

#include <afxwin.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace exam {

/// The look of a button.
enum class ButtonForm
{
    normal,
    disabled, ///< grey
    framed    ///< its state is on
};

/// A button's picture from the icon store in each of its forms: a symbol on a plate with rounded
/// corners. GDI+ must run as long as this object lives.
class ButtonPicture
{
public:
    /// `name` is the name of the symbol's file in the store's folders "buttons", "144\\buttons" and
    /// "192\\buttons", which hold it in the sizes for these dots per inch, and "plate.png" too.
    explicit ButtonPicture(const wchar_t* name);

    /// The picture for the fewest dots per inch that fills the area is drawn.
    void Draw(CDC& dc, const CRect& area, ButtonForm form) const;

private:
    using Image = std::unique_ptr<Gdiplus::Bitmap>;

    // The parts in one size.
    struct Parts
    {
        Image plate;
        Image frame; // the plate with a frame
        Image symbol;
        Image greyPlate;
        Image greySymbol;
    };

    static Parts Load(const std::wstring& folder, const wchar_t* name);
    const Parts& InSize(int width) const;

    std::vector<Parts> m_sizes; // from the smallest on
};

/// A button of the tool bar.
struct ToolButton
{
    const wchar_t* picture; ///< its name in the folder of button pictures
    const char* nameKey;
    std::function<CString()> tip;
    std::function<void()> push;
    std::function<ButtonForm()> form; ///< its look now; a disabled button cannot be pushed
};

/// Buttons with pictures in a column, as wide as its room, or as small as it takes to find place.
/// They are for the user at the screen, so recordings leave them out.
class ToolBar : public Overlay
{
public:
    explicit ToolBar(std::vector<ToolButton> buttons);

    const std::vector<ToolButton>& Buttons() const { return m_buttons; }
    /// The area of a button, in the client area.
    CRect AreaOf(std::size_t button) const;

    void Draw(CDC* dc) override;
    void DrawMask(CDC* dc) override;
    bool CanDrawOnAVI() const override { return false; }

protected:
    CRect AreaIn(const CRect& room) const override;
    bool TakesMouse() const override { return true; }

    void OnLButtonDown(UINT flags, CPoint point);
    void OnMouseMove(UINT flags, CPoint point);
    LRESULT OnMouseLeave(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    std::optional<std::size_t> ButtonAt(CPoint point) const;

    std::vector<ToolButton> m_buttons;
    std::vector<ButtonPicture> m_pictures; // one for each button
    HoverTip m_tip;
};

} // namespace exam
