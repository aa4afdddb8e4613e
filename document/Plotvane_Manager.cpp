#include <plotvane/document/Plotvane_Manager.h>

#include <plotvane/document/ChartMarkers.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/view/GLChartView.h>

#include <algorithm>
#include <cfloat>
#include <cmath>

CPlotvane_Manager::CPlotvane_Manager()
{
    m_ChartDlg.SetCPlotvaneAttribute(&m_Attribute);
    m_ChartDlg.SetCPlotvaneInputData(&m_InputData);
    m_Attribute.SetCPlotvane_AttributeDlg(&m_AttributeDlg);
    m_AttributeDlg.SetCPlotvaneAttribute(&m_Attribute);
    m_AttributeDlg.SetCPlotvaneDlg(&m_ChartDlg);
    m_InputDataDlg.SetCPlotvaneInputData(&m_InputData);
    m_InputDataDlg.SetCPlotvaneDlg(&m_ChartDlg);
    m_InputData.SetCPlotvaneAttribute(&m_Attribute);
    m_InputData.SetCPlotvaneDlg(&m_ChartDlg);
    m_InputData.SetCPlotvaneInputData_Dlg(&m_InputDataDlg);
    m_InputData.SetChartMgr(this);
    m_ChartDlg.GetGLChartView()->SetCPlotvane_Manager(this);
    m_Attribute.m_XAxis.SetCPlotvaneMgr(this);
    m_Attribute.m_YAxis.SetCPlotvaneMgr(this);

    m_pClippingLineArray = new CChartClippingLineArray;
    m_pClippingBoxArray = new CChartClippingBoxArray;
    m_pEyeMaskRectArray = new CArrayRectD;
}

CPlotvane_Manager::~CPlotvane_Manager()
{
    m_pClippingLineArray->DeleteAll();
    delete m_pClippingLineArray;
    m_pClippingBoxArray->DeleteAll();
    delete m_pClippingBoxArray;
    m_pEyeMaskRectArray->DeleteAll();
    delete m_pEyeMaskRectArray;
    m_mapBathtub.clear();
}

CPlotvane_Manager& CPlotvane_Manager::operator=(const CPlotvane_Manager& o)
{
    if (this == &o)
        return *this;
    m_Attribute = o.m_Attribute;
    m_InputData = o.m_InputData;
    m_bApplyUnit = o.m_bApplyUnit;
    m_bViewScaleChanged = o.m_bViewScaleChanged;
    *m_pClippingLineArray = *o.m_pClippingLineArray;
    *m_pClippingBoxArray = *o.m_pClippingBoxArray;
    m_bClippingVertical = o.m_bClippingVertical;
    m_bClippingHorizontal = o.m_bClippingHorizontal;
    m_bClippingVerticalValue = o.m_bClippingVerticalValue;
    m_bClippingHorizontalValue = o.m_bClippingHorizontalValue;
    m_bClippingVerticalDistance = o.m_bClippingVerticalDistance;
    m_bClippingHorizontalDistance = o.m_bClippingHorizontalDistance;
    m_bClippingVerticalBox = o.m_bClippingVerticalBox;
    m_bClippingHorizontalBox = o.m_bClippingHorizontalBox;
    m_arrClippingValueX = o.m_arrClippingValueX;
    m_arrClippingValueY = o.m_arrClippingValueY;
    m_ptCurrentMouse = o.m_ptCurrentMouse;
    m_nBaseZoomLevel = o.m_nBaseZoomLevel;
    m_bClickZoomAvailable = o.m_bClickZoomAvailable;
    m_bClickZoomStarted = o.m_bClickZoomStarted;
    m_nClickZoomState = o.m_nClickZoomState;
    m_ptClickZoomStart = o.m_ptClickZoomStart;
    m_ptClickZoomStartLP = o.m_ptClickZoomStartLP;
    m_ptClickZoomEnd = o.m_ptClickZoomEnd;
    m_nFrequencyScale = o.m_nFrequencyScale;
    m_nDisplayOption = o.m_nDisplayOption;
    m_nFreqDomainMode = o.m_nFreqDomainMode;
    return *this;
}

bool CPlotvane_Manager::operator==(const CPlotvane_Manager& o) const
{
    return m_Attribute == o.m_Attribute && m_InputData == o.m_InputData &&
           m_bApplyUnit == o.m_bApplyUnit && m_bViewScaleChanged == o.m_bViewScaleChanged &&
           *m_pClippingLineArray == *o.m_pClippingLineArray &&
           *m_pClippingBoxArray == *o.m_pClippingBoxArray &&
           m_bClippingVertical == o.m_bClippingVertical &&
           m_bClippingHorizontal == o.m_bClippingHorizontal &&
           m_bClippingVerticalValue == o.m_bClippingVerticalValue &&
           m_bClippingHorizontalValue == o.m_bClippingHorizontalValue &&
           m_bClippingVerticalDistance == o.m_bClippingVerticalDistance &&
           m_bClippingHorizontalDistance == o.m_bClippingHorizontalDistance &&
           m_bClippingVerticalBox == o.m_bClippingVerticalBox &&
           m_bClippingHorizontalBox == o.m_bClippingHorizontalBox &&
           m_arrClippingValueX == o.m_arrClippingValueX &&
           m_arrClippingValueY == o.m_arrClippingValueY && m_ptCurrentMouse == o.m_ptCurrentMouse &&
           m_nBaseZoomLevel == o.m_nBaseZoomLevel &&
           m_bClickZoomAvailable == o.m_bClickZoomAvailable &&
           m_bClickZoomStarted == o.m_bClickZoomStarted &&
           m_nClickZoomState == o.m_nClickZoomState && m_ptClickZoomStart == o.m_ptClickZoomStart &&
           m_ptClickZoomStartLP == o.m_ptClickZoomStartLP &&
           m_ptClickZoomEnd == o.m_ptClickZoomEnd && m_nFrequencyScale == o.m_nFrequencyScale &&
           m_nDisplayOption == o.m_nDisplayOption && m_nFreqDomainMode == o.m_nFreqDomainMode;
}

