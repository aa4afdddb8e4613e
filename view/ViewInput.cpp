// Mouse, keyboard and zoom of the chart view. There is no left-button drag:
// everything is clicks and a following cross, and the right button drags
// the view. A left press does the first of: finish moving a text, click
// zoom, place cursors, grab a text, label the curves under the mouse.
#include <plotvane/view/GLChartView.h>

#include <plotvane/dialogs/Plotvane_Dlg.h>
#include <plotvane/dialogs/Plotvane_InputText_Dlg.h>
#include <plotvane/document/ChartMarkers.h>
#include <plotvane/document/Plotvane_InputData.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/platform/WinApi.h>

#include <GL/gl.h>
#include <GL/glu.h>

#include <cmath>
#include <cstdlib>

namespace
{

// The plain messages that tell the host about a zoom.
constexpr UINT kMsgMoreDecimalsX = 2524;
constexpr UINT kMsgMoreDecimalsY = 2525;
constexpr UINT kMsgZoomed = 2527;

constexpr UINT kKeyLeft = 37;
constexpr UINT kKeyUp = 38;
constexpr UINT kKeyRight = 39;
constexpr UINT kKeyDown = 40;
constexpr UINT kKeyEsc = 27;

bool IsKeyHeld(int vk)
{
    return GetAsyncKeyState(vk) != 0;
}

} // namespace

// ---------------------------------------------------------------------------
// Left button

void CGLChartView::OnLButtonDown(UINT nFlags, CPoint point)
{
    CPlotvane_Manager& m = *m_pManager;
    if (m_nDrawMode == 3)
        DropPickedText();
    else if (m.m_bClickZoomAvailable)
        ClickZoomPress(point);
    else
    {
        // Crossing values are computed through the store this static names;
        // another chart may have taken it since.
        CPlotvane_InputData::m_pInputData = &m.m_InputData;
        if (!PlaceCursorsAt(point))
        {
            if (m_nDrawMode == 0 && m_nPickingMode == 0)
                GrabTextAt(point);
            else if (m_nPickingMode != 0)
                LabelCurvesAt(point);
        }
    }
    if (m.m_bEyeMaskFollowMouse && m.m_pEyeMaskRectArray != nullptr &&
        m.m_pEyeMaskRectArray->GetSize() == 0)
        m.MakeEyeMaskArray();
    SetFocus();
    Invalidate(TRUE);
    CGLWnd::OnLButtonDown(nFlags, point);
}

void CGLChartView::DropPickedText()
{
    if (m_pPickedText != nullptr)
    {
        m_pPickedText->m_dX = m_pCurrentText->m_dX;
        m_pPickedText->m_dY = m_pCurrentText->m_dY;
        m_pPickedText->m_bVisible = 1;
    }
    m_pPickedText = nullptr;
    m_pCurrentText->m_strText.Empty();
    m_nDrawMode = 0;
}

void CGLChartView::ClickZoomPress(CPoint point)
{
    CPlotvane_Manager& m = *m_pManager;
    // A box in progress is abandoned; it stays in the array, invisible.
    m_pPendingBox = nullptr;
    m_nBoxClickCount = 0;
    if (!m.m_bClickZoomStarted)
    {
        m.m_ptClickZoomStartLP = ClientPointToView(point);
        m.m_ptClickZoomStart = CPointN(point.x, point.y);
        m.m_ptClickZoomEnd = m.m_ptClickZoomStart;
        m.m_bClickZoomStarted = 1;
        return;
    }
    ClickZoomArea(point);
    m.m_bClickZoomStarted = 0;
    m.m_bClickZoomAvailable = 0;
    ApplyZoomAreaToViewAndAdjustDecimalOfParentDlg(1);
}

// Every placing mode that is on acts on the same click.
bool CGLChartView::PlaceCursorsAt(CPoint point)
{
    const CPlotvane_Manager& m = *m_pManager;
    const CPointF p = ClientPointToView(point);
    bool bActed = false;
    if (m.m_bClippingVertical)
    {
        AddClickedClippingLine(1, p);
        bActed = true;
    }
    if (m.m_bClippingHorizontal)
    {
        AddClickedClippingLine(0, p);
        bActed = true;
    }
    if (m.m_bClippingVerticalBox)
    {
        ClickClippingBox(1, p);
        bActed = true;
    }
    if (m.m_bClippingHorizontalBox)
    {
        ClickClippingBox(0, p);
        bActed = true;
    }
    return bActed;
}

