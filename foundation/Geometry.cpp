#include <plotvane/foundation/Geometry.h>

#include <limits>

CMPointArray::CMPointArray(const CMPointArray& o) : CExPtrArray<CMPoint*, CMPoint*>()
{
    *this = o;
}

CMPointArray& CMPointArray::operator=(const CMPointArray& o)
{
    if (this == &o)
        return *this;
    DeleteAll();
    for (CMPoint* p : o)
        Add(p ? p->clone() : nullptr);
    return *this;
}

CMLine::CMLine(const CPointD& p1, const CPointD& p2)
    : m_a(p2.y - p1.y), m_b(p1.x - p2.x), m_c(p2.x * p1.y - p1.x * p2.y)
{
}

CPointD CMLine::GetIntersectionPtWith(const CMLine& o) const
{
    const double det = m_a * o.m_b - o.m_a * m_b;
    if (det == 0.0)
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        return CPointD(nan, nan);
    }
    return CPointD((m_b * o.m_c - o.m_b * m_c) / det, (o.m_a * m_c - m_a * o.m_c) / det);
}

// The parameters t (along the first segment) and u (along the second) are
// compared as numerators against the determinant, so that a meeting exactly
// at an end point is not lost to the rounding of a division. The point is
// taken along the second segment: callers pass the sample pair there, and an
// end-point touch then reproduces the sample exactly.
int CLumigrid_Math::GetIntersectionLineLine(double x1, double y1, double x2, double y2, double x3,
                                            double y3, double x4, double y4, double* pOut)
{
    const double dx12 = x2 - x1, dy12 = y2 - y1;
    const double dx34 = x4 - x3, dy34 = y4 - y3;
    double d = dx12 * dy34 - dy12 * dx34;
    if (!(d != 0.0)) // parallel, collinear, degenerate or NaN
        return 0;
    const double dx13 = x3 - x1, dy13 = y3 - y1;
    double tn = dx13 * dy34 - dy13 * dx34;
    double un = dx13 * dy12 - dy13 * dx12;
    if (d < 0.0)
    {
        d = -d;
        tn = -tn;
        un = -un;
    }
    if (!(tn >= 0.0 && tn <= d && un >= 0.0 && un <= d))
        return 0;
    const double u = un / d;
    pOut[0] = u == 1.0 ? x4 : x3 + u * dx34;
    pOut[1] = u == 1.0 ? y4 : y3 + u * dy34;
    return 1;
}
