#include <plotvane/document/Plotvane_InputData.h>

#include <plotvane/dialogs/Plotvane_Dlg.h>
#include <plotvane/document/AxisAttribute.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/document/TargetImp.h>
#include <plotvane/foundation/Dec.h>
#include <plotvane/measure/EyeRotation.h>
#include <plotvane/view/GLChartView.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <utility>

double CPlotvane_InputData::m_dViewScaleX = 100.0;
double CPlotvane_InputData::m_dViewScaleY = 100.0;
CPlotvane_InputData* CPlotvane_InputData::m_pInputData = nullptr;

namespace
{
// A scale step of the view: the view scale starts at 100 and moves by powers
// of ten so that a data range of any size lands in a range that renders well
// in single precision. Answers whether the scale left 100.
bool ChooseViewScale(double dRange, double& dScale)
{
    dScale = 100.0;
    const int d = plotvane::dec(dRange);
    if (d < 2)
    {
        if (d == 1)
            dScale *= 100.0;
        else
            dScale *= std::pow(10.0, std::abs(d));
        return true;
    }
    if (d > 6)
    {
        dScale = std::pow(10.0, d - 2);
        return true;
    }
    return false;
}

// A logarithmic Y axis counts whole decades: the top is the decade above the
// largest value and the bottom the decade at or below the smallest.
void ToMagnitudeDecades(double dMaxY, double dMinY, double& dTop, double& dBottom)
{
    dTop = std::trunc(log10f(float(dMaxY))) + 1.0;
    dBottom = std::floor(log10f(float(dMinY)));
}

// A flat range would give an empty rectangle: open it to two units.
void OpenFlatRect(CRectF& rc)
{
    if (rc.height == 0.0f)
    {
        rc.y += 1.0f;
        rc.height = 2.0f;
    }
    if (rc.width == 0.0f)
    {
        rc.x += 1.0f;
        rc.width = 2.0f;
    }
}

// The tight margin: 15 % above and below, and room on the left for the value
// texts. The arithmetic mixes float and double exactly as the view has always
// fitted charts, so that stored zoom states keep their meaning.
void ApplyTightMargin(CRectF& rc)
{
    rc.Inflate(0.0f, rc.height * 0.29999995f * 0.5f);
    const float x = rc.Left() + rc.width / 10.0f;
    const float t = rc.height / 10.0f;
    rc.width = float(rc.width + std::fabs(x));
    rc.width = float(rc.width + std::fabs(x * 0.5));
    rc.Offset(float(-(x * 0.25 + x)), float(-std::fabs(t * 0.5)));
}

struct Extents
{
    double dMaxX = -DBL_MAX;
    double dMaxY = -DBL_MAX;
    double dMinX = DBL_MAX;
    double dMinY = DBL_MAX;

    void Fold(const CChartPointDArray& s)
    {
        dMaxX = std::max(dMaxX, s.GetMaxX());
        dMaxY = std::max(dMaxY, s.GetMaxY());
        dMinX = std::min(dMinX, s.GetMinX());
        dMinY = std::min(dMinY, s.GetMinY());
    }
};
} // namespace

CPlotvane_InputData::CPlotvane_InputData()
{
    m_pInputData = this;
}

CPlotvane_InputData& CPlotvane_InputData::operator=(const CPlotvane_InputData& o)
{
    if (this == &o)
        return *this;
    m_arrChartData = o.m_arrChartData;
    m_nCurrentEditSet = o.m_nCurrentEditSet;
    m_DrawSet = o.m_DrawSet;
    m_dMaxX = o.m_dMaxX;
    m_dMinX = o.m_dMinX;
    m_dMaxY = o.m_dMaxY;
    m_dMinY = o.m_dMinY;
    m_nSelectRow = o.m_nSelectRow;
    m_nSortStateX = o.m_nSortStateX;
    m_nSortStateY = o.m_nSortStateY;
    m_nInputState = o.m_nInputState;
    return *this;
}