bool CGLChartView::PickingText(CChartTextData* pText, CPointF pt)
{
    if (pText == nullptr)
        return false;
    const double x = pt.x;
    const double y = pt.y;
    return x > pText->m_dX && x < pText->m_dX + pText->m_dWidth && y > pText->m_dY &&
           y < pText->m_dY + pText->m_dHeight;
}

void CGLChartView::GrabText(CChartTextData* pText)
{
    m_pPickedText = pText;
    *m_pCurrentText = *pText;
    pText->m_bVisible = 0;
    m_pCurrentText->m_bVisible = 1;
    m_nDrawMode = 3;
    Invalidate(TRUE);
}

// Cursor texts first, then free texts, box texts, curve labels. A box text
// does not end the search: a curve label under the same point takes over,
// and the box text stays hidden.
void CGLChartView::GrabTextAt(CPoint point)
{
    CPlotvane_Manager& m = *m_pManager;
    const CPointF p = ClientPointToView(point);
    m.m_ptCurrentMouse = CPointN(point.x, point.y);
    const auto tryGrab = [&](CChartTextData* pText) {
        if (!PickingText(pText, p))
            return false;
        GrabText(pText);
        return true;
    };

    if (m.m_pClippingLineArray != nullptr)
    {
        for (CChartClippingLine* pLine : *m.m_pClippingLineArray)
        {
            if (tryGrab(pLine->m_pValueText))
                return;
            if (pLine->m_pClippingTextArray != nullptr)
            {
                for (CChartTextData* pText : *pLine->m_pClippingTextArray)
                {
                    if (tryGrab(pText))
                        return;
                }
            }
            if (tryGrab(pLine->m_pDistanceText))
                return;
        }
    }
    for (CChartTextData* pText : *m_pTextDB)
    {
        if (tryGrab(pText))
            return;
    }
    if (m.m_pClippingBoxArray != nullptr)
    {
        for (CChartClippingBox* pBox : *m.m_pClippingBoxArray)
        {
            if (tryGrab(pBox->m_pWidthText) || tryGrab(pBox->m_pHeightText))
                break;
        }
    }
    for (CChartTextData* pText : *m_pSelectNodeNames)
    {
        if (tryGrab(pText))
            return;
    }
}

void CGLChartView::LabelCurvesAt(CPoint point)
{
    ProcessSelection(point.x, point.y);
    const CPointF p = ClientPointToView(point);
    CRectF rc = GetViewRectLP();
    CPlotvane_InputData& data = m_pManager->m_InputData;
    for (DWORD name : m_arrSelectNames)
    {
        if (name == 0)
            continue;
        const int index = int(name - 1);
        if (index >= int(data.GetDataSetSize()))
            continue;
        const CChartPointDArray* pSet = data.GetChartPointDArray(index);
        if (pSet == nullptr || pSet->m_bVisible != 1)
            continue;
        auto* pLabel = new CChartTextData;
        pLabel->m_bVisible = 1;
        pLabel->m_color = pSet->m_Color;
        pLabel->m_dX = p.x;
        pLabel->m_dY = p.y;
        pLabel->m_strText = pSet->m_strName;
        pLabel->m_dHeight = GetTextLPHeight(rc, 12);
        pLabel->m_dWidth = GetTextLPWidth(rc, int(pLabel->m_strText.GetLength() * 6.48));
        m_pSelectNodeNames->Add(pLabel);
    }
}

// ---------------------------------------------------------------------------
// Selection

int CGLChartView::ProcessSelection(int x, int y)
{
    m_arrSelectNames.RemoveAll();
    return ProcessSelection(x, y, m_arrSelectNames);
}

