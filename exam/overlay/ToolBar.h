#pragma once

#include "overlay/HoverTip.h"
#include "overlay/Overlay.h"

#include <Utils_Statics/BitmapFunctions.h> // includes the headers of GDI+

#include <afxwin.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace exam {

/// The look of a button.
enum class ButtonForm
{
    normal,
    disabled, ///< grey
    framed    ///< its state is on
};

/// A button's picture from the icon store, with rounded corners, in each of its forms. GDI+ must
/// run as long as this object lives.
class ButtonPicture
{
public:
    /// `name` is the name of a picture file in the store's folder "buttons".
    explicit ButtonPicture(const wchar_t* name);

    void Draw(CDC& dc, const CRect& area, ButtonForm form) const;

private:
    using Image = std::unique_ptr<Gdiplus::Bitmap>;

    const Image& In(ButtonForm form) const;

    Image m_normal;
    Image m_disabled;
    Image m_framed;
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
