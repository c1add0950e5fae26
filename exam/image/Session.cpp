#include "image/Session.h"

#include <Utils_Statics/utilsExam.h>

#include <utility>

namespace exam {

std::wstring Session::Add(const std::wstring& name)
{
    const std::wstring path = utilsExam::GetImage(name.c_str());
    CineFile cine;
    if (std::wstring problem = cine.Open(path); !problem.empty()) return path + L": " + problem;
    m_recordings.push_back(std::move(cine));
    return {};
}

void Session::Select(std::size_t index)
{
    if (index >= m_recordings.size()) return;
    m_current = index;
    m_frame = 0;
}

void Session::NextImage()
{
    if (!IsEmpty()) Select((m_current + 1) % m_recordings.size());
}

void Session::Step(int frames)
{
    if (IsEmpty()) return;
    const int count = Cine().Frames();
    m_frame = (m_frame + frames % count + count) % count;
}

} // namespace exam
