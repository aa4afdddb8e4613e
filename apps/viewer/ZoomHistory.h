// Back and Forward over the views a user zoomed through. It keeps view
// states only, read from and written to the view's public members, so that
// nothing of the chart's own zoom behaviour changes.
#pragma once

#include <plotvane/foundation/ValueTypes.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace plotvane::viewer
{

struct ViewState
{
    CRectF area;
    int zoomExponent = 0;
    bool operator==(const ViewState& o) const
    {
        return area.x == o.area.x && area.y == o.area.y && area.width == o.area.width &&
               area.height == o.area.height && zoomExponent == o.zoomExponent;
    }
    bool operator!=(const ViewState& o) const { return !(*this == o); }
};

class ZoomHistory
{
public:
    // A view the user reached (a zoom finished, a file opened). A state
    // equal to the current entry is not added again; recording after going
    // back drops the views ahead.
    void Record(const ViewState& state);
    // The view before current; current is recorded first, so that a pan or
    // wheel zoom since the last entry can be come back to.
    std::optional<ViewState> Back(const ViewState& current);
    // The view that Back left, while the user has not moved since.
    std::optional<ViewState> Forward(const ViewState& current);
    void Clear();
    std::size_t Size() const { return m_states.size(); }

private:
    // Long sessions keep the latest views only.
    static constexpr std::size_t kMaxStates = 100;
    std::vector<ViewState> m_states;
    std::size_t m_current = 0; // index of the view shown, when not empty
};

} // namespace plotvane::viewer
