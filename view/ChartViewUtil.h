// Small helpers that the chart view's sources share.
#pragma once

#include <plotvane/foundation/Types.h>
#include <plotvane/view/ChartText.h>

#include <GL/gl.h>

#include <climits>
#include <cmath>
#include <cstdint>

namespace plotvane
{

// The integer part of v, as a C cast gives it for values in range. A value
// out of range or not a number gives INT_MIN, as the processor's conversion
// does, instead of undefined behaviour: grid counts meet infinities when an
// interval is 0.
inline int TruncToInt(double v)
{
    if (!(v > double(INT_MIN) - 1.0 && v < double(INT_MAX) + 1.0))
        return INT_MIN;
    return int(v);
}

// A colour word, red in the low byte.
inline void SetGLColor(DWORD color)
{
    LastGLColor() = color;
    glColor3ub(GLubyte(color & 0xFF), GLubyte((color >> 8) & 0xFF), GLubyte((color >> 16) & 0xFF));
}

// The polygon stipple of overlay boxes and shaded areas: a sparse diagonal
// dot raster, four rows repeated over the 32 rows, through which the curves
// stay visible.
inline const GLubyte* OverlayStipple()
{
    struct Pattern
    {
        GLubyte bytes[128];
        Pattern()
        {
            const std::uint32_t rows[4] = {0x88888888u, 0x00000000u, 0x22222222u, 0x00000000u};
            for (int r = 0; r < 32; ++r)
                for (int b = 0; b < 4; ++b)
                    bytes[r * 4 + b] = GLubyte(rows[r % 4] >> (24 - 8 * b));
        }
    };
    static const Pattern pattern;
    return pattern.bytes;
}

} // namespace plotvane
