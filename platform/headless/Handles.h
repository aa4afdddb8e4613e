// Handles of the headless backend. Windows, device contexts and rendering
// contexts take their numbers from one counter, so that a handle of one
// kind never passes for another.
#pragma once

#include <cstdint>

namespace plotvane::headless
{

class HandleCounter
{
public:
    std::uintptr_t Next() { return m_next++; }

private:
    std::uintptr_t m_next = 0x100;
};

template <class Handle> Handle MakeHandle(std::uintptr_t id)
{
    return reinterpret_cast<Handle>(id);
}

template <class Handle> std::uintptr_t IdOf(Handle h)
{
    return reinterpret_cast<std::uintptr_t>(h);
}

} // namespace plotvane::headless
