#include <plotvane/foundation/ValueTypes.h>

CPointD::CPointD(const CPointF& pt) : x(pt.x), y(pt.y) {}

CPointD& CPointD::operator=(const CPointF& pt)
{
    x = pt.x;
    y = pt.y;
    return *this;
}

void CPointD::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
        ar << x << y;
    else
        ar >> x >> y;
}

void CPointF::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
        ar << x << y;
    else
        ar >> x >> y;
}

void CPointN::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
        ar << x << y;
    else
        ar >> x >> y;
}

CRectF& CRectF::operator=(const CRectD& r)
{
    SetData(float(r.left), float(r.bottom), float(r.right), float(r.top));
    return *this;
}

void CRectF::SetData(float left, float bottom, float right, float top)
{
    x = left;
    y = top;
    width = right - left;
    height = top - bottom;
}

void CRectF::Inflate(float dx, float dy)
{
    x -= dx;
    width += 2.0f * dx;
    y += dy;
    height += 2.0f * dy;
}

void CRectF::Inflate(float fPercent)
{
    const float cx = x + width * 0.5f;
    const float cy = y - height * 0.5f;
    width = width * fPercent / 100.0f;
    height = height * fPercent / 100.0f;
    x = cx - width * 0.5f;
    y = cy + height * 0.5f;
}

void CRectF::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
        ar << x << y << width << height;
    else
        ar >> x >> y >> width >> height;
}
