// Points, rectangles and colours passed by value throughout the component.
// Equality is exact, field by field.
#pragma once

#include <plotvane/foundation/MFCArchive.h>
#include <plotvane/foundation/Types.h>

#include <cmath>

class CPointF;

class CPointD
{
public:
    double x = 0.0;
    double y = 0.0;

    CPointD() = default;
    CPointD(double dx, double dy) : x(dx), y(dy) {}
    CPointD(const CPointF& pt);
    CPointD& operator=(const CPointF& pt);

    double GetX() const { return x; }
    double GetY() const { return y; }
    double& GetX() { return x; }
    double& GetY() { return y; }
    void SetData(double dx, double dy)
    {
        x = dx;
        y = dy;
    }
    double DistanceToPoint(const CPointD& pt) const { return std::hypot(pt.x - x, pt.y - y); }
    bool operator==(const CPointD& o) const { return x == o.x && y == o.y; }
    bool operator!=(const CPointD& o) const { return !(*this == o); }
    void Serialize(CArchive& ar);
};

class CPointF
{
public:
    float x = 0.0f;
    float y = 0.0f;

    CPointF() = default;
    CPointF(float fx, float fy) : x(fx), y(fy) {}
    CPointF(const CPointF&) = default;
    CPointF& operator=(const CPointF&) = default;
    virtual ~CPointF() = default;
    virtual bool operator==(const CPointF& o) const { return x == o.x && y == o.y; }
    virtual bool operator!=(const CPointF& o) const { return !(*this == o); }
    virtual void Serialize(CArchive& ar);
};

class CPointN
{
public:
    int x = 0;
    int y = 0;

    CPointN() = default;
    CPointN(int nx, int ny) : x(nx), y(ny) {}
    CPointN(const CPointN&) = default;
    CPointN& operator=(const CPointN&) = default;
    virtual ~CPointN() = default;
    int GetX() const { return x; }
    void SetX(int nx) { x = nx; }
    int GetY() const { return y; }
    void SetY(int ny) { y = ny; }
    CPointN* clone() const { return new CPointN(*this); }
    virtual bool operator==(const CPointN& o) const { return x == o.x && y == o.y; }
    // Answers 0 whether or not the points differ; nothing may rely on it.
    virtual bool operator!=(const CPointN&) const { return false; }
    virtual void Serialize(CArchive& ar);
};

class CRectD
{
public:
    double left = 0.0;
    double bottom = 0.0;
    double right = 0.0;
    double top = 0.0;

    CRectD() = default;
    CRectD(double l, double b, double r, double t) : left(l), bottom(b), right(r), top(t) {}
    virtual ~CRectD() = default;
    void SetData(double l, double b, double r, double t)
    {
        left = l;
        bottom = b;
        right = r;
        top = t;
    }
    double Left() const { return left; }
    double Right() const { return right; }
    double Top() const { return top; }
    double Bottom() const { return bottom; }
    double GetWidth() const { return right - left; }
    double GetHeight() const { return top - bottom; }
    CPointD CenterPoint() const { return CPointD((left + right) * 0.5, (top + bottom) * 0.5); }
    double GetArea() const { return GetWidth() * GetHeight(); }
    void Init() { left = bottom = right = top = 0.0; }
    bool operator==(const CRectD& o) const
    {
        return left == o.left && bottom == o.bottom && right == o.right && top == o.top;
    }
    bool operator!=(const CRectD& o) const { return !(*this == o); }
    CRectD* clone() const { return new CRectD(*this); }
};

// x is the left edge and y the top edge; Y grows upward, so Bottom = y - height.
class CRectF
{
public:
    float x = 0.0f;
    float y = 0.0f;
    float width = 0.0f;
    float height = 0.0f;

    CRectF() = default;
    CRectF(const CRectD& r) { *this = r; }
    CRectF& operator=(const CRectD& r);
    void SetData(float left, float bottom, float right, float top);
    float Left() const { return x; }
    float Right() const { return x + width; }
    float Top() const { return y; }
    float Bottom() const { return y - height; }
    CPointF CenterPoint() const { return CPointF(x + width * 0.5f, y - height * 0.5f); }
    void Offset(float dx, float dy)
    {
        x += dx;
        y += dy;
    }
    // Moves each edge outward by dx or dy.
    void Inflate(float dx, float dy);
    // Scales about the centre to fPercent percent of the size.
    void Inflate(float fPercent);
    bool operator==(const CRectF& o) const
    {
        return x == o.x && y == o.y && width == o.width && height == o.height;
    }
    bool operator!=(const CRectF& o) const { return !(*this == o); }
    void Serialize(CArchive& ar);
};

class CPoint3D
{
public:
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    CPoint3D() = default;
    CPoint3D(double dx, double dy, double dz) : x(dx), y(dy), z(dz) {}
    virtual ~CPoint3D() = default;
    double GetX() const { return x; }
    double GetY() const { return y; }
    double GetZ() const { return z; }
    double& GetX() { return x; }
    double& GetY() { return y; }
    double& GetZ() { return z; }
    void SetX(double v) { x = v; }
    void SetY(double v) { y = v; }
    void SetZ(double v) { z = v; }
    void GetData(double& dx, double& dy, double& dz) const
    {
        dx = x;
        dy = y;
        dz = z;
    }
    void SetData(double dx, double dy, double dz)
    {
        x = dx;
        y = dy;
        z = dz;
    }
    CPoint3D* clone() const { return new CPoint3D(*this); }
    bool operator==(const CPoint3D& o) const { return x == o.x && y == o.y && z == o.z; }
    bool operator!=(const CPoint3D& o) const { return !(*this == o); }
};

class CColor
{
public:
    CColor() = default;
    CColor(COLORREF cr) { SetColor(cr); }
    CColor(const CColor&) = default;
    CColor& operator=(const CColor& o)
    {
        m_cr = o.m_cr;
        return *this;
    }
    virtual ~CColor() = default;
    void SetColor(COLORREF cr) { m_cr = cr; }
    COLORREF GetColor() const { return m_cr; }
    operator COLORREF() const { return m_cr; }

private:
    COLORREF m_cr = 0;
};

// An integer point with the MFC shape: window and client coordinates.
class CPoint : public tagPOINT
{
public:
    CPoint() = default;
    CPoint(int nx, int ny)
    {
        x = nx;
        y = ny;
    }
    CPoint(const POINT& pt) : tagPOINT(pt) {}
    void Offset(int dx, int dy)
    {
        x += dx;
        y += dy;
    }
    bool operator==(const CPoint& o) const { return x == o.x && y == o.y; }
    bool operator!=(const CPoint& o) const { return !(*this == o); }
    CPoint operator+(const CPoint& o) const { return CPoint(x + o.x, y + o.y); }
    CPoint operator-(const CPoint& o) const { return CPoint(x - o.x, y - o.y); }
};

class DPoint
{
public:
    double x = 0.0;
    double y = 0.0;
    DPoint() = default;
    DPoint(double dx, double dy) : x(dx), y(dy) {}
    DPoint& operator=(const DPoint&) = default;
    DPoint(const DPoint&) = default;
    ~DPoint() {}
};