CPlotvane_InputData::~CPlotvane_InputData()
{
    // Any store going away clears the shared pointer; the view sets it again
    // at its next left button press.
    m_pInputData = nullptr;
    m_arrChartData.DeleteAll();
    delete m_pTargetImpArray;
}

bool CPlotvane_InputData::operator==(const CPlotvane_InputData& o) const
{
    // The scales are statics, so comparing them with themselves only tests
    // that they are numbers.
    return m_arrChartData == o.m_arrChartData && m_nCurrentEditSet == o.m_nCurrentEditSet &&
           m_DrawSet == o.m_DrawSet && m_dMaxX == o.m_dMaxX && m_dMinX == o.m_dMinX &&
           m_dMaxY == o.m_dMaxY && m_dMinY == o.m_dMinY && m_nSelectRow == o.m_nSelectRow &&
           m_nSortStateX == o.m_nSortStateX && m_nSortStateY == o.m_nSortStateY &&
           m_nInputState == o.m_nInputState && m_dViewScaleX == m_dViewScaleX &&
           m_dViewScaleY == m_dViewScaleY;
}

void CPlotvane_InputData::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar << m_nVersion;
        m_arrChartData.Serialize(ar);
        ar << m_nCurrentEditSet;
        m_DrawSet.Serialize(ar);
        ar << m_dMaxX << m_dMinX << m_dMaxY << m_dMinY << m_nSelectRow << m_nSortStateX
           << m_nSortStateY << m_nInputState << m_dViewScaleX << m_dViewScaleY;
        return;
    }
    int nVersion = 0;
    ar >> nVersion;
    if (nVersion != 1)
        return;
    m_arrChartData.Serialize(ar);
    ar >> m_nCurrentEditSet;
    m_DrawSet.Serialize(ar);
    ar >> m_dMaxX >> m_dMinX >> m_dMaxY >> m_dMinY >> m_nSelectRow >> m_nSortStateX >>
        m_nSortStateY >> m_nInputState >> m_dViewScaleX >> m_dViewScaleY;
}

// ---- helpers

CChartPointDArray& CPlotvane_InputData::EditSet()
{
    return *m_arrChartData.ElementAt(m_nCurrentEditSet);
}

bool CPlotvane_InputData::IsMagnitudeLogAxis() const
{
    return m_pChartMgr && m_pChartMgr->m_bUseMagnitude && m_pChartMgr->m_nMagnitudeScale == 1;
}

int CPlotvane_InputData::IsFrequencyLogAxis() const
{
    return m_pChartMgr && m_pChartMgr->m_nFrequencyScale == 1;
}

void CPlotvane_InputData::StoreViewArea(const CRectF& rc)
{
    if (m_pChartDlg && m_pChartDlg->GetGLChartView())
        m_pChartDlg->GetGLChartView()->m_rcViewArea = rc;
}

// ---- sets

int CPlotvane_InputData::AddNewDataSet()
{
    return int(m_arrChartData.Add(new CChartPointDArray));
}

unsigned long long CPlotvane_InputData::AddNewDataSet(int n)
{
    for (int k = 0; k < n; ++k)
        m_DrawSet.Add(int(m_arrChartData.Add(new CChartPointDArray)));
    return GetDataSetSize();
}

void CPlotvane_InputData::DeleteDataSet(int i)
{
    m_arrChartData.DeleteAt(i);
}

int CPlotvane_InputData::GetDataSize(int i) const
{
    const CChartPointDArray* p = m_arrChartData.GetAt(i);
    return p ? int(p->GetSize()) : 0;
}

CString CPlotvane_InputData::GetCurrentSetName()
{
    return EditSet().m_strName;
}

void CPlotvane_InputData::SetCurrentEditSetName(CString str)
{
    EditSet().m_strName = str;
}

