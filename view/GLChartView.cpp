#include <plotvane/view/GLChartView.h>

#include <plotvane/dialogs/Plotvane_Dlg.h>
#include <plotvane/document/ChartMarkers.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/platform/WinApi.h>
#include <plotvane/view/GLTextBmp.h>

#include <GL/gl.h>

#include <cmath>

CGLChartView::CGLChartView()
    : m_nBoxClickCount(0), m_pPendingBox(nullptr), m_crEyeMask(0x0000FF), m_crMeasureMark(0xFAC864),
      m_pManager(nullptr), m_pParent(nullptr), m_pFontMeasure(new CGLTextBmp),
      m_pFontDefault(new CGLTextBmp), m_pFontTextData(new CGLTextBmp), m_pFontXY(new CGLTextBmp),
      m_nCurrentFontSize(12), m_nDisplayList(0xFFFFFFFF), m_crBackground(0), m_crAxis(0xC8C8C8),
      m_crLabel(0xC8C8C8), m_crGrid(0xD3D3D3), m_dGridLineWidth(0.5), m_dAxisLineWidth(1.5),
      m_dLineWidth(1.0), m_dPointSize(5.0), m_pDQSArray1(nullptr), m_pDQSArray2(nullptr),
      m_bSingleDQ(0), m_nDrawMaxPulsePeriod(0), m_nPickingMode(0),
      m_pSelectNodeNames(new CChartTextDataArray), m_nDrawMode(0), m_nDrawStep(0),
      m_pPickedText(nullptr), m_pTextDB(new CChartTextDataArray),
      m_pCurrentText(new CChartTextData), m_pLineDB(new CChartLineDataArray),
      m_pCurrentLine(new CChartLineData), m_pLastXClippingLine(nullptr),
      m_pLastYClippingLine(nullptr), m_nGridMode(0), m_bDecibelAxis(0)
{
    for (CGLTextBmp* pFont : {m_pFontMeasure, m_pFontDefault, m_pFontTextData, m_pFontXY})
        pFont->SetTextSink(this);
    // The font is at 12 already, so this changes nothing.
    SetTextDataFontSize(12);
}

// The display list is not deleted here: it ends with the context.
CGLChartView::~CGLChartView()
{
    delete m_pFontMeasure;
    delete m_pFontDefault;
    delete m_pFontTextData;
    delete m_pFontXY;
    delete m_pSelectNodeNames;
    delete m_pCurrentText;
    delete m_pTextDB;
    delete m_pCurrentLine;
    delete m_pLineDB;
}

// ---------------------------------------------------------------------------
// Appearance

void CGLChartView::SetBackgroundColor(DWORD cr)
{
    m_crBackground = cr;
    if (m_hRC != nullptr)
        MakeCurrent();
    glClearColor(GLclampf((cr & 0xFF) / 255.0), GLclampf(((cr >> 8) & 0xFF) / 255.0),
                 GLclampf(((cr >> 16) & 0xFF) / 255.0), 0.0f);
}

void CGLChartView::SetPickingMode(int n)
{
    m_nPickingMode = n;
    m_nDrawMode = 0;
}

void CGLChartView::SetParent(CPlotvane_Dlg* pParent)
{
    m_pParent = pParent;
    InitViewArea();
}

void CGLChartView::ReplaceFont(CGLTextBmp*& pFont, int nSize)
{
    // With the context current the old font's lists go with it. Without a
    // context of its own the window has no place for lists: building then
    // would put them into whichever context is current.
    if (m_hRC != nullptr)
        MakeCurrent();
    delete pFont;
    pFont = new CGLTextBmp;
    pFont->m_nFontSize = nSize;
    pFont->SetTextSink(this);
    if (m_hRC != nullptr)
    {
        CClientDC dc(this);
        pFont->BuildFont(dc.GetSafeHdc());
    }
}

void CGLChartView::SetDefaultFontSize(int n)
{
    ReplaceFont(m_pFontDefault, n);
}

void CGLChartView::SetMeasureFontSize(int n)
{
    ReplaceFont(m_pFontMeasure, n);
}

void CGLChartView::SetXYFontSize(int n)
{
    ReplaceFont(m_pFontXY, n);
}

void CGLChartView::SetTextDataFontSize(int n)
{
    if (m_pFontTextData->m_nFontSize != n)
        ReplaceFont(m_pFontTextData, n);
}

