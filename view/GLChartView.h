// CGLChartView: the window that shows one chart. It reads everything it draws
// from the manager and the chart dialog on every paint: curves of the draw
// set, axes, grid, cursors and the measurement overlays, in a fixed order
// that is also the order of priority (the depth test keeps what came first).
// Only the overlay of the manager's measure type is kept, in one display
// list, because it searches whole waveforms; everything else is drawn anew.
//
// Coordinates: data values times the store's view scale (or log10 on a
// logarithmic axis) are the logical units that OpenGL sees. The plot frame's
// origin lies a tenth of the visible width and height in from the left and
// bottom edges; that margin holds the value texts. RenderScene takes that
// geometry once per paint as a plotvane::ChartFrame (GetChartFrame), and
// every layer of the paint reads it from there.
//
// The members are spread over several sources by family:
//   GLChartView.cpp                frame: construction, appearance, fonts,
//                                  view area, paint, RenderScene, DrawChart,
//                                  the display list, GetChartFrame
//   ChartFrame.cpp                 the frame value itself
//   ChartText.cpp                  the text hook's types (SetTextHook is in
//                                  GLChartView.cpp)
//   GridAxes.cpp                   grid and axes: axis lines and names, grid,
//                                  value texts, unit text
//   CurveDrawing.cpp               curves: DrawGraphLine, the clipper,
//                                  DrawLine, DrawLineData
//   overlays/OverlayPrimitives.cpp overlay primitives: boxes, arrows, the
//                                  status summary, automatic marks
//   overlays/EyeJitter.cpp         eye jitter: strobe lookup, setup/hold and
//                                  tDQSQ/tQH marks, worst skew, crosstalk
//                                  jitter
//   overlays/EyeMask.cpp           eye mask and bathtub
//   overlays/OverUnderShoot.cpp    overshoot, undershoot, VSEH, VSEL and the
//                                  shaded area (display list)
//   overlays/DifferentialLevels.cpp  VIX and VID (display list)
//   overlays/TargetImpedance.cpp target impedance, linear and log
//   overlays/FlightCrosstalk.cpp flight time, NEXT/FEXT points, TDR
//                                  impedance, DFE frequency marks
//   Cursors.cpp                    clipping lines and boxes, cross lines
//   ViewInput.cpp                  mouse, keyboard, click zoom, wheel and
//                                  the selection pass
//   Annotations.cpp                node names, free texts and lines
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/Types.h>
#include <plotvane/foundation/ValueTypes.h>
#include <plotvane/view/ChartFrame.h>
#include <plotvane/view/ChartText.h>
#include <plotvane/view/GLWnd.h>

#include <utility>
#include <vector>

class CPlotvane_Manager;
class CPlotvane_Dlg;
class CGLTextBmp;
class CChartClippingBox;
class CChartClippingLine;
class CChartPointDArray;
class CChartTextData;
class CChartTextDataArray;
class CChartLineData;
class CChartLineDataArray;

class CGLChartView : public CGLWnd, private plotvane::TextSink
{
public:
    // Creates the four fonts and the annotation collections; no window yet.
    CGLChartView();
    ~CGLChartView() override;

    // ---- plain accessors
    DWORD GetAxisColor() const { return m_crAxis; }
    void SetAxisColor(DWORD cr) { m_crAxis = cr; }
    DWORD GetGridColor() const { return m_crGrid; }
    void SetGridColor(DWORD cr) { m_crGrid = cr; }
    DWORD GetLabelColor() const { return m_crLabel; }
    void SetLabelColor(DWORD cr) { m_crLabel = cr; }
    DWORD GetBackgroundColor() const { return m_crBackground; }
    double GetAxisLineWidth() const { return m_dAxisLineWidth; }
    void SetAxisLineWidth(double d) { m_dAxisLineWidth = d; }
    double GetLineWidth() const { return m_dLineWidth; }
    void SetLineWidth(double d) { m_dLineWidth = d; }
    double GetLineWidth_Highlighted() const { return m_dPointSize; }
    void SetLineWidth_Highlighted(double d) { m_dPointSize = d; }
    int GetDrawMaxPulsePeriod() const { return m_nDrawMaxPulsePeriod; }
    void SetDrawMaxPulsePeriod(int n) { m_nDrawMaxPulsePeriod = n; }
    int GetPickingMode() const { return m_nPickingMode; }
    int GetGridMode() const { return m_nGridMode; }
    void SetGridMode(int n) { m_nGridMode = n; }
    void SetCurrentFontSize(int n) { m_nCurrentFontSize = n; }
    void SetCPlotvane_Manager(CPlotvane_Manager* p) { m_pManager = p; }