void CPlotvane_InputData::SetGraphColor(CColor color)
{
    EditSet().m_Color = color;
}

void CPlotvane_InputData::SetLineWidth(double d)
{
    if (CChartPointDArray* p = m_arrChartData.GetAt(m_nCurrentEditSet))
        p->m_dLineWidth = d;
}

void CPlotvane_InputData::SetDrawCurveGraph(int n)
{
    if (CChartPointDArray* p = m_arrChartData.GetAt(m_nCurrentEditSet))
        p->m_nCurve = n;
}

void CPlotvane_InputData::SetTargetImpedanceData(CTargetImpWithinFreqRangeArray* p)
{
    if (!m_pTargetImpArray)
        m_pTargetImpArray = new CTargetImpWithinFreqRangeArray;
    *m_pTargetImpArray = *p;
}

// ---- draw set

void CPlotvane_InputData::RemoveDrawDataSetByValue(int v)
{
    for (INT_PTR i = m_DrawSet.GetSize(); i-- > 0;)
        if (m_DrawSet.GetData()[i] == v)
            m_DrawSet.RemoveAt(i);
}

void CPlotvane_InputData::SelectAllDrawDataSet()
{
    for (INT_PTR i = 0; i < m_arrChartData.GetSize(); ++i)
        m_DrawSet.Add(int(i));
}

void CPlotvane_InputData::GetDrawlDataSetIndexArray(CArrayN& arr) const
{
    for (int i : m_DrawSet)
        arr.Add(i);
}

// ---- points of the edit set

void CPlotvane_InputData::AddData(double x, double y)
{
    // The smallest exponent seen decides the axis unit; values below 1e-18
    // are noise from the solvers and are stored as 0.
    const int nDecX = plotvane::dec(x);
    if (m_pAttribute && nDecX < 2 && nDecX < m_pAttribute->m_XAxis.m_nMinExponent)
        m_pAttribute->m_XAxis.m_nMinExponent = nDecX;
    const int nDecY = plotvane::dec(y);
    const double y2 = nDecY < -18 ? 0.0 : y;
    if (m_pAttribute && nDecY < 2 && nDecY < m_pAttribute->m_YAxis.m_nMinExponent)
        m_pAttribute->m_YAxis.m_nMinExponent = nDecY;

    // A logarithmic magnitude axis can't show a zero.
    if (IsMagnitudeLogAxis() && y2 == 0.0)
        return;
    CChartPointDArray& set = EditSet();
    set.Add(new CChartPointD(nDecX < -18 ? 0.0 : x, y2));
}

namespace
{
// The smallest decimal exponent (plotvane::dec) of a run of values, found
// without taking it of each: dec grows with the magnitude, so the smallest
// non-zero magnitude decides, with 0 for a zero and 1 for a non-finite
// value, as dec answers for those.
class MinExponent
{
public:
    void Add(double v)
    {
        const double a = std::fabs(v);
        if (v == 0.0)
            m_bZero = true;
        else if (!std::isfinite(v))
            m_bNonFinite = true;
        else if (a < m_dMinAbs)
            m_dMinAbs = a;
    }
    // false when no value was added.
    bool Get(int& nDec) const
    {
        bool bAny = false;
        nDec = INT_MAX;
        if (m_dMinAbs != HUGE_VAL)
        {
            nDec = plotvane::dec(m_dMinAbs);
            bAny = true;
        }
        if (m_bZero)
        {
            nDec = std::min(nDec, 0);
            bAny = true;
        }
        if (m_bNonFinite)
        {
            nDec = std::min(nDec, 1);
            bAny = true;
        }
        return bAny;
    }

private:
    double m_dMinAbs = HUGE_VAL;
    bool m_bZero = false;
    bool m_bNonFinite = false;
};

// AddData's noise floor: a value whose exponent is below -18 is stored as
// 0. Every magnitude of 1e-19 or more has an exponent of -18 or more, so
// only smaller ones need the exponent.
double BelowNoiseToZero(double v)
{
    return std::fabs(v) < 1e-19 && plotvane::dec(v) < -18 ? 0.0 : v;
}
} // namespace

