// Choosing among a backend's pixel formats. A backend describes its configs
// (EGL, GLX) as PIXELFORMATDESCRIPTOR values; ChoosePixelFormat picks the
// nearest of them to a request by one rule, whatever the backend.
#pragma once

#include <plotvane/platform/WinTypes.h>

#include <vector>

namespace plotvane
{

// The nearest candidate to wanted, numbered from 1 as formats are; 0 when
// no candidate draws to a window with OpenGL, double buffered where that is
// asked, in the wanted pixel type. Among those, in this order: the generic
// flag as asked; no fewer colour, depth and stencil bits than asked; as few
// extra colour bits as possible; 8-bit red, green and blue; no fewer alpha
// bits than asked; then as few extra depth, stencil and alpha bits as
// possible. The earlier candidate wins a tie, so that a backend's own order
// decides between equals.
int ChooseNearestPixelFormat(const std::vector<PIXELFORMATDESCRIPTOR>& candidates,
                             const PIXELFORMATDESCRIPTOR& wanted);

} // namespace plotvane