    // ---- operations with an effect
    // Also sets the clear colour of the context at once.
    void SetBackgroundColor(DWORD cr);
    // Also ends any annotation mode.
    void SetPickingMode(int n);
    // Stores the dialog and fits the view area to the data.
    void SetParent(CPlotvane_Dlg* pParent);
    // Each replaces its font object whole and builds the new one.
    void SetDefaultFontSize(int n);
    void SetMeasureFontSize(int n);
    void SetXYFontSize(int n);
    // The same, only when the size differs.
    void SetTextDataFontSize(int n);

    // ---- view area
    void InitViewArea();
    void ViewZoomfit();
    void DecideViewScale();
    void SetChartDrawFit();
    // Makes the rectangle between two logical points the plot frame's
    // interior.
    void SetViewAreaByPoint(CPointF p1, CPointF p2);
    CPointD GetOriginPoint();
    double GetViewWidth();
    double GetViewHeight();
    void GetCurrentViewLeftTopPoint(double& x, double& y);
    void GetCurrentViewRightBtmPoint(double& x, double& y);
    // How many logical units that many pixels span; the rectangle is not
    // read.
    double GetTextLPHeight(CRectF& rc, int nPixels);
    double GetTextLPWidth(CRectF& rc, int nPixels);
    void AllChangeLineWidth(double d);

    // ---- cursors and clipping boxes (Cursors.cpp)
    // Prepares the label, crossing texts and distance line of a line just
    // placed by a click; index is its place in the manager's array.
    void SetGLChartViewClipingText(CChartClippingLine* pLine, int index);
    // A line from the host, with no texts.
    void SetGLChartViewClippingLine(int bVertical, double dValue);
    void RemoveClippingLineArray();
    void RemoveClippingBoxArray();
    void ShowVerticalClipping(int n);
    void ShowHorizontalClipping(int n);
    void ShowVerticalClippingBox(int n);
    void ShowHorizontalClippingBox(int n);
    // Distances between all lines of a direction; the frame does not call
    // them, a host may.
    void DrawXClippingValueDelta();
    void DrawXClippingValueDelta_Log();
    void DrawYClippingValueDelta();

    // ---- mouse, keyboard and zoom (ViewInput.cpp)
    void OnLButtonDown(UINT nFlags, CPoint point) override;
    void OnLButtonUp(UINT nFlags, CPoint point) override;
    void OnMouseMove(UINT nFlags, CPoint point) override;
    BOOL OnMouseWheel(UINT nFlags, short zDelta, CPoint pt) override;
    void OnRButtonDown(UINT nFlags, CPoint point) override;
    void OnRButtonUp(UINT nFlags, CPoint point) override;
    BOOL PreTranslateMessage(MSG* pMsg) override;
    // Clears m_arrSelectNames and fills it; answers the hit count.
    int ProcessSelection(int x, int y);
    // The selection pass at a client point; appends the names hit.
    int ProcessSelection(int x, int y, CDWordArray& names);
    bool PickingText(CChartTextData* pText, CPointF pt);
    void ClickZoomArea(CPoint point);
    void Pan_View(UINT nKey);
    void ZoomIn();
    void ZoomOut();
    void ApplyZoomAreaToViewAndAdjustDecimalOfParentDlg(int bRepaint);
    void SetClickZoomAvailable(int bAvailable);
    void SetClickZoomState(int nState);