void CPlotvane_InputData::AddDataBlock(const double* xs, const double* ys, size_t n)
{
    if (n == 0)
        return;
    const bool bDropZeroY = IsMagnitudeLogAxis();
    CChartPointDArray& set = EditSet();
    MinExponent minX, minY;
    for (size_t i = 0; i < n; ++i)
    {
        minX.Add(xs[i]);
        minY.Add(ys[i]);
        const double y = BelowNoiseToZero(ys[i]);
        if (bDropZeroY && y == 0.0)
            continue;
        set.Add(new CChartPointD(BelowNoiseToZero(xs[i]), y));
    }
    // Taking the smallest exponent once is what the per-point updates of
    // AddData come to.
    int nDec = 0;
    if (m_pAttribute && minX.Get(nDec) && nDec < 2 && nDec < m_pAttribute->m_XAxis.m_nMinExponent)
        m_pAttribute->m_XAxis.m_nMinExponent = nDec;
    if (m_pAttribute && minY.Get(nDec) && nDec < 2 && nDec < m_pAttribute->m_YAxis.m_nMinExponent)
        m_pAttribute->m_YAxis.m_nMinExponent = nDec;
}

int CPlotvane_InputData::AddData(double x, CArrayD* ys)
{
    const INT_PTR n = m_arrChartData.GetSize();
    if (ys->GetSize() != n)
        return 0;
    for (INT_PTR i = 0; i < n; ++i)
    {
        SetCurrentEditSet(int(i));
        AddData(x, ys->GetData()[i]);
    }
    return 1;
}

int CPlotvane_InputData::AddData(CArrayD* xs, double y)
{
    const INT_PTR n = m_arrChartData.GetSize();
    if (xs->GetSize() != n)
        return 0;
    for (INT_PTR i = 0; i < n; ++i)
    {
        SetCurrentEditSet(int(i));
        AddData(xs->GetData()[i], y);
    }
    return 1;
}

int CPlotvane_InputData::AddData(CArrayD* xs, CArrayD* ys)
{
    const INT_PTR n = m_arrChartData.GetSize();
    if (xs->GetSize() != n || ys->GetSize() != n)
        return 0;
    for (INT_PTR i = 0; i < n; ++i)
    {
        SetCurrentEditSet(int(i));
        AddData(xs->GetData()[i], ys->GetData()[i]);
    }
    return 1;
}

void CPlotvane_InputData::InsertData(int i, double x, double y)
{
    // Hand-typed points: only negative exponents count, nothing is clamped
    // or dropped, and the store must be wired to its attribute.
    const int nDecX = plotvane::dec(x);
    if (nDecX < 0 && nDecX < m_pAttribute->m_XAxis.m_nMinExponent)
        m_pAttribute->m_XAxis.m_nMinExponent = nDecX;
    const int nDecY = plotvane::dec(y);
    if (nDecY < 0 && nDecY < m_pAttribute->m_YAxis.m_nMinExponent)
        m_pAttribute->m_YAxis.m_nMinExponent = nDecY;
    CChartPointDArray& set = EditSet();
    auto p = std::make_unique<CChartPointD>(x, y);
    set.InsertAt(i, p.get());
    p.release();
}

void CPlotvane_InputData::ModifyData(int i, double x, double y)
{
    if (m_nSelectRow >= 0)
        EditSet().Modify(i, x, y);
}

// DeleteData and ClearAllData drop the pointers without deleting the points:
// the data dialog has always used them this way, and the points stay
// allocated until the process ends (they come from the sample pool, which
// gets a chunk back only when all its blocks are freed).
void CPlotvane_InputData::DeleteData(int i)
{
    EditSet().RemoveAt(i);
}

