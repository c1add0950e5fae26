#include "MouseCaptureModel.h"

#include <algorithm>
#include <utility>

namespace capture_model {

// --- The world of one side ---

int Side::Play(const Step& step)
{
    switch (step.operation) {
    case Operation::Create:
    case Operation::Destroy:
    case Operation::ChangePoints:
    case Operation::ChangeTraits:
    case Operation::React: PlayOnWorld(step); return 0;
    default: return PlayOnArbitration(step);
    }
}

void Side::PlayOnWorld(const Step& step)
{
    int& tool = m_slots[static_cast<std::size_t>(step.slot)];
    if (step.operation == Operation::Create) {
        if (tool != nobody) return;
        tool = static_cast<int>(m_tools.size());
        m_tools.push_back({step.traits, step.points, {}});
        return Created(tool);
    }
    if (tool == nobody) return;
    if (step.operation == Operation::Destroy) return Destroyed(std::exchange(tool, nobody));
    if (step.operation == Operation::ChangePoints)
        At(tool).points = step.points;
    else if (step.operation == Operation::ChangeTraits)
        At(tool).traits = step.traits;
    else
        At(tool).reactions[static_cast<std::size_t>(step.call)].push_back(step.reaction.front());
}

int Side::PlayOnArbitration(const Step& step)
{
    switch (step.operation) {
    case Operation::Register: Register(ToolIn(step.slot)); return 0;
    case Operation::Unregister: Unregister(ToolIn(step.slot)); return 0;
    case Operation::Lock: return Lock(ToolIn(step.slot), step.index);
    case Operation::Unlock: return Unlock();
    case Operation::LockNext: return LockNext();
    case Operation::Mouse: return HandleMouse(step.message, step.flags, step.point);
    case Operation::Clip: Clip(step.on ? &step.rect : nullptr); return 0;
    case Operation::Initialize: Initialize(step.rect, step.index); return 0;
    case Operation::Freeze: SetFreeze(step.on); return 0;
    case Operation::Imaging: SetImaging(step.on); return 0;
    default: SetResearch(step.on); return 0;
    }
}

void Side::Called(Call call, int tool, std::array<int, 4> arguments)
{
    m_events.push_back({call, tool, arguments});
    auto& reactions = At(tool).reactions[static_cast<std::size_t>(call)];
    if (reactions.empty()) return;
    const Step step = std::move(reactions.front());
    reactions.pop_front();
    ++m_reactions;
    const int answer = Play(step);
    m_events.push_back({Call::count, tool, {answer}});
}

bool Side::OnMouseInput(int tool, unsigned int message, unsigned int flags, int x, int y)
{
    Called(Call::MouseInput, tool, {static_cast<int>(message), static_cast<int>(flags), x, y});
    return At(tool).traits.consumes;
}

void Side::OnRelease(int tool)
{
    Called(Call::Release, tool);
}

std::vector<POINT> Side::GetPoints(int tool)
{
    Called(Call::Points, tool);
    return At(tool).points;
}

void Side::OnSetLock(int tool, int index)
{
    Called(Call::SetLock, tool, {index});
}

bool Side::HasBackground(int tool)
{
    Called(Call::HasBackground, tool);
    return At(tool).traits.background;
}

int Side::GetType(int tool)
{
    Called(Call::Type, tool);
    return At(tool).traits.type;
}

int Side::GetOrder(int tool)
{
    Called(Call::Order, tool);
    return At(tool).traits.order;
}

RECT Side::GetArea(int tool)
{
    Called(Call::Area, tool);
    return At(tool).traits.area;
}

// --- The reference ---

void Reference::Created(int tool)
{
    m_living.resize(static_cast<std::size_t>(tool) + 1, false);
    m_living[static_cast<std::size_t>(tool)] = true;
}

void Reference::Destroyed(int tool)
{
    Unregister(tool);
    m_living[static_cast<std::size_t>(tool)] = false;
    if (m_owner == tool) m_owner = nobody;
}

bool Reference::IsRegistered(int tool) const
{
    return std::find(m_registered.begin(), m_registered.end(), tool) != m_registered.end();
}

void Reference::Register(int tool)
{
    if (tool == nobody || IsRegistered(tool)) return;
    m_registered.push_back(tool);
    const int order = GetOrder(tool);
    std::size_t place = 0;
    for (; place < m_registered.size() && m_registered[place] != tool; ++place)
        if (GetOrder(m_registered[place]) > order) break;
    if (!IsRegistered(tool)) return;
    const auto own = std::find(m_registered.begin(), m_registered.end(), tool);
    if (static_cast<std::size_t>(own - m_registered.begin()) <= place) return;
    m_registered.erase(own);
    m_registered.insert(m_registered.begin() + static_cast<std::ptrdiff_t>(place), tool);
}

void Reference::Unregister(int tool)
{
    std::erase(m_registered, tool);
}

void Reference::Release()
{
    const int tool = m_owner;
    if (tool == nobody || std::find(m_told.begin(), m_told.end(), tool) != m_told.end()) return;
    m_told.push_back(tool);
    OnRelease(tool);
    m_told.pop_back();
}

bool Reference::Lock(int tool, int index)
{
    m_point = index;
    const int type = tool == nobody ? 0 : GetType(tool);
    if (m_input == 1 && type == 2) return false;
    m_ownerType = type;
    Release();
    m_owner = Lives(tool) ? tool : nobody;
    if (m_owner != nobody) OnSetLock(m_owner, m_point);
    return true;
}

bool Reference::Unlock()
{
    Release();
    m_owner = nobody;
    m_clip = RECT{};
    return true;
}

// True when the handler has points. A handler without points but with a background point becomes
// the candidate.
bool Reference::Consider(int tool, int& candidate)
{
    if (!IsRegistered(tool)) return false;
    const bool hasPoints = !GetPoints(tool).empty();
    if (!Lives(tool)) return false;
    if (hasPoints) return true;
    if (HasBackground(tool) && Lives(tool)) candidate = tool;
    return false;
}

bool Reference::LockNext()
{
    if (m_input == 1) {
        Unlock();
        return false;
    }
    m_point = static_cast<int>(static_cast<std::int64_t>(m_point) + 1);
    if (const int owner = m_owner; owner != nobody) {
        const auto count = static_cast<std::int64_t>(GetPoints(owner).size());
        if (Lives(owner) && m_owner == owner && count > m_point) {
            OnSetLock(owner, m_point);
            return true;
        }
    }
    m_clip = RECT{};
    m_point = 0;
    const std::vector<int> walked = m_registered;
    const auto owner = std::find(walked.begin(), walked.end(), m_owner);
    const bool ownerFound = owner != walked.end();
    const auto behindOwner = ownerFound ? std::next(owner) : walked.begin();
    int candidate = nobody;
    for (auto tool = behindOwner; tool != walked.end(); ++tool)
        if (Consider(*tool, candidate)) return Lock(*tool, 0);
    if (!m_research && ownerFound && !(m_freeze && m_imaging))
        for (auto tool = walked.begin(); tool != behindOwner; ++tool)
            if (Consider(*tool, candidate)) return Lock(*tool, 0);
    if (!Lives(candidate) || candidate == m_owner) candidate = nobody;
    Lock(candidate, 0);
    return false;
}

// The distance modulo 2 to the 64th. Only its low 32 bits count.
static std::int32_t Distance(POINT a, POINT b)
{
    const std::int64_t dx = std::int64_t{a.x} - b.x;
    const std::int64_t dy = std::int64_t{a.y} - b.y;
    const auto square = [](std::int64_t d) {
        return static_cast<std::uint64_t>(d) * static_cast<std::uint64_t>(d);
    };
    return static_cast<std::int32_t>(
        static_cast<std::uint32_t>((square(dx) + square(dy)) & 0xFFFFFFFFu));
}

void Reference::LockNearest(POINT point)
{
    int best = nobody, bestIndex = 0, bestDistance = 10000, seen = 0, background = nobody;
    for (const int tool : std::vector<int>(m_registered)) {
        if (!IsRegistered(tool)) continue;
        const std::vector<POINT> points = GetPoints(tool);
        if (!Lives(tool)) continue;
        for (int i = 0; i < static_cast<int>(points.size()); ++i, ++seen) {
            const int distance = Distance(points[static_cast<std::size_t>(i)], point);
            if (distance >= bestDistance) continue;
            best = tool;
            bestIndex = i;
            bestDistance = distance;
        }
        if (HasBackground(tool) && Lives(tool)) background = tool;
    }
    if (!Lives(best) && seen == 0 && Lives(background)) {
        const RECT area = GetArea(background);
        const bool inside = point.x >= area.left && point.x < area.right && point.y >= area.top &&
                            point.y < area.bottom;
        if (inside) best = background;
    }
    Lock(Lives(best) ? best : nobody, bestIndex);
}

bool Reference::HandleMouse(unsigned int message, unsigned int flags, POINT point)
{
    if (point.x < m_area.left || point.x >= m_area.right || point.y < m_area.top ||
        point.y >= m_area.bottom)
        return false;
    if (m_input == 1) {
        if (message == 513) {
            LockNearest(point);
            return m_owner != nobody;
        }
        if (message == 514 || (message == 512 && !(flags & 1))) {
            if (m_owner == nobody) return false;
            Unlock();
            return true;
        }
    }
    if (m_owner == nobody) return false;
    if (m_ownerType == 1 && message != 512) return false;
    if (m_clip.left < m_clip.right && m_clip.top < m_clip.bottom) {
        if (point.x > m_clip.right)
            point.x = m_clip.right;
        else if (point.x < m_clip.left)
            point.x = m_clip.left;
        if (point.y > m_clip.bottom)
            point.y = m_clip.bottom;
        else if (point.y < m_clip.top)
            point.y = m_clip.top;
    }
    return OnMouseInput(m_owner, message, flags, point.x, point.y);
}

void Reference::Initialize(const RECT& area, int input)
{
    m_clip = RECT{};
    m_area = area;
    m_input = input;
}

} // namespace capture_model
