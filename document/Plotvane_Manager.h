// The object a host creates for one chart. It holds the whole chart document
// by value (axes, data store, chart dialog with its view, property dialogs),
// the cursor records, the zoom state and the state of every measurement
// overlay. The overlay members are public and have no setters: the host
// writes them and the view reads them while it draws.
#pragma once

#include <plotvane/dialogs/Plotvane_Attribute_Dlg.h>
#include <plotvane/dialogs/Plotvane_Dlg.h>
#include <plotvane/dialogs/Plotvane_InputData_Dlg.h>
#include <plotvane/document/AxisAttribute.h>
#include <plotvane/document/Plotvane_InputData.h>
#include <plotvane/foundation/MFCArchive.h>
#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/Types.h>
#include <plotvane/foundation/ValueArrays.h>
#include <plotvane/foundation/ValueTypes.h>

#include <map>

class CGLPlotvane_Environment;

class CWnd;
class CChartClippingLineArray;
class CChartClippingBoxArray;
class CChartPointDArray;

class CPlotvane_Manager
{
public:
    // Wires every back-pointer of the document, then creates the owned
    // cursor and eye mask arrays.
    CPlotvane_Manager();
    CPlotvane_Manager(const CPlotvane_Manager&) = delete;
    // Copies the members that the chart archive holds, except the magnitude
    // pair, plus m_nFreqDomainMode. The cursor arrays are copied with records
    // that share their texts with the source's (see CChartClippingLineArray).
    CPlotvane_Manager& operator=(const CPlotvane_Manager& o);
    virtual ~CPlotvane_Manager();
    virtual bool operator==(const CPlotvane_Manager& o) const;
    virtual bool operator!=(const CPlotvane_Manager& o) const { return !(*this == o); }
    // Loading a version 4 chart raises CArchiveException(readOnly) after
    // everything else is in place; see the .cpp.
    virtual void Serialize(CArchive& ar);

    // ---- axis text
    CString GetAxisXName() const { return m_Attribute.m_XAxis.GetAxisName(); }
    CString GetAxisYName() const { return m_Attribute.m_YAxis.GetAxisName(); }
    void SetAxisXName(CString str) { m_Attribute.m_XAxis.SetAxisName(str); }
    void SetAxisYName(CString str) { m_Attribute.m_YAxis.SetAxisName(str); }
    CString GetUnitNameX() const { return m_Attribute.m_XAxis.GetUnitName(); }
    CString GetUnitNameY() const { return m_Attribute.m_YAxis.GetUnitName(); }
    void SetUnitNameX(CString str) { m_Attribute.m_XAxis.SetUnitName(str); }
    void SetUnitNameY(CString str) { m_Attribute.m_YAxis.SetUnitName(str); }
    int GetUnitChange() const { return m_Attribute.m_nUnitChange; }
    void SetUnitChange(int n) { m_Attribute.m_nUnitChange = n; }

    // ---- cursor switches
    void SetClippingVerticalONOFF(int n) { m_bClippingVertical = n; }
    void SetClippingHorizontalONOFF(int n) { m_bClippingHorizontal = n; }
    void SetClippingVerticalValueONOFF(int n) { m_bClippingVerticalValue = n; }
    void SetClippingHorizontalValueONOFF(int n) { m_bClippingHorizontalValue = n; }
    void SetClippingVerticalBoxONOFF(int n) { m_bClippingVerticalBox = n; }
    void SetClippingHorizontalBoxONOFF(int n) { m_bClippingHorizontalBox = n; }
    // Also drops a half-placed pair.
    void SetClippingVerticalDistanceONOFF(int n);
    void SetClippingHorizontalDistanceONOFF(int n);

    // ---- other setters
    void SetFrequencyScale(int n) { m_nFrequencyScale = n; }
    void SetUseMagnitude(int n) { m_bUseMagnitude = n; }
    void SetDQSNoDelayMode(int n) { m_nDQSNoDelayMode = n; }
    int GetDQSNoDelayMode() const { return m_nDQSNoDelayMode; }

