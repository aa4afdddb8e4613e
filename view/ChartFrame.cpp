#include <plotvane/view/ChartFrame.h>

#include <GL/glu.h>

namespace plotvane
{

// The tenth is divided in float and the sum taken in float before widening:
// the clipper, the axes and the grid have always met at exactly this point.
ChartFrame::ChartFrame(const Source& src)
    : m_src(src), m_dOriginX(src.rcVisible.Left() + src.rcVisible.width / 10.0f),
      m_dOriginY(src.rcVisible.Bottom() + src.rcVisible.height / 10.0f)
{
}

// gluProject and gluUnProject are plain arithmetic on the matrices given:
// no context is needed. A singular projection leaves the point at 0.
CPointD ChartFrame::LogicalToPixel(double x, double y) const
{
    GLdouble wx = 0.0;
    GLdouble wy = 0.0;
    GLdouble wz = 0.0;
    gluProject(x, y, 0.0, m_src.modelview, m_src.projection, m_src.viewport, &wx, &wy, &wz);
    return CPointD(wx, m_src.nClientHeight - wy);
}

CPointD ChartFrame::PixelToLogical(double col, double row) const
{
    GLdouble x = 0.0;
    GLdouble y = 0.0;
    GLdouble z = 0.0;
    gluUnProject(col, m_src.nClientHeight - row, 0.0, m_src.modelview, m_src.projection,
                 m_src.viewport, &x, &y, &z);
    return CPointD(x, y);
}

} // namespace plotvane