void CPlotvane_InputData::ClearAllData()
{
    EditSet().RemoveAll();
}

void CPlotvane_InputData::MulitplyDataSet(int k)
{
    EditSet().Multiply(double(k));
}

double CPlotvane_InputData::GetDataX(int i)
{
    const CChartPointD* p = EditSet().GetAt(i);
    return p ? p->X : 0.0;
}

double CPlotvane_InputData::GetDataY(int i)
{
    const CChartPointD* p = EditSet().GetAt(i);
    return p ? p->Y : 0.0;
}

namespace
{
// The exchange sort of the data dialog: state 0 becomes 1 (ascending) at the
// first comparison, 2 sorts descending; the state is not toggled here.
template <class KEY> void ExchangeSort(CChartPointDArray& set, int& nState, KEY key)
{
    const INT_PTR n = set.GetSize();
    CChartPointD** p = set.GetData();
    for (INT_PTR i = 0; i < n; ++i)
        for (INT_PTR j = i + 1; j < n; ++j)
        {
            if (nState == 0)
                nState = 1;
            if ((nState == 1 && key(p[i]) > key(p[j])) || (nState == 2 && key(p[j]) > key(p[i])))
                std::swap(p[i], p[j]);
        }
}
} // namespace

void CPlotvane_InputData::SortArrayX()
{
    ExchangeSort(EditSet(), m_nSortStateX, [](const CChartPointD* p) { return p->X; });
}

void CPlotvane_InputData::SortArrayY()
{
    ExchangeSort(EditSet(), m_nSortStateY, [](const CChartPointD* p) { return p->Y; });
}

// ---- extents

void CPlotvane_InputData::FindMaxAndMin()
{
    if (!m_pChartMgr)
        return;
    const bool bMagLog = IsMagnitudeLogAxis();
    Extents e;
    for (INT_PTR i = 0; i < m_arrChartData.GetSize(); ++i)
    {
        if (!m_DrawSet.IsExist(int(i)) && m_bIncludeUndrawnSets != 1)
            continue;
        const CChartPointDArray& set = *m_arrChartData.GetData()[i];
        if (bMagLog && set.IsExistZeroValueY() == 1)
            continue;
        e.Fold(set);
    }

    if (ChooseViewScale((e.dMaxX - e.dMinX) * 100.0, m_dViewScaleX))
        m_pChartMgr->m_bViewScaleChanged = 1;
    if (ChooseViewScale((e.dMaxY - e.dMinY) * 100.0, m_dViewScaleY))
        m_pChartMgr->m_bViewScaleChanged = 1;

    m_dMaxX = e.dMaxX * m_dViewScaleX;
    m_dMaxY = e.dMaxY * m_dViewScaleY;
    m_dMinX = e.dMinX * m_dViewScaleX;
    m_dMinY = e.dMinY * m_dViewScaleY;
    if (bMagLog)
        ToMagnitudeDecades(e.dMaxY, e.dMinY, m_dMaxY, m_dMinY);

    CRectF rc;
    rc.SetData(float(m_dMinX), float(m_dMinY), float(m_dMaxX), float(m_dMaxY));
    OpenFlatRect(rc);
    if (m_bFitMarginTight == 0)
        rc.Inflate(140.0f);
    else
        ApplyTightMargin(rc);
    StoreViewArea(rc);
}