void CPlotvane_Manager::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar << m_nVersion;
        m_Attribute.Serialize(ar);
        m_InputData.Serialize(ar);
        ar << m_bApplyUnit << m_bViewScaleChanged;
        m_pClippingLineArray->Serialize(ar);
        ar << m_bClippingVertical << m_bClippingHorizontal << m_bClippingVerticalValue
           << m_bClippingHorizontalValue << m_bClippingVerticalDistance
           << m_bClippingHorizontalDistance;
        m_arrClippingValueX.Serialize(ar);
        m_arrClippingValueY.Serialize(ar);
        m_ptCurrentMouse.Serialize(ar);
        ar << m_nBaseZoomLevel << m_bClickZoomAvailable << m_bClickZoomStarted << m_nClickZoomState;
        m_ptClickZoomStart.Serialize(ar);
        m_ptClickZoomStartLP.Serialize(ar);
        m_ptClickZoomEnd.Serialize(ar);
        ar << m_nFrequencyScale;
        ar << m_bClippingVerticalBox << m_bClippingHorizontalBox;
        m_pClippingBoxArray->Serialize(ar);
        ar << m_nDisplayOption << m_bUseMagnitude << m_nMagnitudeScale;
        return;
    }

    int nVersion = 0;
    ar >> nVersion;
    if (nVersion <= 0)
        return;
    m_Attribute.Serialize(ar);
    m_InputData.Serialize(ar);
    ar >> m_bApplyUnit >> m_bViewScaleChanged;
    m_pClippingLineArray->Serialize(ar);
    ar >> m_bClippingVertical >> m_bClippingHorizontal >> m_bClippingVerticalValue >>
        m_bClippingHorizontalValue >> m_bClippingVerticalDistance >> m_bClippingHorizontalDistance;
    m_arrClippingValueX.Serialize(ar);
    m_arrClippingValueY.Serialize(ar);
    m_ptCurrentMouse.Serialize(ar);
    ar >> m_nBaseZoomLevel >> m_bClickZoomAvailable >> m_bClickZoomStarted >> m_nClickZoomState;
    m_ptClickZoomStart.Serialize(ar);
    m_ptClickZoomStartLP.Serialize(ar);
    m_ptClickZoomEnd.Serialize(ar);
    if (nVersion < 2)
        return;
    ar >> m_nFrequencyScale;
    if (nVersion < 3)
        return;
    // Both box flags land in the vertical one: files of every version have
    // been read this way, and the horizontal flag keeps its value.
    ar >> m_bClippingVerticalBox >> m_bClippingVerticalBox;
    m_pClippingBoxArray->Serialize(ar);
    if (nVersion < 4)
        return;
    ar >> m_nDisplayOption;
    // The magnitude pair is "read" with the writing operation, which raises
    // CArchiveException(readOnly) on a loading archive. Everything else is
    // in place by then, and a host that catches it keeps the loaded chart
    // with its own magnitude settings.
    ar << m_bUseMagnitude << m_nMagnitudeScale;
}

void CPlotvane_Manager::SetClippingVerticalDistanceONOFF(int n)
{
    m_bClippingVerticalDistance = n;
    m_nVerticalDistancePending = 0;
}

void CPlotvane_Manager::SetClippingHorizontalDistanceONOFF(int n)
{
    m_bClippingHorizontalDistance = n;
    m_nHorizontalDistancePending = 0;
}

void CPlotvane_Manager::RemoveAllData()
{
    m_InputData.m_arrChartData.DeleteAll();
    m_InputData.RemoveAllDrawDataSetIndex();
    CPlotvane_InputData::SetViewScaleX(100.0);
    CPlotvane_InputData::SetViewScaleY(100.0);
}

void CPlotvane_Manager::RemoveAllDrawDataSetIndex()
{
    m_InputData.RemoveAllDrawDataSetIndex();
}

void CPlotvane_Manager::DeleteAllChartData()
{
    m_InputData.m_arrChartData.DeleteAll();
}

int CPlotvane_Manager::GetBathtubMeasuredPoints(CChartPointDArray* pArray, double dLevel,
                                                double& dLeft, double& dRight)
{
    const double dMinX = pArray->GetMinX();
    const double dMaxX = pArray->GetMaxX();
    return pArray->GetCrossMinMaxXValue(dLevel, dMinX, dMaxX, 1e9, 100.0, dLeft, dRight) != 0;
}

double CPlotvane_Manager::GetBathtubMinValue(CChartPointDArray* pArray)
{
    const INT_PTR n = pArray->GetSize();
    if (n == 0)
        return DBL_MIN;
    const double dMinY = pArray->GetMinY();
    if (n == 1)
        return dMinY;
    // The samples of a bathtub are evenly spaced except where the curve is
    // open; the floor is where the spacing first breaks.
    const CChartPointD* const* p = pArray->GetData();
    double dStep = 0.0;
    for (INT_PTR i = 0; i + 1 < n; ++i)
    {
        const double d = p[i + 1]->X - p[i]->X;
        if (i == 0)
        {
            dStep = d;
            continue;
        }
        const double e = d - dStep;
        if (d > 2.0 * dStep || e > std::fabs(dStep - e))
            return std::max(p[i]->Y, p[i + 1]->Y);
    }
    return dMinY;
}

void CPlotvane_Manager::ClearBathtubMeasureData()
{
    m_bBathtub = 0;
    m_mapBathtub.clear();
}
