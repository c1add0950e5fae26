#pragma once

#include "base/GdiPlusSession.h"

#include <afxwin.h>

#include <memory>

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

} // namespace exam