void CPlotvane_InputData::FindMaxAndMin_Log()
{
    if (!m_pChartMgr)
        return;
    const bool bMagLog = IsMagnitudeLogAxis();
    Extents e;
    for (INT_PTR i = 0; i < m_arrChartData.GetSize(); ++i)
    {
        if (!m_DrawSet.IsExist(int(i)))
            continue;
        const CChartPointDArray& set = *m_arrChartData.GetData()[i];
        if (bMagLog && set.IsExistZeroValueY() == 1)
            continue;
        e.Fold(set);
        // A point at zero frequency must not pull the axis to minus infinity.
        if (e.dMinX == 0.0 && set.GetSize() >= 2 && set.GetPointX(0) == 0.0 &&
            set.GetPointX(1) > 1.0)
            e.dMinX = 1.0;
    }

    if (ChooseViewScale(e.dMaxX - e.dMinX, m_dViewScaleX))
        m_pChartMgr->m_bViewScaleChanged = 1;
    if (ChooseViewScale((e.dMaxY - e.dMinY) * 100.0, m_dViewScaleY))
        m_pChartMgr->m_bViewScaleChanged = 1;

    m_dMaxX = std::ceil(log10f(float(e.dMaxX)));
    m_dMinX = std::trunc(log10f(float(e.dMinX)));
    m_dMaxY = e.dMaxY * m_dViewScaleY;
    m_dMinY = e.dMinY * m_dViewScaleY;
    if (bMagLog)
        ToMagnitudeDecades(e.dMaxY, e.dMinY, m_dMaxY, m_dMinY);

    CRectF rc;
    rc.SetData(float(m_dMinX), float(m_dMinY), float(m_dMaxX), float(m_dMaxY));
    OpenFlatRect(rc);
    rc.Inflate(125.0f);
    rc.Offset(-rc.width / 25.0f, -rc.height / 35.0f);
    StoreViewArea(rc);
}

void CPlotvane_InputData::GetMaxAndMin()
{
    switch (m_pAttribute->m_nRangeMode)
    {
    case 0:
        FindMaxAndMin();
        break;
    case 1:
        FindMaxAndMin();
        m_dMinX = 0.0;
        m_dMinY = 0.0;
        break;
    case 2:
        for (CAxisAttribute* pAxis : {&m_pAttribute->m_XAxis, &m_pAttribute->m_YAxis})
        {
            if (pAxis->m_dStartPoint == pAxis->m_dEndPoint)
                pAxis->m_dEndPoint += 10.0;
            if (pAxis->m_dStartPoint > pAxis->m_dEndPoint)
                std::swap(pAxis->m_dStartPoint, pAxis->m_dEndPoint);
        }
        m_dMinX = m_pAttribute->m_XAxis.m_dStartPoint * m_dViewScaleX;
        m_dMaxX = m_pAttribute->m_XAxis.m_dEndPoint * m_dViewScaleX;
        m_dMinY = m_pAttribute->m_YAxis.m_dStartPoint * m_dViewScaleY;
        m_dMaxY = m_pAttribute->m_YAxis.m_dEndPoint * m_dViewScaleY;
        break;
    default:
        break;
    }
}

void CPlotvane_InputData::CalcMaxAndMin()
{
    // The maxima start at 0 and the minima at set 0, in data units.
    if (m_arrChartData.IsEmpty())
        return;
    const CChartPointDArray& first = *m_arrChartData.GetData()[0];
    double dMaxX = 0.0, dMaxY = 0.0;
    double dMinX = first.GetMinX(), dMinY = first.GetMinY();
    for (const CChartPointDArray* p : m_arrChartData)
    {
        dMaxX = std::max(dMaxX, p->GetMaxX());
        dMaxY = std::max(dMaxY, p->GetMaxY());
        dMinX = std::min(dMinX, p->GetMinX());
        dMinY = std::min(dMinY, p->GetMinY());
    }
    m_dMaxX = dMaxX;
    m_dMaxY = dMaxY;
    m_dMinX = dMinX;
    m_dMinY = dMinY;
}

void CPlotvane_InputData::AdjustMaxAndMin()
{
    // Each step sees the values that the steps before it changed.
    m_dMinX -= (m_dMaxX - m_dMinX) / 100.0;
    m_dMinY -= (m_dMaxY - m_dMinY) / 100.0;
    m_dMaxX += (m_dMaxX - m_dMinX) / 100.0;
    m_dMaxY += (m_dMaxY - m_dMinY) / 100.0;
}