    // ---- annotation layer (Annotations.cpp)
    void SetDrawMode(int nMode);
    int GetDrawMode() const { return m_nDrawMode; }
    int GetDrawStep() const { return m_nDrawStep; }
    void DrawTextData(double x, double y, DWORD color, const CString& text);
    void ClearTextDB();
    void ClearLineDB();
    void ClearSelectNodeNames();
    void AllChangeLineDataWidth(double d);

    // ---- frame (GLChartView.cpp)
    // The frame of the paint in progress. Outside a paint (a layer called on
    // its own, a host asking) it is taken anew from the current projection
    // and the manager's axes, as a paint would take it.
    plotvane::ChartFrame GetChartFrame();
    void MakeDisplayList();
    void DeleteDisplayList();
    void DrawChart();
    void DrawChart_Log();
    void FitCurViewAreaWithWindow() override;
    void RenderScene() override;

    // ---- grid and axes (GridAxes.cpp)
    void DrawAxisLine();
    void DrawAxisName();
    void DrawGridLine();
    void DrawGridLine_Log();
    void DrawGrid(double dx, double dy, DWORD color, int bLines) const;
    void DrawGridValueText(double dx, double dy);
    void DrawGridValueText_Log(double dx, double dy);
    CString GetAxisName(CString strName, CString strUnit);
    CString GetAxisName_Log(CString strName, CString strUnit);
    CString ChangeUnitString(CString strUnit);
    CString GetUnitNameX(int nExponent);
    CString GetUnitNameY(int nExponent);
    CString GetXAxisDisplayString();
    CString GetYAxisDisplayString();

    // ---- curves (CurveDrawing.cpp)
    void DrawGraphLine(int index);
    void DrawGraphLine_Log(int index);
    void DrawLine(double x1, double y1, double x2, double y2);
    void DrawLineClipping(double x1, double y1, double x2, double y2);
    void DrawLineData(double x1, double y1, double x2, double y2, double width, DWORD color);

    // ---- overlay primitives, in logical coordinates (overlays/OverlayPrimitives.cpp)
    // Stippled rectangle in front of the curves; a label gets the box's
    // displayed width appended and stands at its centre.
    void DrawBox(double x1, double y1, double x2, double y2, DWORD color, CString strLabel);
    void DrawBoxSolid(double x1, double y1, double x2, double y2, DWORD color, CString strLabel);
    // An arrow from the first point to the second, in any direction.
    void DrawHorizontalArrowLine(double x1, double y1, double x2, double y2, DWORD color,
                                 int bHeadAtStart, int bHeadAtEnd);
    // Always upward from the first point, over the distance of the two.
    void DrawVerticalArrowLine(double x1, double y1, double x2, double y2, DWORD color,
                               int bHeadAtStart, int bHeadAtEnd);

    // ---- eye jitter (overlays/EyeJitter.cpp)
    // Finds the strobe (and its complement) whose name shares the DQ name's
    // first "_" token.
    void SetDQSChartPointArray(CString strName);
    void DrawEyeDiagramJitterLine(int nDataIndex, double dPhase, int bStrobeShown);
    void DrawEyeDiagramJitterLine_NoDelay(int nDataIndex, double dPhase);

    // ---- eye mask and bathtub, overshoot and undershoot, differential
    // levels (overlays/EyeMask.cpp, OverUnderShoot.cpp, DifferentialLevels.cpp)
    // Replaces the stored masks by one where the mouse stands, as wide as the
    // mask's widest part, and ends the placing.
    void MakeEyeMaskArray();

    // ---- target impedance, flight time, crosstalk, TDR and DFE marks
    // (overlays/TargetImpedance.cpp, overlays/FlightCrosstalk.cpp)
    // Zoom from the origin to the last step of the shown impedance limits.
    void ZoomPDNArea();
    // Zoom from the origin to the end of the drawn curves and down to the
    // lowest of their values and the DFE level.
    void ZoomDFEPFreqDomainParaArea();

