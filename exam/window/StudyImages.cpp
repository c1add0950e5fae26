#include "window/StudyImages.h"

#include "base/Dpi.h"
#include "image/OpenFrames.h"
#include "image/Thumbnail.h"

#include <commctrl.h>

#include <cstring>
#include <filesystem>
#include <utility>

namespace exam {

namespace {

constexpr UINT_PTR makeTimer = 1;
constexpr CSize pictureSize(144, 108); // pixels at 96 dpi
constexpr CSize gap(32, 48);           // between two pictures; the names are below them

CSize Scaled(CSize size, int dpi)
{
    return {MulDiv(size.cx, dpi, USER_DEFAULT_SCREEN_DPI),
            MulDiv(size.cy, dpi, USER_DEFAULT_SCREEN_DPI)};
}

} // namespace

BEGIN_MESSAGE_MAP(StudyImages, ListWindow)
    ON_WM_TIMER()
    ON_MESSAGE(WM_NOTIFY, OnNotify)
END_MESSAGE_MAP()

StudyImages::StudyImages(Callbacks callbacks)
    : ListWindow("exam.command.images", LVS_ICON | LVS_SINGLESEL | LVS_AUTOARRANGE, 'I'),
      m_callbacks(std::move(callbacks))
{
}

void StudyImages::Fill()
{
    m_names = m_callbacks.names();
    m_made = 0;
    const int dpi = DpiOf(GetSafeHwnd());
    const CSize size = Scaled(pictureSize, dpi);
    const CSize spacing = size + Scaled(gap, dpi);
    const HIMAGELIST pictures =
        ImageList_Create(size.cx, size.cy, ILC_COLOR32, static_cast<int>(m_names.size()), 1);
    // The list view destroys the pictures that it has at its end, and gives those before back.
    ImageList_Destroy(reinterpret_cast<HIMAGELIST>(::SendMessageW(
        List(), LVM_SETIMAGELIST, LVSIL_NORMAL, reinterpret_cast<LPARAM>(pictures))));
    ::SendMessageW(List(), LVM_SETICONSPACING, 0, MAKELPARAM(spacing.cx, spacing.cy));
    for (std::size_t i = 0; i < m_names.size(); ++i) {
        std::wstring text = std::filesystem::path(m_names[i]).filename().wstring();
        LVITEMW item = {};
        item.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_STATE;
        item.iItem = static_cast<int>(i);
        item.iImage = I_IMAGENONE;
        item.state = item.stateMask = i == 0 ? LVIS_SELECTED | LVIS_FOCUSED : 0U;
        item.pszText = text.data();
        ::SendMessageW(List(), LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
    SetTimer(makeTimer, USER_TIMER_MINIMUM, nullptr);
}

bool StudyImages::MakeNext()
{
    if (!IsShown() || m_made >= m_names.size()) return false;
    const std::wstring& name = m_names[m_made];
    OpenedFrames opened;
    const FrameSource* source = m_callbacks.source(name);
    if (!source) {
        opened = OpenFrames(name);
        source = opened.source.get();
    }
    LVITEMW item = {};
    item.mask = LVIF_IMAGE;
    item.iItem = static_cast<int>(m_made++);
    item.iImage = I_IMAGENONE; // of what cannot be shown
    if (source) {
        CBitmap picture;
        PaintThumbnail(*source, Scaled(pictureSize, DpiOf(GetSafeHwnd())), picture);
        source->Rest();
        auto* const list =
            reinterpret_cast<HIMAGELIST>(::SendMessageW(List(), LVM_GETIMAGELIST, LVSIL_NORMAL, 0));
        item.iImage = ImageList_Add(list, static_cast<HBITMAP>(picture.GetSafeHandle()), nullptr);
    }
    ::SendMessageW(List(), LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return m_made < m_names.size();
}

std::size_t StudyImages::Selected() const
{
    return static_cast<std::size_t>(::SendMessageW(List(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1),
                                                   MAKELPARAM(LVNI_SELECTED, 0)));
}

void StudyImages::RemoveSelected()
{
    const std::size_t item = Selected();
    if (item >= m_names.size() || !m_callbacks.remove || !m_callbacks.remove(m_names[item])) return;
    ::SendMessageW(List(), LVM_DELETEALLITEMS, 0, 0);
    Fill();
}

void StudyImages::OnTimer(UINT_PTR)
{
    if (!MakeNext()) KillTimer(makeTimer);
}

LRESULT StudyImages::OnNotify(WPARAM, LPARAM notice)
{
    // The notice of a key is packed, and so may lie anywhere.
    NMHDR header;
    std::memcpy(&header, reinterpret_cast<const void*>(notice), sizeof header);
    if (header.code == LVN_KEYDOWN) {
        NMLVKEYDOWN press;
        std::memcpy(&press, reinterpret_cast<const void*>(notice), sizeof press);
        if (press.wVKey == VK_DELETE) RemoveSelected();
    }
    if (header.code != LVN_ITEMACTIVATE) return Default();
    const std::size_t item = Selected();
    if (item >= m_names.size()) return 0;
    PostMessage(WM_CLOSE); // the list still needs the window
    m_callbacks.open(m_names[item]);
    return 0;
}

} // namespace exam
