#include <plotvane/measure/ChartPointDArray.h>

#include <plotvane/measure/ChartPointDArrayArray.h>
#include <plotvane/measure/EyeRotation.h>

#include <cmath>
#include <vector>

namespace
{
// Drops the elements of pLines that are too short to be an eye line. Their
// points belong to another array, so they are forgotten, not deleted.
void DropShortLines(CChartPointDArrayArray* pLines, INT_PTR nMinPoints)
{
    CChartPointDArray** pp = pLines->GetData();
    const INT_PTR n = pLines->GetSize();
    INT_PTR nKept = 0;
    for (INT_PTR i = 0; i < n; ++i)
    {
        CChartPointDArray* pLine = pp[i];
        if (pLine->GetSize() < nMinPoints)
        {
            pLine->SetSize(0);
            delete pLine;
        }
        else
            pp[nKept++] = pLine;
    }
    pLines->SetSize(nKept);
}

CChartPointDArray* AddNewArray(CChartPointDArrayArray* pTo)
{
    CChartPointDArray* p = new CChartPointDArray;
    pTo->Add(p);
    return p;
}

// Whether a period runs from exactly 0 to exactly dPeriod, within the edge
// tolerance.
bool IsWholePeriod(const CChartPointDArray& period, double dPeriod, double dTol)
{
    if (period.IsEmpty())
        return false;
    const CChartPointD* const* pts = period.GetData();
    return std::fabs(pts[0]->X) <= dTol &&
           std::fabs(pts[period.GetSize() - 1]->X - dPeriod) <= dTol;
}

// Lowers the minimum and raises the maximum seeds with a search result;
// answers whether anything was replaced.
bool MergeCrossExtent(double dMinX, double dYAtMinX, double dMaxX, double dYAtMaxX,
                      double& dSeedMinX, double& dSeedYAtMinX, double& dSeedMaxX,
                      double& dSeedYAtMaxX)
{
    bool bReplaced = false;
    if (dMinX < dSeedMinX)
    {
        dSeedMinX = dMinX;
        dSeedYAtMinX = dYAtMinX;
        bReplaced = true;
    }
    if (dMaxX > dSeedMaxX)
    {
        dSeedMaxX = dMaxX;
        dSeedYAtMaxX = dYAtMaxX;
        bReplaced = true;
    }
    return bReplaced;
}
} // namespace

void CChartPointDArray::SetEyeInformation(double dVref, double dSetupTime, double dHoldTime,
                                          double dHoldLevel, double dSetupLevel, int nOneLevel)
{
    m_dEyeVref = dVref;
    m_dEyeSetupTime = dSetupTime;
    m_dEyeHoldTime = dHoldTime;
    m_dEyeHoldLevel = dHoldLevel;
    m_dEyeSetupLevel = dSetupLevel;
    m_nEyeOneLevel = nOneLevel;
}

void CChartPointDArray::SetEyeReadCycleTimeInfo(int nReadCycle, double d1, double d2)
{
    m_nReadCycle = nReadCycle;
    m_dReadCycleTime1 = d1;
    m_dReadCycleTime2 = d2;
}

// A line ends wherever X does not rise, so two samples of equal X end it too.
// The loop stops one short of the last sample, which therefore belongs to no
// line; the eye measures are calibrated on that.
void CChartPointDArray::ExtractEyeLinePointArray(CChartPointDArrayArray* pLines) const
{
    CChartPointDArray* pLine = AddNewArray(pLines);
    CChartPointD* const* pts = GetData();
    const INT_PTR n = GetSize();
    for (INT_PTR i = 0; i + 1 < n; ++i)
    {
        pLine->Add(pts[i]);
        if (pts[i]->X >= pts[i + 1]->X)
            pLine = AddNewArray(pLines);
    }
    // Lines too short to classify are of no use to the eye measures, whoever
    // put them into pLines.
    DropShortLines(pLines, 4);
}

// Periods are cut where X comes back from the far half of the range into the
// near half, not at every seam, so that a little back and forth near the
// ends does not split a period.
void CChartPointDArray::CollectWaveDataPerPeriod(CChartPointDArrayArray* pPeriods) const
{
    const INT_PTR n = GetSize();
    if (n == 0)
        return;
    const double dMinX = GetMinX();
    const double dMaxX = GetMaxX();
    CChartPointD* const* pts = GetData();
    CChartPointDArray* pPeriod = nullptr;
    bool bFar = false;
    for (INT_PTR i = 0; i < n; ++i)
    {
        const double x = pts[i]->X;
        if (std::fabs(x - dMaxX) <= std::fabs(x - dMinX))
        {
            if (i == 0)
                pPeriod = AddNewArray(pPeriods);
            bFar = true;
        }
        else
        {
            if (i == 0 || bFar)
                pPeriod = AddNewArray(pPeriods);
            bFar = false;
        }
        pPeriod->Add(pts[i]);
    }
}

