#include <plotvane/measure/EyeCrossings.h>

namespace plotvane
{
LevelCross CrossOf(const CChartPointDArray& d, double dLevel, double dFrom, double dTo,
                   SearchScale scale)
{
    LevelCross c{false, 0.0, 0.0};
    c.bFound = d.GetCrossMinMaxXValue(dLevel, dFrom, dTo, scale.x, scale.y, c.dLo, c.dHi) != 0;
    return c;
}

bool FindStrobeEdge(const CChartPointDArray& s, const CChartPointDArray* pBar, double dVref,
                    double dLo, double dHi, SearchScale scale, double& dMin, double& dMax)
{
    double a = 0.0;
    double b = 0.0;
    const int bFound = pBar ? s.GetDataCrossMinMaxXValue(pBar, dLo, dHi, scale.x, scale.y, a, b)
                            : s.GetCrossMinMaxXValue(dVref, dLo, dHi, scale.x, scale.y, a, b);
    if (!bFound)
        return false;
    dMin = a;
    dMax = b;
    return true;
}

// Phase 0 puts the window a tenth of the eye after the data's first
// crossing, a quarter of the eye wide; phase 1 centres it between the first
// and last crossing, narrowed by a tenth of the eye and a quarter of their
// distance on each side.
void FollowDataCrossings(const CChartPointDArray& d, double dXLow, double dXMax,
                         const CChartPointDArray& s, double dStrobeMinX, double dVref,
                         SearchScale scale, double& dLo, double& dHi)
{
    if (s.m_nStrobePhase != 0 && s.m_nStrobePhase != 1)
        return;
    const LevelCross c = CrossOf(d, dVref, dXLow, dXMax, scale);
    const double dSpan = dXMax - dXLow;
    if (s.m_nStrobePhase == 0)
    {
        if (c.bFound)
        {
            dLo = dSpan / 10.0 + c.dLo;
            dHi = dSpan * 0.25 + dLo;
        }
        else
        {
            dLo = dStrobeMinX + s.m_dPeriod * 0.5;
            dHi = dLo + s.m_dPeriod * 0.5;
        }
        return;
    }
    if (c.bFound)
    {
        const double dInset = (c.dHi - c.dLo) * 0.25;
        dLo = c.dLo + dSpan / 10.0 + dInset;
        dHi = c.dHi - dSpan / 10.0 - dInset;
    }
    else
    {
        dLo = dStrobeMinX + s.m_dPeriod;
        dHi = dLo + s.m_dPeriod * 0.5;
    }
}
} // namespace plotvane
