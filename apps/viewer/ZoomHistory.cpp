#include "viewer/ZoomHistory.h"

namespace plotvane::viewer
{

void ZoomHistory::Record(const ViewState& state)
{
    if (!m_states.empty())
    {
        if (m_states[m_current] == state)
            return;
        m_states.resize(m_current + 1);
    }
    m_states.push_back(state);
    if (m_states.size() > kMaxStates)
        m_states.erase(m_states.begin());
    m_current = m_states.size() - 1;
}

std::optional<ViewState> ZoomHistory::Back(const ViewState& current)
{
    Record(current);
    if (m_current == 0)
        return std::nullopt;
    --m_current;
    return m_states[m_current];
}

std::optional<ViewState> ZoomHistory::Forward(const ViewState& current)
{
    if (m_states.empty() || m_states[m_current] != current || m_current + 1 >= m_states.size())
        return std::nullopt;
    ++m_current;
    return m_states[m_current];
}

void ZoomHistory::Clear()
{
    m_states.clear();
    m_current = 0;
}

} // namespace plotvane::viewer