int CPlotvane_InputData::IsEnableDraw()
{
    // The walk steps on after a deletion, so the set that moved into the
    // freed place waits for the next call, and the draw set is not
    // renumbered.
    for (INT_PTR i = 0; i < m_arrChartData.GetSize(); ++i)
    {
        CChartPointDArray* p = m_arrChartData.GetData()[i];
        if (p->GetSize() < 2)
        {
            m_arrChartData.DeleteAt(int(i));
            RemoveDrawDataSetByValue(int(i));
        }
    }
    return m_DrawSet.GetSize() > 0 ? 1 : 0;
}

// ---- neighbour searches

namespace
{
// The point with the largest X not above v (bUnder) or the smallest X not
// below v, X taken times dScaleX. Of equal X the last one wins. x and y are
// written in data units, and only when a point qualifies.
void FindNeighbour(const CChartPointDArray& set, double v, double dScaleX, bool bUnder, double& x,
                   double& y)
{
    const CChartPointD* const* p = set.GetData();
    const INT_PTR n = set.GetSize();
    const CChartPointD* pKept = nullptr;
    double dKept = 0.0;
    for (INT_PTR i = 0; i < n; ++i)
    {
        const double dX = p[i]->X * dScaleX;
        const bool bQualifies = bUnder ? v + 1e-6 > dX : dX + 1e-6 > v;
        if (!bQualifies)
            continue;
        if (!pKept || (bUnder ? dX + 1e-6 > dKept : dKept + 1e-6 > dX))
        {
            pKept = p[i];
            dKept = dX;
        }
    }
    if (pKept)
    {
        x = pKept->X;
        y = pKept->Y;
    }
}
} // namespace

void CPlotvane_InputData::GetMaxXValueUnderSetValue(int nSet, double v, double& x, double& y)
{
    if (const CChartPointDArray* p = m_arrChartData.GetAt(nSet))
        FindNeighbour(*p, v, m_dViewScaleX, true, x, y);
}

void CPlotvane_InputData::GetMaxXValueUnderSetValue_Log(int nSet, double v, double& x, double& y)
{
    if (const CChartPointDArray* p = m_arrChartData.GetAt(nSet))
        FindNeighbour(*p, v, 1.0, true, x, y);
}

void CPlotvane_InputData::GetMinXValueOverSetValue(int nSet, double v, double& x, double& y)
{
    if (const CChartPointDArray* p = m_arrChartData.GetAt(nSet))
        FindNeighbour(*p, v, m_dViewScaleX, false, x, y);
}

void CPlotvane_InputData::GetMinXValueOverSetValue_Log(int nSet, double v, double& x, double& y)
{
    if (const CChartPointDArray* p = m_arrChartData.GetAt(nSet))
        FindNeighbour(*p, v, 1.0, false, x, y);
}

// ---- interpolation

int CPlotvane_InputData::GetYInterpolationValue(int nSet, double x, double& y)
{
    if (!m_pChartMgr)
        return 0;
    if (IsFrequencyLogAxis())
        return GetYInterpolationValue_Log(nSet, x, y);
    const CChartPointDArray* p = m_arrChartData.GetAt(nSet);
    if (!p || p->IsEmpty())
        return 0;
    if (x < p->GetMinX() * m_dViewScaleX || x > p->GetMaxX() * m_dViewScaleX)
        return 0;
    double x0 = 0.0, y0 = 0.0, x1 = 0.0, y1 = 0.0;
    GetMaxXValueUnderSetValue(nSet, x, x0, y0);
    GetMinXValueOverSetValue(nSet, x, x1, y1);
    // At a sample both neighbours are that sample, and the quotient is not
    // a number; cursor code has always lived with it.
    const double vx0 = x0 * m_dViewScaleX, vx1 = x1 * m_dViewScaleX;
    const double vy0 = y0 * m_dViewScaleY, vy1 = y1 * m_dViewScaleY;
    y = vy0 + (vy1 - vy0) * (x - vx0) / (vx1 - vx0);
    return 1;
}

