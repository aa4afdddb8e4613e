#include "render/demos/OverlayHost.h"

#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/document/TargetImp.h>
#include <plotvane/measure/ChartPointDArray.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace plotvane
{
namespace
{
// Scales for the time-domain searches: picoseconds and millivolts keep the
// intersections well conditioned.
constexpr double kScaleT = 1e12;
constexpr double kScaleV = 1e3;

CString Upper(const CString& s)
{
    CString u = s;
    u.MakeUpper();
    return u;
}
} // namespace

void ClearOverlays(CPlotvane_Manager& mgr)
{
    mgr.m_nMeasureType = -1;
    mgr.m_dMeasuredValue = mgr.m_dMeasureMargin = 0.0;
    mgr.m_bEyeMaskVisible = 0;
    mgr.m_bEyeMaskFollowMouse = 0;
    mgr.m_pEyeMaskRectArray->DeleteAll();
    mgr.ClearBathtubMeasureData();
    mgr.m_bTargetImpedance = 0;
    mgr.m_bTDRImpedance = 0;
    mgr.m_dTDRLevel1 = mgr.m_dTDRLevel2 = 0.0;
    mgr.m_dTargetImpedanceFreq = mgr.m_dTargetImpedanceValue = 0.0;
    mgr.m_bDFEPFreqDomain = 0;
    mgr.m_strFlightNet1.Empty();
    mgr.m_strFlightNet2.Empty();
    mgr.m_dFlightTimeX1 = mgr.m_dFlightTimeX2 = 0.0;
    mgr.m_strNEXTNet.Empty();
    mgr.m_strFEXTNet.Empty();
    mgr.m_nCrosstalkPointIndex = -1;
}

void PlaceEyeMask(CPlotvane_Manager& mgr, const EyeMaskShape& s)
{
    // The mask's width field counts the percentages in hundredths of half of
    // it, halved again: with the tips at 50 %, 800 times the tips' half
    // width puts them at dTipHalfWidth.
    mgr.m_dEyeMaskTopPercent = s.dFlatPercent * 0.5;
    mgr.m_dEyeMaskBottomPercent = 50.0;
    mgr.m_dEyeMaskWidth = s.dTipHalfWidth * 800.0;
    mgr.m_dEyeMaskHeight = 2 * s.dHalfHeight;
    // The click that fixes a mask comes from the input layer; a host may
    // also store one itself.
    const double gx = CPlotvane_InputData::m_dViewScaleX;
    const double gy = CPlotvane_InputData::m_dViewScaleY;
    const double b = s.dTipHalfWidth * gx, hh = s.dHalfHeight * gy;
    mgr.m_pEyeMaskRectArray->DeleteAll();
    mgr.m_pEyeMaskRectArray->Add(new CRectD(s.dCentreT * gx - b, s.dCentreV * gy - hh,
                                            s.dCentreT * gx + b, s.dCentreV * gy + hh));
    mgr.m_bEyeMaskVisible = 1;
}

int MeasureBathtubs(CPlotvane_Manager& mgr, const std::vector<std::string>& rates)
{
    int nFound = 0;
    for (int index : mgr.m_InputData.m_DrawSet)
    {
        CChartPointDArray* tub = mgr.m_InputData.GetChartPointDArray(index);
        for (const std::string& rate : rates)
        {
            double x1 = 0.0, x2 = 0.0;
            if (tub == nullptr ||
                !mgr.GetBathtubMeasuredPoints(tub, std::atof(rate.c_str()), x1, x2))
                continue;
            mgr.m_mapBathtub[CString(rate)][COLORREF(tub->m_Color)] = CPointD(x1, x2);
            ++nFound;
        }
    }
    mgr.m_bBathtub = 1;
    return nFound;
}

void SetShootCheck(CPlotvane_Manager& mgr, const CChartPointDArray& set, int nType, double dLevel,
                   double dLimitMV)
{
    mgr.m_strMeasureNet = Upper(set.m_strName);
    mgr.m_nMeasureType = nType;
    mgr.m_dMeasureLevel = dLevel;
    mgr.m_dMeasureLimit = dLimitMV;
    mgr.m_dMeasuredValue = (nType == 0 ? set.GetMaxY() - dLevel : dLevel - set.GetMinY()) * 1000.0;
    mgr.m_dMeasureMargin = mgr.m_dMeasureLimit - mgr.m_dMeasuredValue;
}

// The largest excursion beyond the level over the waveform's eye lines, X in
// ns and Y in mV for the search, V-ns out.
double AreaAbove(const CChartPointDArray& set, double dLevel)
{
    double dArea = 0.0;
    set.GetMaxAreaAboveYValueWithExtractEyeLinePoints(1e9, 1000.0, set.GetMinX(), set.GetMaxX(),
                                                      dLevel, dArea);
    return dArea;
}

void SetOvershootAreaCheck(CPlotvane_Manager& mgr, const CChartPointDArray& set, double dLevel,
                           double dAllowedVns)
{
    mgr.m_strMeasureNet = Upper(set.m_strName);
    mgr.m_nMeasureType = 1;
    mgr.m_dMeasureLevel = dLevel;
    mgr.m_dMeasureLimit = 0.0;
    mgr.m_dMeasureMargin = dAllowedVns - AreaAbove(set, dLevel);
}

int DiffCrossings(const DiffPair& p, double& yA, double& yB)
{
    const CChartPointDArray* band = p.t->GetMaxY() > p.c->GetMaxY() ? p.c : p.t;
    const double hi = band->GetMaxY(), lo = band->GetMinY(), d = (hi - lo) * 0.3;
    yA = yB = 0.0;
    return p.t->GetDataCrossMinMaxYValueByPointArray(p.c, lo + d, hi - d, 1e9, 1000.0, yA, yB);
}

double VixMV(const DiffPair& p, double dVref)
{
    double yA = 0.0, yB = 0.0;
    DiffCrossings(p, yA, yB);
    return std::max(std::fabs(dVref - yA), std::fabs(dVref - yB)) * 1000.0;
}

double VidMV(const DiffPair& p)
{
    return std::max(std::fabs(p.t->GetMaxY() - p.c->GetMinY()),
                    std::fabs(p.c->GetMaxY() - p.t->GetMinY())) *
           1000.0;
}

void NameDiffPair(CPlotvane_Manager& mgr, const DiffPair& p)
{
    mgr.m_strMeasureNet2 = Upper(p.t->m_strNetName) + "/" + Upper(p.c->m_strNetName);
    mgr.m_strMeasureNet = Upper(p.t->m_strName) + "," + Upper(p.c->m_strName);
}

void SetVixCheck(CPlotvane_Manager& mgr, const DiffPair& p, double dVdd, double dLimitMV)
{
    NameDiffPair(mgr, p);
    mgr.m_nMeasureType = 5;
    mgr.m_dVIXLevel = dVdd;
    mgr.m_dMeasureMargin = dLimitMV - VixMV(p, dVdd / 2);
}

void SetVidCheck(CPlotvane_Manager& mgr, const DiffPair& p, double dMinMV)
{
    NameDiffPair(mgr, p);
    mgr.m_nMeasureType = 6;
    mgr.m_dMeasureMargin = VidMV(p) - dMinMV;
}

void SetTargetLimits(CPlotvane_Manager& mgr, const std::vector<TargetLimit>& limits)
{
    CTargetImpWithinFreqRangeArray arr;
    for (const TargetLimit& l : limits)
    {
        auto* rec = new CTargetImpWithinFreqRange;
        rec->m_strRefName = l.strRefName.c_str();
        rec->AddDataIndex(l.nIndex);
        for (const TargetStep& s : l.steps)
            rec->m_pLimitPoints->Add(new CPoint3D(s.dFrom, s.dTo, s.dOhm));
        if (!l.line.empty())
            rec->m_nLimitType = 1;
        for (const TargetPoint& p : l.line)
        {
            CPointD q(p.dHz, p.dOhm);
            rec->m_pLimitLine1->Add(q);
        }
        arr.Add(rec);
    }
    mgr.m_InputData.SetTargetImpedanceData(&arr);
    mgr.m_nFreqDomainMode = 2;
    mgr.m_bUseMagnitude = 1;
    mgr.m_bTargetImpedance = 1;
}

double FirstRise(const CChartPointDArray& set, double dLevel)
{
    CArrayD rising, falling;
    set.GetXValArrayMeetYThreshold(kScaleT, kScaleV, dLevel, set.GetMinX(), set.GetMaxX(), rising,
                                   falling);
    return rising.GetSize() > 0 ? rising[0] : NAN;
}

bool SetFlightTime(CPlotvane_Manager& mgr, const CChartPointDArray& driver,
                   const CChartPointDArray& receiver, double dDriverLevel, double dReceiverLevel)
{
    const double x1 = FirstRise(driver, dDriverLevel);
    const double x2 = FirstRise(receiver, dReceiverLevel);
    if (std::isnan(x1) || std::isnan(x2))
        return false;
    mgr.m_dFlightTimeX1 = x1;
    mgr.m_dFlightTimeX2 = x2;
    mgr.m_dFlightTimeLevel1 = dDriverLevel;
    mgr.m_dFlightTimeLevel2 = dReceiverLevel;
    return true;
}

// The peak is searched in a window a little larger than the waveform (in
// the search's scaled units), so that no edge of the window stands in for
// it; it is then one of the samples.
int PeakIndex(const CChartPointDArray& set, bool bNegative)
{
    if (set.GetSize() == 0)
        return -1;
    CPointD pos, neg;
    int bPos = 0, bNeg = 0;
    const double m = 0.1 * (set.GetMaxY() - set.GetMinY());
    set.GetPosiNegaPeakInCertainArea(kScaleT, kScaleV, set.GetMinX() * kScaleT,
                                     (set.GetMaxY() + m) * kScaleV, set.GetMaxX() * kScaleT,
                                     (set.GetMinY() - m) * kScaleV, pos, neg, bPos, bNeg);
    if (!(bNegative ? bNeg : bPos))
        return -1;
    const double x = bNegative ? neg.x : pos.x;
    int index = 0;
    for (INT_PTR k = 1; k < set.GetSize(); ++k)
        if (std::fabs(set.GetPointX(k) * kScaleT - x) <
            std::fabs(set.GetPointX(index) * kScaleT - x))
            index = int(k);
    return index;
}

bool SetTdrMarks(CPlotvane_Manager& mgr, const CChartPointDArray& set, double dRefT, double dLow,
                 double dHigh)
{
    double zMin = 0, zMax = 0;
    if (!set.GetCrossMinMaxYValue(dRefT, dLow, dHigh, kScaleT, 1.0, zMin, zMax))
        return false;
    int nPeak = -1;
    double zPeak = 0.0;
    set.GetMaxpoint(nPeak, zPeak);
    mgr.m_bTDRImpedance = 1;
    mgr.m_dTDRLevel1 = zMin;
    mgr.m_dTDRLevel2 = zPeak;
    mgr.m_dTargetImpedanceFreq = nPeak >= 0 ? set.GetPointX(nPeak) : 0.0;
    mgr.m_dTargetImpedanceValue = zPeak;
    return true;
}

bool SetDfeMark(CPlotvane_Manager& mgr, const CChartPointDArray& set, double dNyquist,
                double dBudgetDb, double dLow, double dHigh)
{
    double lo = 0, hi = 0;
    if (!set.GetCrossMinMaxYValue(dNyquist, dLow, dHigh, 1e-6, 1e3, lo, hi))
        return false;
    mgr.m_nFreqDomainMode = 1;
    mgr.m_bDFEPFreqDomain = 1;
    mgr.m_dDFEPLevel = dBudgetDb;
    mgr.m_ptDFEP = CPointD(dNyquist, lo);
    return true;
}

} // namespace plotvane