void CGLChartView::AllChangeLineWidth(double d)
{
    m_dLineWidth = d;
    CChartPointDArrayArray& sets = m_pManager->m_InputData.m_arrChartData;
    for (INT_PTR i = 0; i < sets.GetSize(); ++i)
    {
        if (CChartPointDArray* p = sets.GetData()[i])
            p->m_dLineWidth = d;
    }
}

// ---------------------------------------------------------------------------
// View area

void CGLChartView::InitViewArea()
{
    m_pManager->m_nBaseZoomLevel = m_nZoomExponent;
    CPlotvane_InputData& data = m_pManager->m_InputData;
    if (!data.IsEnableDraw())
    {
        // Nothing to draw: a neutral range, and the view area as it was.
        data.m_dMaxX = 2.0;
        data.m_dMinX = -2.0;
        data.m_dMaxY = 2.0;
        data.m_dMinY = -2.0;
        return;
    }
    if (m_pManager->m_nFrequencyScale == 1)
        data.FindMaxAndMin_Log();
    else
        data.GetMaxAndMin();
}

void CGLChartView::ViewZoomfit()
{
    m_nZoomExponent = m_pManager->m_nBaseZoomLevel;
    InitViewArea();
    Invalidate(TRUE);
}

void CGLChartView::DecideViewScale()
{
    const CPlotvane_Attribute* pAttr = m_pParent->m_pAttribute;
    if (pAttr->m_XAxis.m_nMinExponent < 0)
        CPlotvane_InputData::SetViewScaleX(std::pow(10.0, std::abs(pAttr->m_XAxis.m_nMinExponent)));
    if (pAttr->m_YAxis.m_nMinExponent < 0)
        CPlotvane_InputData::SetViewScaleY(std::pow(10.0, std::abs(pAttr->m_YAxis.m_nMinExponent)));
}

void CGLChartView::SetChartDrawFit()
{
    m_pManager->m_InputData.FindMaxAndMin();
    m_pManager->RedrawGLChartView();
}

// The ninth of the interior is the tenth of the whole that the plot frame
// keeps for the value texts, so that the smaller corner lands on the origin.
void CGLChartView::SetViewAreaByPoint(CPointF p1, CPointF p2)
{
    // Points taken from a window without area are no numbers: keep the view.
    if (!std::isfinite(p1.x) || !std::isfinite(p1.y) || !std::isfinite(p2.x) ||
        !std::isfinite(p2.y))
        return;
    const double a = std::fmin(double(p1.x), double(p2.x));
    const double b = std::fmax(double(p1.x), double(p2.x));
    const double c = std::fmin(double(p1.y), double(p2.y));
    const double d = std::fmax(double(p1.y), double(p2.y));
    m_rcViewArea.SetData(float(a - (b - a) / 9.0), float(c - (d - c) / 9.0), float(b), float(d));
}

CPointD CGLChartView::GetOriginPoint()
{
    return GetChartFrame().Origin();
}

double CGLChartView::GetViewWidth()
{
    return GetChartFrame().Width();
}

double CGLChartView::GetViewHeight()
{
    return GetChartFrame().Height();
}

void CGLChartView::GetCurrentViewLeftTopPoint(double& x, double& y)
{
    const CPointF p = ClientPointToView(CPoint(1, 1));
    x = p.x;
    y = p.y;
}

void CGLChartView::GetCurrentViewRightBtmPoint(double& x, double& y)
{
    CRect rc;
    GetClientRect(&rc);
    const CPointF p = ClientPointToView(CPoint(rc.right, rc.bottom));
    x = p.x;
    y = p.y;
}

double CGLChartView::GetTextLPHeight(CRectF& /*rc*/, int nPixels)
{
    const CPointF origin(0.0f, 0.0f);
    CPoint pt = ViewPointToClient(origin);
    pt.y -= nPixels;
    const CPointF back = ClientPointToView(pt);
    return std::fabs(double(back.y) - double(origin.y));
}

double CGLChartView::GetTextLPWidth(CRectF& /*rc*/, int nPixels)
{
    const CPointF origin(0.0f, 0.0f);
    CPoint pt = ViewPointToClient(origin);
    pt.x -= nPixels;
    const CPointF back = ClientPointToView(pt);
    return std::fabs(double(back.x) - double(origin.x));
}

// ---------------------------------------------------------------------------
// Frame

plotvane::ChartFrame CGLChartView::GetChartFrame()
{
    return m_bFramePinned ? m_frame : MakeChartFrame();
}