    // ---- data
    // Deletes every set, empties the draw set and puts both view scales back
    // to 100.
    void RemoveAllData();
    void RemoveAllDrawDataSetIndex();
    // Deletes every set; draw set and scales stay.
    void DeleteAllChartData();

    // ---- bathtub
    int GetBathtubMeasuredPoints(CChartPointDArray* pArray, double dLevel, double& dLeft,
                                 double& dRight);
    double GetBathtubMinValue(CChartPointDArray* pArray);
    void ClearBathtubMeasureData();

    // ---- grid intervals, units and number text. "Visible rectangle" is
    // the view's client area in logical units.
    double CalcGridIntervalX();
    double CalcGridIntervalY();
    // The user's interval where it is usable, else the computed one.
    double GetXGridInterval();
    double GetYGridInterval();
    double GetXGridIntervalForText();
    double GetYGridIntervalForText();
    double GetXGridInitialIntervalForText();
    double GetYGridInitialIntervalForText();
    int GetXAxisTextCount();
    int GetYAxisTextCount();
    double GetXUnit();
    double GetYUnit();
    // The engineering power of ten of the data range.
    int GetXUnitBase();
    int GetYUnitBase();
    // Logical units to displayed numbers.
    double GetScaleX();
    double GetScaleY();
    void GetViewAreaLPPoint(CPointF& ptLeftBottom, CPointF& ptRightTop);
    CString GetDisplayNumberByFormatType(double dValue);
    double GetEyeMaskHeightForText();
    void SetXGridInterval(double d);
    void SetYGridInterval(double d);
    void SetXGridIntervalByText(double d);
    void SetYGridIntervalByText(double d);
    void SetXUnitBase(int n);
    void SetYUnitBase(int n);

    // ---- operations that reach the view
    // Extents, view scale and a zoom to fit.
    void SetChartDrawFit();
    // Rebuilds the display list and paints now; nothing without a window.
    void RedrawGLChartView();
    // The view's MakeEyeMaskArray: fixes the following mask where the mouse
    // stands.
    void MakeEyeMaskArray();
    void GetCurrentGLChartViewLeftTopPoint(double& x, double& y);
    void GetCurrentGLChartViewRightBtmPoint(double& x, double& y);
    void SetViewAreaByPoint(CPointF p1, CPointF p2);
    void ViewZoomfit();
    // Cursors and click zoom, forwarded to the view; the two Remove
    // operations redraw.
    void DrawGLChartViewXClippingLine(int bVertical, double dValue);
    void RemoveClippingBoxArray();
    void RemoveClippingLineArray();
    void SetClickZoomAvailable(int v);
    void SetClickZoomState(int n);
    void ShowGLChartVerticalClipping(int n);
    void ShowGLChartHorizontalClipping(int n);
    void ShowGLChartVerticalClippingBox(int n);
    void ShowGLChartHorizontalClippingBox(int n);
    int GetDefaultFontSize();
    int GetMeasureFontSize();
    int GetXYFontSize();
    void SetDefaultFontSize(int n);
    void SetMeasureFontSize(int n);
    void SetXYFontSize(int n);
    // Applies appearance settings to the chart dialog and its view and
    // redraws; without an argument, those of "Chart.uis" (or the defaults
    // when it cannot be read).
    void SetChartEnvironment(CGLPlotvane_Environment* pEnv);
    void SetChartEnvironment();

    static constexpr int m_nVersion = 4;

