// Plane geometry primitives: points, lines in a*x + b*y + c = 0 form,
// segments, circles and arcs.
#pragma once

#include <plotvane/foundation/ExPtrArray.h>
#include <plotvane/foundation/ValueTypes.h>

class CMPoint
{
public:
    CMPoint() = default;
    CMPoint(double x, double y) : m_x(x), m_y(y) {}
    virtual ~CMPoint() = default;
    CMPoint(const CMPoint&) = default;
    CMPoint& operator=(const CMPoint&) = default;
    void SetData(double x, double y)
    {
        m_x = x;
        m_y = y;
    }
    double GetX() const { return m_x; }
    double GetY() const { return m_y; }
    void SetX(double x) { m_x = x; }
    void SetY(double y) { m_y = y; }
    CMPoint* clone() const { return new CMPoint(*this); }
    bool operator==(const CMPoint& o) const { return m_x == o.m_x && m_y == o.m_y; }
    bool operator!=(const CMPoint& o) const { return !(*this == o); }

private:
    double m_x = 0.0;
    double m_y = 0.0;
};

class CMPointArray : public CExPtrArray<CMPoint*, CMPoint*>
{
public:
    CMPointArray() = default;
    // Copies share nothing: each point is cloned.
    CMPointArray(const CMPointArray& o);
    CMPointArray& operator=(const CMPointArray& o);
    ~CMPointArray() override { DeleteAll(); }
    CMPointArray* clone() const { return new CMPointArray(*this); }
};

class CMLine
{
public:
    CMLine() = default;
    // The line through both points.
    CMLine(const CPointD& p1, const CPointD& p2);
    double Get_a() const { return m_a; }
    double Get_b() const { return m_b; }
    double Get_c() const { return m_c; }
    // The meeting point of the two unbounded lines; NaN coordinates when they
    // are parallel or the same line.
    CPointD GetIntersectionPtWith(const CMLine& other) const;

private:
    double m_a = 0.0;
    double m_b = 0.0;
    double m_c = 0.0;
};

class CMLineSeg
{
public:
    CMLineSeg() = default;
    CMLineSeg(const CMPoint& p1, const CMPoint& p2) : m_pt1(p1), m_pt2(p2) {}
    void SetData(const CMPoint& p1, const CMPoint& p2)
    {
        m_pt1 = p1;
        m_pt2 = p2;
    }
    const CMPoint& GetPt1() const { return m_pt1; }
    const CMPoint& GetPt2() const { return m_pt2; }
    void SetPt1(const CMPoint& p) { m_pt1 = p; }
    void SetPt2(const CMPoint& p) { m_pt2 = p; }

private:
    CMPoint m_pt1;
    CMPoint m_pt2;
};

class CMCircle
{
public:
    CMCircle() = default;
    CMCircle(const CMPoint& center, double radius) : m_center(center), m_dRadius(radius) {}
    void SetData(const CMPoint& center, double radius)
    {
        m_center = center;
        m_dRadius = radius;
    }
    const CMPoint& GetCenter() const { return m_center; }
    void SetCenter(const CMPoint& c) { m_center = c; }
    double GetRadius() const { return m_dRadius; }
    void SetRadius(double r) { m_dRadius = r; }

private:
    CMPoint m_center;
    double m_dRadius = 0.0;
};

class CMArc
{
public:
    CMArc() = default;
    const CMPoint& GetCenter() const { return m_center; }
    void SetCenter(const CMPoint& c) { m_center = c; }
    void SetCenter(double x, double y) { m_center.SetData(x, y); }
    double GetRadius() const { return m_dRadius; }
    void SetRadius(double r) { m_dRadius = r; }
    double GetStartAngle() const { return m_dStartAngle; }
    void SetStartAngle(double a) { m_dStartAngle = a; }
    double GetEndAngle() const { return m_dEndAngle; }
    void SetEndAngle(double a) { m_dEndAngle = a; }
    int GetArcDirection() const { return m_nDirection; }
    void SetArcDirection(int n) { m_nDirection = n; }

private:
    CMPoint m_center;
    double m_dRadius = 0.0;
    double m_dStartAngle = 0.0;
    double m_dEndAngle = 0.0;
    int m_nDirection = 0;
};

class CLumigrid_Math
{
public:
    // Whether segment (x1,y1)-(x2,y2) meets segment (x3,y3)-(x4,y4), end
    // points included. On a meeting pOut[0], pOut[1] receive the point and the
    // answer is 1; parallel and collinear segments answer 0 and leave pOut.
    static int GetIntersectionLineLine(double x1, double y1, double x2, double y2, double x3,
                                       double y3, double x4, double y4, double* pOut);
};