// Only curves carry a name (data set index + 1), and they are drawn first,
// so their four-word hit records lead the buffer and a fixed stride holds.
int CGLChartView::ProcessSelection(int x, int y, CDWordArray& names)
{
    if (m_hRC == nullptr)
        return 0;
    MakeCurrent();
    GLuint buffer[512] = {};
    glSelectBuffer(512, buffer);
    GLint viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glRenderMode(GL_SELECT);
    glLoadIdentity();
    gluPickMatrix(x, viewport[3] - y, 3.0, 3.0, viewport);
    glOrtho(m_rcViewArea.Left(), m_rcViewArea.Right(), m_rcViewArea.Bottom(), m_rcViewArea.Top(),
            m_fNear, m_fFar);
    {
        // A selection pass draws nothing anyone sees: its texts are not news
        // for the text hook.
        const int bBefore = m_bSelecting;
        m_bSelecting = 1;
        RenderScene();
        m_bSelecting = bBefore;
    }
    const GLint hits = glRenderMode(GL_RENDER);
    for (GLint i = 0; i < hits; ++i)
        names.Add(buffer[3 + 4 * i]);
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    return hits;
}

// ---------------------------------------------------------------------------
// Mouse move, right button, wheel

void CGLChartView::OnMouseMove(UINT nFlags, CPoint point)
{
    CPlotvane_Manager& m = *m_pManager;
    ShowCoordinates(point);
    if (m.m_bClickZoomStarted && m.m_bClickZoomAvailable)
        DrawClickZoomBand(point);
    else if (((m.m_bClippingHorizontal || m.m_bClippingVertical) && !m.m_bClickZoomAvailable) ||
             m.m_bEyeMaskFollowMouse ||
             ((m.m_bClippingHorizontalBox || m.m_bClippingVerticalBox) && !m.m_bClickZoomAvailable))
    {
        Invalidate(TRUE);
        m.m_ptCurrentMouse = CPointN(point.x, point.y);
    }
    if (m_nDrawMode == 1 || m_nDrawMode == 3 ||
        (m_nDrawMode == 2 && (m_nDrawStep == 0 || m_nDrawStep == 1)))
    {
        m.m_ptCurrentMouse = CPointN(point.x, point.y);
        Invalidate(TRUE);
    }
    else if (m_nDrawMode == 2)
        Invalidate(TRUE);
    CGLWnd::OnMouseMove(nFlags, point);
}

// " [ X name:number, Y name:number ] " in the status bar of the chart dialog.
void CGLChartView::ShowCoordinates(CPoint point)
{
    CPlotvane_Manager& m = *m_pManager;
    const CPointF p = ClientPointToView(point);
    const int nFormatBefore = m.m_nFormatType;
    CString strX;
    if (m.m_nFrequencyScale == 1)
    {
        m.m_nFormatType = 2;
        strX = m.GetDisplayNumberByFormatType(m.GetXUnit() * std::pow(10.0, double(p.x)));
    }
    else
        strX = m.GetDisplayNumberByFormatType(double(p.x) * m.GetScaleX());
    CString strY;
    if (m.m_nMagnitudeScale == 1)
        strY = m.GetDisplayNumberByFormatType(m.GetYUnit() * std::pow(10.0, double(p.y)));
    else
        strY = m.GetDisplayNumberByFormatType(double(p.y) * m.GetScaleY());
    CString text;
    text.Format(" [ %s:%s, %s:%s ] ", GetXAxisDisplayString().GetString(), strX.GetString(),
                GetYAxisDisplayString().GetString(), strY.GetString());
    m.m_nFormatType = nFormatBefore;
    if (m_pParent != nullptr)
        m_pParent->DisplayCurrentCoordInfo(text);
}

// XOR on the shown frame: drawing the old band again erases it, so that no
// repaint is needed while the mouse moves.
void CGLChartView::DrawClickZoomBand(CPoint point)
{
    CPlotvane_Manager& m = *m_pManager;
    if (m_hRC == nullptr)
    {
        m.m_ptClickZoomEnd = CPointN(point.x, point.y);
        return;
    }
    const auto band = [this, &m]() {
        const CPointF a = ClientPointToView(CPoint(m.m_ptClickZoomStart.x, m.m_ptClickZoomStart.y));
        const CPointF b = ClientPointToView(CPoint(m.m_ptClickZoomEnd.x, m.m_ptClickZoomEnd.y));
        glBegin(GL_LINE_LOOP);
        glVertex2f(a.x, a.y);
        glVertex2f(b.x, a.y);
        glVertex2f(b.x, b.y);
        glVertex2f(a.x, b.y);
        glEnd();
    };
    BeginFrontXor();
    band();
    m.m_ptClickZoomEnd = CPointN(point.x, point.y);
    band();
    EndFrontXor();
}

