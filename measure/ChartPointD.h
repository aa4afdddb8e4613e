// One sample of a waveform. Samples are allocated one by one (a waveform owns
// pointers to them), so they come from a pool that keeps a waveform's samples
// close together and costs no per-object heap header.
#pragma once

#include <plotvane/foundation/MFCArchive.h>

#include <cstddef>

class CChartPointD
{
public:
    CChartPointD() = default;
    CChartPointD(double x, double y) : X(x), Y(y) {}
    CChartPointD(const CChartPointD& o) = default;
    CChartPointD& operator=(const CChartPointD& o)
    {
        if (this != &o)
        {
            X = o.X;
            Y = o.Y;
        }
        return *this;
    }
    virtual ~CChartPointD() = default;
    virtual bool operator==(const CChartPointD& o) const { return X == o.X && Y == o.Y; }
    virtual bool operator!=(const CChartPointD& o) const { return !(*this == o); }
    virtual void Serialize(CArchive& ar);

    void Set(double x, double y)
    {
        X = x;
        Y = y;
    }
    double GetX() const { return X; }
    double GetY() const { return Y; }
    void Shift(double dx, double dy)
    {
        X += dx;
        Y += dy;
    }
    void Multiply(double f)
    {
        X *= f;
        Y *= f;
    }
    void MultiplyX(double f) { X *= f; }
    void MultiplyY(double f) { Y *= f; }

    static void* operator new(std::size_t size);
    static void operator delete(void* p, std::size_t size) noexcept;

    static constexpr int m_nVersion = 1;

    double X = 0.0;
    double Y = 0.0;
};