    // ---- text hook
    // Every text a paint draws goes to the hook, with its layer and colour,
    // in drawing order. The overlay kept in the display list reports the
    // texts it drew when the list was built, each time the list is called.
    // An empty hook turns it off.
    void SetTextHook(plotvane::ChartTextHook hook) { m_textHook = std::move(hook); }

    // ---- handlers
    int OnCreate(LPCREATESTRUCT lpCreateStruct) override;
    void OnPaint() override;
    BOOL OnEraseBkgnd(CDC* pDC) override;

    // ---- members, in their fixed order
    int m_nBoxClickCount;
    CChartClippingBox* m_pPendingBox;
    DWORD m_crEyeMask;
    DWORD m_crMeasureMark;
    CPlotvane_Manager* m_pManager;
    CPlotvane_Dlg* m_pParent;
    CGLTextBmp* m_pFontMeasure;
    CGLTextBmp* m_pFontDefault;
    CGLTextBmp* m_pFontTextData;
    CGLTextBmp* m_pFontXY;
    int m_nCurrentFontSize;
    DWORD m_nDisplayList;
    DWORD m_crBackground;
    DWORD m_crAxis;
    DWORD m_crLabel;
    DWORD m_crGrid;
    double m_dGridLineWidth;
    double m_dAxisLineWidth;
    double m_dLineWidth;
    double m_dPointSize;
    CChartPointDArray* m_pDQSArray1;
    CChartPointDArray* m_pDQSArray2;
    int m_bSingleDQ;
    int m_nDrawMaxPulsePeriod;
    int m_nPickingMode;
    CChartTextDataArray* m_pSelectNodeNames;
    int m_nDrawMode;
    int m_nDrawStep;
    CChartTextData* m_pPickedText;
    CChartTextDataArray* m_pTextDB;
    CChartTextData* m_pCurrentText;
    CChartLineDataArray* m_pLineDB;
    CChartLineData* m_pCurrentLine;
    CChartClippingLine* m_pLastXClippingLine;
    CChartClippingLine* m_pLastYClippingLine;
    int m_nGridMode;
    int m_bDecibelAxis;

protected:
    // Layers of the frame that are drawn by cursors, overlays and the
    // annotation layer, called by the frame in their place.
    void DrawXClippingLine();
    void DrawXClippingLine_Log() { DrawXClippingLine(); }
    void DrawYClippingLine();
    void DrawYClippingLine_Log() { DrawYClippingLine(); }
    void DrawXClippingValueText(CChartClippingLine* pLine, int& nCounter);
    void DrawXClippingValueText_Log(CChartClippingLine* pLine, int& nCounter)
    {
        DrawXClippingValueText(pLine, nCounter);
    }
    void DrawYClippingValueText(CChartClippingLine* pLine, int& nCounter);
    void DrawYClippingValueText_Log(CChartClippingLine* pLine, int& nCounter)
    {
        DrawYClippingValueText(pLine, nCounter);
    }
    void DrawClippingBox();
    void DrawCrossLine();
    void DrawCrossLine_Log();
    void DrawEyeMask();
    int IsInDQSNet();
    void DrawEyeDiagramJitter();
    void DrawWorstSkew();
    void DrawNEXTorFEXTPt();
    void DrawCrosstalkJitter();
    void DrawFlightTime();
    void DrawTargetImpedance();
    void DrawTargetImpedance_Log();
    void DrawTDRImpedance();
    void DrawDFEPFreqDomainPara();
    void DisplayMeasureInfo();
    void DisplayAutoMeasureMarks();
    void DrawBathtubMeasure();
    void DrawOverUnderShoot();
    void DrawOverUnderShootArea();
    void DrawVIX();
    void DrawVID();
    void DrawSelectNodeNames();
    void DrawTextDB();
    void DrawLineDB();
    void DrawCurrentTextData();
    void DrawCurrentLineData();