// The rectangle comes from GetViewRectLP itself, so that it is the one every
// layer has always read; the matrices are read beside it for the pixel maps.
plotvane::ChartFrame CGLChartView::MakeChartFrame()
{
    plotvane::ChartFrame::Source src;
    src.rcVisible = GetViewRectLP();
    CRect rc;
    GetClientRect(&rc);
    src.nClientWidth = rc.Width();
    src.nClientHeight = rc.Height();
    glGetDoublev(GL_MODELVIEW_MATRIX, src.modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, src.projection);
    glGetIntegerv(GL_VIEWPORT, src.viewport);
    // A view not yet given its manager still has a rectangle to measure.
    if (const CPlotvane_Manager* m = m_pManager)
    {
        src.bLogX = m->m_nFrequencyScale == 1;
        src.bLogY = m->m_bUseMagnitude && m->m_nMagnitudeScale == 1;
    }
    src.dViewScaleX = CPlotvane_InputData::m_dViewScaleX;
    src.dViewScaleY = CPlotvane_InputData::m_dViewScaleY;
    return plotvane::ChartFrame(src);
}

int CGLChartView::OnCreate(LPCREATESTRUCT lpCreateStruct)
{
    if (CGLWnd::OnCreate(lpCreateStruct) == -1)
        return -1;
    if (m_hRC == nullptr)
        return 0;
    // The axis-name font is left unbuilt: axis names appear once the host
    // has given it a size (SetXYFontSize).
    MakeCurrent();
    m_pFontMeasure->BuildFont(GetDC()->GetSafeHdc());
    m_pFontDefault->BuildFont(GetDC()->GetSafeHdc());
    m_pFontTextData->BuildFont(GetDC()->GetSafeHdc());
    return 0;
}

void CGLChartView::OnPaint()
{
    CPaintDC dc(this);
    if (m_hRC == nullptr || m_pDC == nullptr)
        return;
    FitCurViewAreaWithWindow();
    RenderScene();
    glFinish();
    SwapBuffers(m_pDC->GetSafeHdc());
}

BOOL CGLChartView::OnEraseBkgnd(CDC* /*pDC*/)
{
    return TRUE;
}