int CPlotvane_InputData::GetYInterpolationValue_Log(int nSet, double x, double& y)
{
    if (!m_pChartMgr)
        return 0;
    const CChartPointDArray* p = m_arrChartData.GetAt(nSet);
    if (!p || p->IsEmpty())
        return 0;
    const double xd = std::pow(10.0, x);
    if (xd < p->GetMinX() || xd > p->GetMaxX())
        return 0;
    double x0 = 0.0, y0 = 0.0, x1 = 0.0, y1 = 0.0;
    GetMaxXValueUnderSetValue_Log(nSet, xd, x0, y0);
    GetMinXValueOverSetValue_Log(nSet, xd, x1, y1);
    const double dScaleY = IsMagnitudeLogAxis() ? 1.0 : m_dViewScaleY;
    y = (y0 + (y1 - y0) * (xd - x0) / (x1 - x0)) * dScaleY;
    return 1;
}

namespace
{
// Appends, for each neighbouring pair of the X-sorted samples that y lies
// strictly between, the X where the straight line between them meets y.
void CollectCrossings(const CArrayD& xs, const CArrayD& ys, double y, double dScaleX,
                      double dScaleY, CArrayD& out)
{
    const double* px = xs.GetData();
    const double* py = ys.GetData();
    for (INT_PTR i = 0; i + 1 < xs.GetSize(); ++i)
    {
        const double x0 = px[i] * dScaleX, x1 = px[i + 1] * dScaleX;
        const double y0 = py[i] * dScaleY, y1 = py[i + 1] * dScaleY;
        if ((y0 < y && y < y1) || (y1 < y && y < y0))
            out.Add(x0 + (x1 - x0) * std::fabs(y - y0) / std::fabs(y1 - y0));
    }
}
} // namespace

int CPlotvane_InputData::GetXInterpolationValue(int nSet, double y, CArrayD& xs)
{
    if (!m_pChartMgr)
        return 0;
    if (IsFrequencyLogAxis())
        return GetXInterpolationValue_Log(nSet, y, xs);
    const CChartPointDArray* p = m_arrChartData.GetAt(nSet);
    if (!p || p->IsEmpty())
        return 0;
    if (y < p->GetMinY() * m_dViewScaleY || y > p->GetMaxY() * m_dViewScaleY)
        return 0;
    CArrayD sortedX, sortedY;
    p->GetSortByXValueArray(sortedX, sortedY);
    CollectCrossings(sortedX, sortedY, y, m_dViewScaleX, m_dViewScaleY, xs);
    return 1;
}

int CPlotvane_InputData::GetXInterpolationValue_Log(int nSet, double y, CArrayD& xs)
{
    if (!m_pChartMgr)
        return 0;
    const CChartPointDArray* p = m_arrChartData.GetAt(nSet);
    if (!p || p->IsEmpty())
        return 0;
    // On a magnitude axis y is a decade and the walk runs on raw Y.
    double dScaleY = m_dViewScaleY;
    if (IsMagnitudeLogAxis())
    {
        y = std::pow(10.0, y);
        dScaleY = 1.0;
    }
    if (y < p->GetMinY() * dScaleY || y > p->GetMaxY() * dScaleY)
        return 0;
    CArrayD sortedX, sortedY;
    p->GetSortByXValueArray(sortedX, sortedY);
    CollectCrossings(sortedX, sortedY, y, 1.0, dScaleY, xs);
    return 1;
}

void CPlotvane_InputData::ShiftChartDataOnXAxisToLeftSideOnly(double dShift, double dPeriod)
{
    plotvane::ShiftEyeSetsToLeft(m_arrChartData, dShift, dPeriod);
}
