#pragma once

#include "image/FrameSource.h"
#include "window/ListWindow.h"

#include <functional>
#include <string>
#include <vector>

namespace exam {

/// The images of a study as small pictures. A double click or Enter opens one, Delete removes it.
class StudyImages : public ListWindow
{
public:
    /// The window works with these. Names are those of Examination::StudyImages().
    struct Callbacks
    {
        std::function<std::vector<std::wstring>()> names;
        /// The frames of a name that are open already; null for a file that is not.
        std::function<const FrameSource*(const std::wstring& name)> source;
        std::function<void(const std::wstring& name)> open;
        /// Removes one from the study; false when the user does not want that.
        std::function<bool(const std::wstring& name)> remove = {};
    };

    explicit StudyImages(Callbacks callbacks);

    /// Makes the small picture of the next image; false when all are made. They are made one by
    /// one, so that the window lives meanwhile.
    bool MakeNext();

protected:
    void OnTimer(UINT_PTR id);
    LRESULT OnNotify(WPARAM wParam, LPARAM notice);
    DECLARE_MESSAGE_MAP()

private:
    void Fill() override;
    void RemoveSelected();
    std::size_t Selected() const;

    Callbacks m_callbacks;
    std::vector<std::wstring> m_names;
    std::size_t m_made = 0;
};

} // namespace exam