// X and Y scale independently: the view area fills the window whatever its
// shape, and stays as it is.
void CGLChartView::FitCurViewAreaWithWindow()
{
    MakeCurrent();
    CRect rc;
    GetClientRect(&rc);
    glViewport(0, 0, rc.Width(), rc.Height());
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(m_rcViewArea.Left(), m_rcViewArea.Right(), m_rcViewArea.Bottom(), m_rcViewArea.Top(),
            m_fNear, m_fFar);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

void CGLChartView::RenderScene()
{
    m_bDecibelAxis = 0;
    const CString strYName = m_pManager->GetAxisYName();
    if (!strYName.IsEmpty() && strYName.Find("(dB)") >= 0)
        m_bDecibelAxis = 1;

    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    // Set after the clear, so that a colour written straight into the member
    // shows from the next frame on.
    glClearColor(GLclampf((m_crBackground & 0xFF) / 255.0),
                 GLclampf(((m_crBackground >> 8) & 0xFF) / 255.0),
                 GLclampf(((m_crBackground >> 16) & 0xFF) / 255.0), 0.0f);

    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    ApplyViewZoom();
    glInitNames();

    // Nothing below moves the projection, so one frame serves every layer.
    // The pin is undone however the paint ends.
    m_frame = MakeChartFrame();
    struct Pin
    {
        int& bPinned;
        const int bBefore;
        ~Pin() { bPinned = bBefore; }
    } pin{m_bFramePinned, m_bFramePinned};
    m_bFramePinned = 1;

    if (m_frame.IsLogX())
        DrawChart_Log();
    else
        DrawChart();

    TextLayerScope layer(*this, plotvane::ChartTextLayer::Annotation);
    DrawSelectNodeNames();
    DrawTextDB();
    DrawLineDB();
    if (m_nDrawMode == 1 || m_nDrawMode == 3)
        DrawCurrentTextData();
    if (m_nDrawMode == 2)
        DrawCurrentLineData();
}

// Curves come first: at equal depth what is drawn first stays on top, so
// that the curves lie over the axes and the grid.
void CGLChartView::DrawChart()
{
    const CPlotvane_Manager& m = *m_pManager;
    for (int index : m.m_InputData.m_DrawSet)
    {
        glPushName(GLuint(index + 1));
        DrawGraphLine(index);
        glPopName();
    }
    DrawAxisLine();
    {
        TextLayerScope layer(*this, plotvane::ChartTextLayer::Cursor);
        DrawXClippingLine();
        DrawYClippingLine();
        DrawClippingBox();
        DrawCrossLine();
    }
    DrawGridLine();
    TextLayerScope layer(*this, plotvane::ChartTextLayer::Overlay);
    DrawEyeMask();
    if (IsInDQSNet())
        DrawEyeDiagramJitter();
    if (glIsList(m_nDisplayList))
    {
        glCallList(m_nDisplayList);
        ReportListTexts();
    }

    if (m.m_bShowWorstSkew)
        DrawWorstSkew();
    if (!m.m_strNEXTNet.IsEmpty() && m.m_nCrosstalkPointIndex != -1)
        DrawNEXTorFEXTPt();
    // A NaN counts as set in these tests.
    if (!m.m_strNEXTNet.IsEmpty() && !m.m_strFEXTNet.IsEmpty() && m.m_dCrosstalkX1 != 0.0 &&
        m.m_dCrosstalkX2 != 0.0 && m.m_dCrosstalkY1 != 0.0)
        DrawCrosstalkJitter();
    if (!m.m_strFlightNet2.IsEmpty() && !m.m_strMeasureNet.IsEmpty() &&
        !m.m_strFlightNet1.IsEmpty() && m.m_dFlightTimeX1 != 0.0 && m.m_dFlightTimeX2 != 0.0 &&
        m.m_dFlightTimeLevel1 != 0.0)
        DrawFlightTime();
    if (m.m_bTargetImpedance)
        DrawTargetImpedance();
    if (m.m_bTDRImpedance)
        DrawTDRImpedance();
    DrawDFEPFreqDomainPara();
    DisplayMeasureInfo();
    DisplayAutoMeasureMarks();
    DrawBathtubMeasure();
}

// A logarithmic X axis has no boxes, eye masks or list overlays.
void CGLChartView::DrawChart_Log()
{
    for (int index : m_pManager->m_InputData.m_DrawSet)
    {
        glPushName(GLuint(index + 1));
        DrawGraphLine_Log(index);
        glPopName();
    }
    DrawAxisLine();
    {
        TextLayerScope layer(*this, plotvane::ChartTextLayer::Cursor);
        DrawXClippingLine();
        DrawYClippingLine();
        DrawCrossLine_Log();
    }
    DrawGridLine_Log();
    TextLayerScope layer(*this, plotvane::ChartTextLayer::Overlay);
    DisplayMeasureInfo();
    if (m_pManager->m_bTargetImpedance)
        DrawTargetImpedance_Log();
}

// ---------------------------------------------------------------------------
// Display list: the overlay of the measure type, measured once per rebuild.

void CGLChartView::MakeDisplayList()
{
    BeginWaitCursor();
    MakeCurrent();
    DeleteDisplayList();
    m_nDisplayList = glGenLists(1);
    m_listTexts.clear();
    m_bCompilingList = 1;
    TextLayerScope layer(*this, plotvane::ChartTextLayer::Overlay);
    glNewList(m_nDisplayList, GL_COMPILE);
    switch (m_pManager->m_nMeasureType)
    {
    case 0:
    case 2:
    case 7:
    case 8:
        DrawOverUnderShoot();
        break;
    case 1:
    case 3:
        DrawOverUnderShootArea();
        break;
    case 4:
    case 5:
        DrawVIX();
        break;
    case 6:
        DrawVID();
        break;
    default:
        break;
    }
    glEndList();
    m_bCompilingList = 0;
    EndWaitCursor();
}

void CGLChartView::DeleteDisplayList()
{
    if (glIsList(m_nDisplayList))
        glDeleteLists(m_nDisplayList, 1);
}

// ---------------------------------------------------------------------------
// Text hook

void CGLChartView::OnText(const CString& text, const CPointD& position)
{
    if ((!m_textHook && !m_bCompilingList) || m_bSelecting)
        return;
    plotvane::ChartText t;
    t.strText = text;
    t.ptLogical = position;
    t.crColor = plotvane::LastGLColor();
    t.layer = m_textLayer;
    if (m_bCompilingList)
        m_listTexts.push_back(std::move(t));
    else
        m_textHook(t);
}

void CGLChartView::ReportListTexts()
{
    if (!m_textHook)
        return;
    for (const plotvane::ChartText& t : m_listTexts)
        m_textHook(t);
}