// The periods own their points here. With more than two periods the running
// count c decides what is kept: the first and last periods are usually cut
// off by the rotation, and fragments in between are thrown away, but once c
// falls to 2 everything left is kept as it stands.
void CChartPointDArray::SerializeWaveDataFromEachPeriod(CChartPointDArrayArray* pPeriods,
                                                        double dPeriod)
{
    const double dTol = plotvane::PeriodEdgeTolerance();
    INT_PTR c = pPeriods->GetSize();
    if (c > 2)
    {
        bool bSkipFirst = false;
        CChartPointDArray* pLast = pPeriods->GetLastElement();
        if (pLast && pLast->GetSize() < 2)
        {
            pPeriods->DeleteLastElement();
            --c;
            bSkipFirst = c < 3;
        }
        CChartPointDArray* pFirst = pPeriods->GetAt(0);
        // An empty first period starts nowhere: it goes as a fragment.
        if (!bSkipFirst && pFirst && (pFirst->IsEmpty() || std::fabs(pFirst->GetPointX(0)) > dTol))
        {
            pPeriods->DeleteAt(0);
            --c;
        }
    }

    const INT_PTR nPeriods = pPeriods->GetSize();
    CChartPointDArray** pp = pPeriods->GetData();
    INT_PTR nTotal = GetSize();
    for (INT_PTR k = 0; k < nPeriods; ++k)
        nTotal += pp[k]->GetSize();
    Storage().reserve(size_t(nTotal));

    for (INT_PTR k = 0; k < nPeriods; ++k)
    {
        CChartPointDArray* pPeriod = pp[k];
        if (c > 2)
        {
            const bool bWhole =
                k != 0 && k != nPeriods - 1 && IsWholePeriod(*pPeriod, dPeriod, dTol);
            if (!bWhole)
            {
                pPeriod->DeleteAll();
                --c;
            }
        }
        Append(*pPeriod);
        pPeriod->SetSize(0);
    }
}

// Points pushed past the period come back by one period; the order of the
// points stays, so the seams move. X below 0 is left as it is.
void CChartPointDArray::ShiftEyeData(double dShift)
{
    const double dPeriod = m_dPeriod;
    for (CChartPointD* p : *this)
    {
        p->X += dShift;
        if (p->X > dPeriod)
            p->X -= dPeriod;
    }
}

// Pairs every rising line with every falling one (and the other way round)
// and widens the seeds with their crossings, separately in the first and
// the second half of the span.
int CChartPointDArray::GetMinMaxCrossPoint(double dY, double dTol, double& dMinX1,
                                           double& dYAtMinX1, double& dMaxX1, double& dYAtMaxX1,
                                           double& dMinX2, double& dYAtMinX2, double& dMaxX2,
                                           double& dYAtMaxX2) const
{
    const double dSpan = GetMaxX() - GetMinX();
    const double dMinY = GetMinY();
    const double dMaxY = GetMaxY();
    const double dHalf = dSpan * 0.5;

    CChartPointDArrayArray lines;
    ExtractEyeLinePointArray(&lines);
    const INT_PTR n = lines.GetSize();
    CChartPointDArray* const* pLines = lines.GetData();

    // The pulse type of a line does not change within the call.
    std::vector<int> types(static_cast<size_t>(n));
    for (INT_PTR i = 0; i < n; ++i)
        types[size_t(i)] = pLines[i]->GetPulseDataType(dMaxY, dMinY);

    int nResult = -1;
    for (INT_PTR i = 0; i < n; ++i)
    {
        const int t = types[size_t(i)];
        if (t != 1 && t != 2)
            continue;
        for (INT_PTR j = i + 1; j < n; ++j)
        {
            const int u = types[size_t(j)];
            if ((u != 1 && u != 2) || u == t)
                continue;
            double dMinX = 0.0, dMaxX = 0.0, dYAtMin = 0.0, dYAtMax = 0.0;
            if (pLines[i]->GetDataCrossMinMaxXValueByPointArray(pLines[j], dY, dTol, 0.0, dHalf,
                                                                1e9, 100.0, dMinX, dMaxX, dYAtMin,
                                                                dYAtMax, 0) &&
                MergeCrossExtent(dMinX, dYAtMin, dMaxX, dYAtMax, dMinX1, dYAtMinX1, dMaxX1,
                                 dYAtMaxX1))
                nResult = 1;
            if (pLines[i]->GetDataCrossMinMaxXValueByPointArray(pLines[j], dY, dTol, dHalf, dSpan,
                                                                1e9, 100.0, dMinX, dMaxX, dYAtMin,
                                                                dYAtMax, 0) &&
                MergeCrossExtent(dMinX, dYAtMin, dMaxX, dYAtMax, dMinX2, dYAtMinX2, dMaxX2,
                                 dYAtMaxX2))
                nResult = 1;
        }
    }
    lines.DataRemoveAll();
    return nResult;
}