void CGLChartView::OnRButtonDown(UINT nFlags, CPoint point)
{
    SetFocus();
    m_bMouseDrag = 1;
    CGLWnd::OnRButtonDown(nFlags, point);
}

void CGLChartView::OnRButtonUp(UINT nFlags, CPoint point)
{
    CGLWnd::OnRButtonUp(nFlags, point);
    m_bMouseDrag = 0;
}

BOOL CGLChartView::OnMouseWheel(UINT nFlags, short zDelta, CPoint pt)
{
    if (zDelta != 0)
    {
        const bool bOut = (zDelta > 0) != (m_bReverseWheel != 0);
        if (bOut)
            ZoomOut();
        else
            ZoomIn();
    }
    // Not CGLWnd's handler: that would zoom a second time.
    return CWnd::OnMouseWheel(nFlags, zDelta, pt);
}

// ---------------------------------------------------------------------------
// Keys

BOOL CGLChartView::PreTranslateMessage(MSG* pMsg)
{
    if (pMsg->message == WM_KEYDOWN)
    {
        const UINT key = UINT(pMsg->wParam);
        const bool bCtrl = IsKeyHeld(VK_CONTROL);
        if ((key == 'T' || key == 't') && bCtrl)
        {
            m_nDrawMode = 1;
            AskCurrentText();
            Invalidate(TRUE);
            return TRUE;
        }
        if ((key == 'L' || key == 'l') && bCtrl)
        {
            m_nDrawMode = 2;
            Invalidate(TRUE);
            return TRUE;
        }
        if (key >= kKeyLeft && key <= kKeyDown)
            Pan_View(key);
        if (key == kKeyEsc)
            LeaveModesByEsc();
    }
    // Judged on the physical keys at any message, a mouse move included, so
    // that it repeats while both are down.
    if (IsKeyHeld(VK_MENU) && (GetAsyncKeyState('1') & 0x8000) != 0)
        ViewZoomfit();
    return CGLWnd::PreTranslateMessage(pMsg);
}

void CGLChartView::LeaveModesByEsc()
{
    CPlotvane_Manager& m = *m_pManager;
    if (m.m_bClickZoomAvailable)
    {
        m.m_bClickZoomAvailable = 0;
        m.m_bClickZoomStarted = 0;
        Invalidate(TRUE);
        if (m.m_pParentWnd != nullptr)
            m.m_pParentWnd->SendMessage(kMsgZoomed);
    }
    if (m_nDrawMode != 0)
    {
        // A text being moved stays hidden, and its owner red, until it is
        // grabbed again: m_pPickedText is kept.
        m_nDrawMode = 0;
        Invalidate(TRUE);
    }
}

void CGLChartView::AskCurrentText()
{
    CPlotvane_InputText_Dlg dlg(this);
    dlg.m_strText = m_pCurrentText->m_strText;
    if (dlg.DoModal() == IDOK)
        m_pCurrentText->m_strText = dlg.m_strText;
}

void CGLChartView::Pan_View(UINT nKey)
{
    const CRectF rc = GetViewRectLP();
    const float dx = rc.width / 10.0f;
    const float dy = rc.height / 10.0f;
    switch (nKey)
    {
    case kKeyLeft:
        OffsetViewArea(-dx, 0.0f);
        break;
    case kKeyUp:
        OffsetViewArea(0.0f, dy);
        break;
    case kKeyRight:
        OffsetViewArea(dx, 0.0f);
        break;
    case kKeyDown:
        OffsetViewArea(0.0f, -dy);
        break;
    default:
        break;
    }
    Invalidate(TRUE);
}

// ---------------------------------------------------------------------------
// Zoom