    // Tags the texts printed while it lives with a layer.
    class TextLayerScope
    {
    public:
        TextLayerScope(CGLChartView& view, plotvane::ChartTextLayer layer)
            : m_view(view), m_before(view.m_textLayer)
        {
            view.m_textLayer = layer;
        }
        ~TextLayerScope() { m_view.m_textLayer = m_before; }
        TextLayerScope(const TextLayerScope&) = delete;
        TextLayerScope& operator=(const TextLayerScope&) = delete;

    private:
        CGLChartView& m_view;
        plotvane::ChartTextLayer m_before;
    };

private:
    // ---- cursor helpers (Cursors.cpp)
    // All lines of one direction, each with its texts; the counter of each
    // direction runs on its own.
    void DrawClippingLines(int bVertical);
    // Distance mark, crossing texts and label of one line, with the distance
    // and value switches of its direction.
    void DrawClippingLineTexts(CChartClippingLine* pLine, int nCounter, int bDistance,
                               int bValue);
    // The distances between neighbouring lines of one direction, for hosts.
    void DrawClippingValueDelta(int bVertical, int bLog);
    // The box under placement while it is still in the manager's array; null
    // once the array was emptied under it.
    CChartClippingBox* GetPendingBox() const;

protected:
    // ---- placing cursors by click; OnLButtonDown calls them with the
    // logical point of the press.
    // A new clipping line at p with its crossing values and texts, as the
    // left press of a placing mode makes it.
    void AddClickedClippingLine(int bVertical, const CPointF& p);
    // One click of a two-click clipping box: the first makes the box,
    // invisible, the second completes it with its W= and H= texts.
    void ClickClippingBox(int bVertical, const CPointF& p);

private:
    // -- end of cursor helpers

    // ---- input steps (ViewInput.cpp)
    // Writes the moved text back where it hangs and ends the move.
    void DropPickedText();
    // The first click of a click zoom marks a corner, the second zooms.
    void ClickZoomPress(CPoint point);
    // Every placing mode that is on acts; false when none is.
    bool PlaceCursorsAt(CPoint point);
    // Makes the text hang on the mouse in place of its record.
    void GrabText(CChartTextData* pText);
    void GrabTextAt(CPoint point);
    void LabelCurvesAt(CPoint point);
    void ShowCoordinates(CPoint point);
    void DrawClickZoomBand(CPoint point);
    void LeaveModesByEsc();
    // The one-line text dialog over the string of m_pCurrentText.
    void AskCurrentText();
    // Set while a selection pass renders the scene.
    int m_bSelecting = 0;

    // ---- annotation steps (Annotations.cpp)
    // A record is about to be freed: if it is the text hanging on the
    // mouse, that text is let go and the move ends.
    void ForgetPickedText(const CChartTextData* pText);
    void ForgetPickedTextIn(CChartTextDataArray& texts);

    void OnText(const CString& text, const CPointD& position) override;
    // Hands the texts of the display list to the hook, as if drawn now.
    void ReportListTexts();
    plotvane::ChartFrame MakeChartFrame();
    // Replaces *ppFont with a new font of that size, built in this window's
    // context when there is one.
    void ReplaceFont(CGLTextBmp*& pFont, int nSize);
    // The data set that DrawGraphLine and DrawGraphLine_Log may draw, with
    // its colour set; null when it draws nothing.
    CChartPointDArray* BeginCurve(int index, const plotvane::ChartFrame& f);
    // The horizontal and vertical grid line of the current grid look.
    void DrawGridHLine(double y, double ox, double tx, double right) const;
    void DrawGridVLine(double x, double oy, double ty, double top) const;

    // The frame of the paint in progress, valid while m_bFramePinned is set.
    plotvane::ChartFrame m_frame;
    int m_bFramePinned = 0;

    plotvane::ChartTextHook m_textHook;
    plotvane::ChartTextLayer m_textLayer = plotvane::ChartTextLayer::Other;
    // Texts of the display list, kept while it compiles: replaying a list
    // runs no code that could report them.
    int m_bCompilingList = 0;
    std::vector<plotvane::ChartText> m_listTexts;
};