    CPlotvane_Attribute m_Attribute;
    CPlotvane_InputData m_InputData;
    CWnd* m_pParentWnd = nullptr;
    CPlotvane_Dlg m_ChartDlg;
    CPlotvane_Attribute_Dlg m_AttributeDlg;
    CPlotvane_InputData_Dlg m_InputDataDlg;
    int m_bApplyUnit = 1;
    int m_bViewScaleChanged = 0;
    CChartClippingLineArray* m_pClippingLineArray = nullptr;
    CChartClippingBoxArray* m_pClippingBoxArray = nullptr;
    int m_bClippingVertical = 0;
    int m_bClippingHorizontal = 0;
    int m_bClippingVerticalValue = 0;
    int m_bClippingHorizontalValue = 0;
    int m_bClippingVerticalDistance = 0;
    int m_bClippingHorizontalDistance = 0;
    int m_bClippingVerticalBox = 0;
    int m_bClippingHorizontalBox = 0;
    int m_nVerticalDistancePending = 0;
    int m_nHorizontalDistancePending = 0;
    int m_bEyeMaskFollowMouse = 0;
    // The host sets it before the first draw; zero until then.
    int m_bEyeMaskVisible = 0;
    double m_dEyeMaskTopPercent = 30.0;
    double m_dEyeMaskBottomPercent = 30.0;
    double m_dEyeMaskHeight = 0.5;
    double m_dEyeMaskWidth = 0.0;
    CArrayRectD* m_pEyeMaskRectArray = nullptr;
    double m_dEyeMaskCenterY = 0.0;
    int m_nEyeMaskReserved = 0;
    int m_nEyeMaskCenterMode = 0;
    int m_nEyeMaskReserved2 = 0;
    CArrayD m_arrClippingValueX;
    CArrayD m_arrClippingValueY;
    CPointN m_ptCurrentMouse;
    int m_nBaseZoomLevel = 0;
    int m_bClickZoomAvailable = 0;
    int m_bClickZoomStarted = 0;
    int m_nClickZoomState = 0;
    CPointN m_ptClickZoomStart;
    CPointF m_ptClickZoomStartLP;
    CPointN m_ptClickZoomEnd;
    int m_nFormatType = 1;
    int m_nFrequencyScale = 0;
    int m_nDisplayOption = 0;
    int m_bUseMagnitude = 1;
    int m_nMagnitudeScale = 0;
    int m_nDQSNoDelayMode = 0;
    int m_bDisplayAutoMeasureMarks = 0;
    CArrayPointD m_arrAutoMeasureMarks;
    int m_nMeasureType = -1;
    double m_dMeasureLevel = 0.0;
    double m_dMeasureLimit = 0.0;
    double m_dMeasuredValue = 0.0;
    double m_dMeasureMargin = 0.0;
    CString m_strFlightNet1;
    CString m_strMeasureNet;
    CString m_strMeasureNet2;
    double m_dVIXLevel = 0.0;
    double m_dVIXMeasuredX = 0.0;
    double m_dVIXMeasuredY = 0.0;
    int m_bShowWorstSkew = 0;
    // Host-visible slots that the component itself never reads.
    CString m_strReserved1;
    CString m_strReserved2;
    CString m_strReserved3;
    CString m_strReserved4;
    CString m_strReserved5;
    CString m_strReserved6;
    CString m_strNEXTNet;
    CString m_strFEXTNet;
    int m_nCrosstalkPointIndex = -1;
    double m_dCrosstalkX1 = 0.0;
    double m_dCrosstalkX2 = 0.0;
    double m_dCrosstalkY1 = 0.0;
    double m_dCrosstalkY2 = 0.0;
    int m_nJitterOption = 0;
    CString m_strFlightNet2;
    double m_dFlightTimeX1 = 0.0;
    double m_dFlightTimeX2 = 0.0;
    double m_dFlightTimeLevel1 = 0.0;
    // The host writes it together with the other flight time members.
    double m_dFlightTimeLevel2 = 0.0;
    int m_bTargetImpedance = 0;
    double m_dTargetImpedanceValue = 0.0;
    double m_dTargetImpedanceFreq = 0.0;
    int m_nFreqDomainMode = 0;
    int m_bTDRImpedance = 0;
    double m_dTDRLevel1 = 0.0;
    double m_dTDRLevel2 = 0.0;
    int m_bBathtub = 0;
    // Bit error ratio as text -> curve colour -> left and right crossing X.
    std::map<CString, std::map<COLORREF, CPointD>> m_mapBathtub;
    int m_bDFEPFreqDomain = 0;
    double m_dDFEPLevel = 0.0;
    CPointD m_ptDFEP;
};