// State 1 and 2 narrow one axis by a twelfth at each side; the others step
// the zoom exponent.
void CGLChartView::ZoomIn()
{
    switch (m_pManager->m_nClickZoomState)
    {
    case 1:
    {
        const float step = m_rcViewArea.width / 12.0f;
        m_rcViewArea.x += step;
        m_rcViewArea.width -= 2.0f * step;
        break;
    }
    case 2:
    {
        const float step = m_rcViewArea.height / 12.0f;
        m_rcViewArea.y -= step;
        m_rcViewArea.height -= 2.0f * step;
        break;
    }
    default:
        ++m_nZoomExponent;
        break;
    }
    Invalidate(TRUE);
}

// Widens by a tenth at each side: not the inverse of ZoomIn.
void CGLChartView::ZoomOut()
{
    switch (m_pManager->m_nClickZoomState)
    {
    case 1:
    {
        const float step = float(double(m_rcViewArea.width) * 0.1);
        m_rcViewArea.x -= step;
        m_rcViewArea.width += 2.0f * step;
        break;
    }
    case 2:
    {
        const float step = float(double(m_rcViewArea.height) * 0.1);
        m_rcViewArea.y += step;
        m_rcViewArea.height += 2.0f * step;
        break;
    }
    default:
        --m_nZoomExponent;
        break;
    }
    Invalidate(TRUE);
}

void CGLChartView::ClickZoomArea(CPoint point)
{
    CPlotvane_Manager& m = *m_pManager;
    const CPointF p = ClientPointToView(point);
    const CRectF rc = GetViewRectLP();
    const double w = rc.width;
    const double h = rc.height;
    m.m_bClickZoomStarted = 0;
    m_nZoomExponent = m.m_nBaseZoomLevel;

    const CPointF s = m.m_ptClickZoomStartLP;
    const float x1 = std::fmin(s.x, p.x);
    const float x2 = std::fmax(s.x, p.x);
    const float y1 = std::fmin(s.y, p.y);
    const float y2 = std::fmax(s.y, p.y);
    int nState = m.m_nClickZoomState;
    if (nState == 3)
    {
        const int dx = std::abs(m.m_ptClickZoomStart.x - point.x);
        const int dy = std::abs(m.m_ptClickZoomStart.y - point.y);
        nState = dx > dy ? 4 : 5;
    }
    switch (nState)
    {
    case 0:
        SetViewAreaByPoint(p, s);
        break;
    case 1:
        SetViewAreaByPoint(CPointF(x1, rc.Top()), CPointF(x2, rc.Bottom()));
        break;
    case 2:
        SetViewAreaByPoint(CPointF(rc.Left(), y1), CPointF(rc.Right(), y2));
        break;
    case 4:
    {
        const double e = (double(x2) - double(x1)) * (h / w) * 0.5;
        SetViewAreaByPoint(CPointF(x1, float(p.y - e)), CPointF(x2, float(p.y + e)));
        break;
    }
    case 5:
    {
        const double e = (double(y2) - double(y1)) * (w / h) * 0.5;
        SetViewAreaByPoint(CPointF(float(p.x - e), y1), CPointF(float(p.x + e), y2));
        break;
    }
    default:
        break;
    }
}

void CGLChartView::ApplyZoomAreaToViewAndAdjustDecimalOfParentDlg(int bRepaint)
{
    // The new projection must be in force before the grid is asked.
    if (bRepaint)
        OnPaint();
    CPlotvane_Manager& m = *m_pManager;
    if (m.m_pParentWnd == nullptr)
        return;
    const CRectF rc = GetViewRectLP();
    const int nx = int(double(rc.width) / m.GetXGridInterval());
    const int ny = int(double(rc.height) / m.GetYGridInterval());
    if (unsigned(ny + 1) <= 4u)
        m.m_pParentWnd->SendMessage(kMsgMoreDecimalsY);
    if (unsigned(nx + 1) <= 4u)
        m.m_pParentWnd->SendMessage(kMsgMoreDecimalsX);
    m.m_pParentWnd->SendMessage(kMsgZoomed);
}

void CGLChartView::SetClickZoomAvailable(int bAvailable)
{
    m_pManager->m_bClickZoomAvailable = bAvailable;
}

void CGLChartView::SetClickZoomState(int nState)
{
    m_pManager->m_nClickZoomState = nState;
}
