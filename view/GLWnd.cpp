#include <plotvane/view/GLWnd.h>

#include <plotvane/foundation/TLUtility.h>
#include <plotvane/platform/Backend.h>
#include <plotvane/platform/WinApi.h>
#include <plotvane/view/ChartViewUtil.h>

#include <GL/gl.h>
#include <GL/glu.h>

#include <climits>
#include <cmath>

namespace
{

// The flag bits that the format search filters on.
constexpr DWORD kFilterBits[] = {1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 8192};

PIXELFORMATDESCRIPTOR MakeSharedDescriptor(int displayDepth)
{
    PIXELFORMATDESCRIPTOR pfd{};
    pfd.nSize = sizeof(PIXELFORMATDESCRIPTOR);
    pfd.nVersion = 1;
    pfd.dwFlags = PFD_DOUBLEBUFFER | PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL;
    pfd.iPixelType = PFD_TYPE_RGBA;
    pfd.cColorBits = BYTE(displayDepth);
    pfd.cDepthBits = BYTE(pfd.cColorBits >> 1);
    pfd.cStencilBits = 1;
    return pfd;
}

bool IsRejected(const PIXELFORMATDESCRIPTOR& wanted, const PIXELFORMATDESCRIPTOR& candidate,
                DWORD forbidden)
{
    for (DWORD bit : kFilterBits)
    {
        if (bit == PFD_DOUBLEBUFFER && (wanted.dwFlags & PFD_DOUBLEBUFFER_DONTCARE))
            continue;
        if (bit == PFD_STEREO && (wanted.dwFlags & PFD_STEREO_DONTCARE))
            continue;
        const bool has = (candidate.dwFlags & bit) != 0;
        if (((wanted.dwFlags & bit) && !has) || ((forbidden & bit) && has))
            return true;
    }
    return false;
}

// One row of the score: where w and c differ, (limit - c) shifted, with the
// limit one less when w is above c. The shift is done unsigned so that a
// candidate beyond the limit sets the high bits as two's complement does.
int FieldTerm(BYTE w, BYTE c, int limit, int shift)
{
    if (w == c)
        return 0;
    const int lim = w < c ? limit : limit - 1;
    return int(unsigned(lim - int(c)) << shift);
}

int ScoreFormat(const PIXELFORMATDESCRIPTOR& w, const PIXELFORMATDESCRIPTOR& c, DWORD forbidden)
{
    int score = 0;
    score |= FieldTerm(w.cColorBits, c.cColorBits, 32, 23);
    score |= FieldTerm(w.cAlphaBits, c.cAlphaBits, 8, 10);
    score |= FieldTerm(w.cAccumBits, c.cAccumBits, 64, 4);
    score |= FieldTerm(w.cDepthBits, c.cDepthBits, 32, 13);
    score |= FieldTerm(w.cStencilBits, c.cStencilBits, 32, 18);
    score |= FieldTerm(w.cAuxBuffers, c.cAuxBuffers, 8, 1);
    if (w.iPixelType != c.iPixelType)
        score |= 1 << 30;
    if (w.iLayerType != c.iLayerType)
        score |= 1;

    const bool generic = (c.dwFlags & PFD_GENERIC_FORMAT) != 0;
    const bool accelerated = (c.dwFlags & PFD_GENERIC_ACCELERATED) != 0;
    if (!(w.dwFlags & PFD_GENERIC_FORMAT))
    {
        if (generic)
            score |= accelerated ? 1 << 28 : 1 << 29;
    }
    else if (!generic)
    {
        score |= 1 << 29;
    }
    else
    {
        const bool forbidAccelerated = (forbidden & PFD_GENERIC_ACCELERATED) != 0;
        if (accelerated == forbidAccelerated)
            score |= 1 << 28;
    }
    return score;
}

} // namespace

CGLWnd::CGLWnd()
    : m_hRC(nullptr), m_pDC(nullptr), m_bMouseDrag(0), m_fNear(-500.0f), m_fFar(500.0f),
      m_nZoomExponent(0), m_bDragFollowsMouse(0), m_bReverseWheel(0)
{
}

CGLWnd::~CGLWnd()
{
    ReleaseOpenGL();
}

// ---------------------------------------------------------------------------
// Context

BOOL CGLWnd::PreCreateWindow(CREATESTRUCT& cs)
{
    cs.style |= LONG(WS_CLIPCHILDREN | WS_CLIPSIBLINGS);
    return CWnd::PreCreateWindow(cs);
}

int CGLWnd::OnCreate(LPCREATESTRUCT lpCreateStruct)
{
    if (CWnd::OnCreate(lpCreateStruct) == -1)
        return -1;
    InitOpenGL();
    return 0;
}

bool CGLWnd::InitOpenGL()
{
    m_pDC = new CClientDC(this);
    if (m_pDC->GetSafeHdc() == nullptr)
    {
        delete m_pDC;
        m_pDC = nullptr;
        MessageBox("Error Obtaining DC");
        return false;
    }
    if (!SetupPixelFormat())
        return false;
    m_hRC = wglCreateContext(m_pDC->GetSafeHdc());
    if (m_hRC == nullptr)
    {
        MessageBox("Error Creating RC");
        return false;
    }
    if (!wglMakeCurrent(m_pDC->GetSafeHdc(), m_hRC))
    {
        MessageBox("Error making RC Current");
        return false;
    }
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClearDepth(1.0);
    glEnable(GL_DEPTH_TEST);
    return true;
}

bool CGLWnd::ReleaseOpenGL()
{
    wglMakeCurrent(nullptr, nullptr);
    if (m_hRC != nullptr && !wglDeleteContext(m_hRC))
        MessageBox("Could not delete RC");
    delete m_pDC;
    m_pDC = nullptr;
    return true;
}

bool CGLWnd::SetupPixelFormat()
{
    int depth = plotvane::GetDisplayColorDepth();
    if (depth <= 0)
        depth = 32;
    // One descriptor for every window of the process: the first window's
    // depth holds for all, and so does the generic flag once set.
    static PIXELFORMATDESCRIPTOR pfd = MakeSharedDescriptor(depth);

    CString info;
    const BOOL hardware = IsEnableOpenGL(info, GetParent());
    const bool forcedOff = TLUtility::GetInstance()->IsExistDebugFile("HARDWARE_ACC_OFF");
    const HDC hdc = m_pDC != nullptr ? m_pDC->GetSafeHdc() : nullptr;
    int format = 0;
    if (!forcedOff && hardware)
    {
        format = ChoosePixelFormat(hdc, &pfd);
    }
    else
    {
        pfd.dwFlags |= PFD_GENERIC_FORMAT;
        format = ChooseBestPixelFormat(hdc, &pfd, PFD_GENERIC_ACCELERATED);
    }
    if (format == 0)
        return false;
    return SetPixelFormat(hdc, format, &pfd) != FALSE;
}

int CGLWnd::ChooseBestPixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* wanted,
                                  DWORD forbiddenFlags)
{
    if (wanted->nSize != sizeof(PIXELFORMATDESCRIPTOR) || wanted->nVersion != 1)
    {
        SetLastError(0);
        return 0;
    }
    int best = 0;
    int bestScore = INT_MAX;
    PIXELFORMATDESCRIPTOR candidate;
    for (int format = 1; DescribePixelFormat(hdc, format, sizeof(candidate), &candidate) != 0;
         ++format)
    {
        if (IsRejected(*wanted, candidate, forbiddenFlags))
            continue;
        const int score = ScoreFormat(*wanted, candidate, forbiddenFlags);
        if (score < bestScore)
        {
            bestScore = score;
            best = format;
        }
    }
    if (best != 0)
        return best;
    return ChoosePixelFormat(hdc, wanted);
}

void CGLWnd::MakeCurrent()
{
    wglMakeCurrent(m_pDC != nullptr ? m_pDC->GetSafeHdc() : nullptr, m_hRC);
}

HGLRC CGLWnd::GetRenderContext()
{
    return m_hRC;
}

// ---------------------------------------------------------------------------
// View and coordinates

CRectF CGLWnd::GetViewRectLP()
{
    MakeCurrent();
    CRect rc;
    GetClientRect(&rc);
    return ClientRectToView(rc);
}

CPointF CGLWnd::ClientPointToView(const CPoint& pt)
{
    MakeCurrent();
    GLdouble modelview[16];
    GLdouble projection[16];
    GLint viewport[4];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glGetIntegerv(GL_VIEWPORT, viewport);
    CRect rc;
    GetClientRect(&rc);
    GLdouble x = 0.0;
    GLdouble y = 0.0;
    GLdouble z = 0.0;
    gluUnProject(GLdouble(pt.x), GLdouble(rc.bottom - pt.y - rc.top), 0.0, modelview, projection,
                 viewport, &x, &y, &z);
    return CPointF(float(x), float(y));
}

// Deliberately unlike ClientPointToView: the context is not made current,
// and Y is flipped with the height of the window rectangle, not the client's.
CPoint CGLWnd::ViewPointToClient(const CPointF& pt)
{
    GLdouble modelview[16];
    GLdouble projection[16];
    GLint viewport[4];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glGetIntegerv(GL_VIEWPORT, viewport);
    GLdouble x = 0.0;
    GLdouble y = 0.0;
    GLdouble z = 0.0;
    gluProject(GLdouble(pt.x), GLdouble(pt.y), 0.0, modelview, projection, viewport, &x, &y, &z);
    CRect rw;
    GetWindowRect(&rw);
    return CPoint(int(x), int(rw.Height() - y));
}

CRectF CGLWnd::ClientRectToView(const CRect& rc)
{
    const CPointF topLeft = ClientPointToView(CPoint(rc.left, rc.top));
    const CPointF bottomRight = ClientPointToView(CPoint(rc.right, rc.bottom));
    CRectF view;
    view.SetData(topLeft.x, bottomRight.y, bottomRight.x, topLeft.y);
    return view;
}

CRect CGLWnd::ViewRectToClient(const CRectF& rc)
{
    const CPoint topLeft = ViewPointToClient(CPointF(rc.Left(), rc.Top()));
    const CPoint bottomRight = ViewPointToClient(CPointF(rc.Right(), rc.Bottom()));
    return CRect(topLeft.x, topLeft.y, bottomRight.x, bottomRight.y);
}

void CGLWnd::ApplyViewZoom()
{
    const CPointF centre = m_rcViewArea.CenterPoint();
    const float scale = float(std::pow(double(1.2f), double(m_nZoomExponent)));
    glTranslatef(centre.x, centre.y, 0.0f);
    glScalef(scale, scale, 1.0f);
    glTranslatef(-centre.x, -centre.y, 0.0f);
}

void CGLWnd::SetViewProjection(int width, int height)
{
    const float windowAspect = float(width) / float(height);
    const float viewAspect = m_rcViewArea.width / m_rcViewArea.height;
    // No aspect to match for a window or an area without size: the area is
    // shown as it is, and stays.
    if (width <= 0 || height <= 0 || !std::isfinite(viewAspect) || viewAspect <= 0.0f)
    {
        glOrtho(m_rcViewArea.Left(), m_rcViewArea.Right(), m_rcViewArea.Bottom(),
                m_rcViewArea.Top(), m_fNear, m_fFar);
        return;
    }
    float left = m_rcViewArea.Left();
    float right = m_rcViewArea.Right();
    float bottom = m_rcViewArea.Bottom();
    float top = m_rcViewArea.Top();
    const CPointF centre = m_rcViewArea.CenterPoint();
    if (windowAspect >= viewAspect)
    {
        const float newWidth = windowAspect * m_rcViewArea.height;
        left = centre.x - newWidth / 2.0f;
        right = centre.x + newWidth / 2.0f;
    }
    else
    {
        const float newHeight = m_rcViewArea.width / windowAspect;
        bottom = centre.y - newHeight / 2.0f;
        top = centre.y + newHeight / 2.0f;
    }
    glOrtho(left, right, bottom, top, m_fNear, m_fFar);
    m_rcViewArea.x = left;
    m_rcViewArea.y = top;
    m_rcViewArea.width = right - left;
    m_rcViewArea.height = top - bottom;
}

void CGLWnd::FitCurViewAreaWithWindow()
{
    MakeCurrent();
    CRect rc;
    GetClientRect(&rc);
    const int width = rc.Width();
    const int height = rc.Height();
    glViewport(0, 0, width, height);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    SetViewProjection(width, height);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

void CGLWnd::OffsetViewArea(float dx, float dy)
{
    // A window without area maps points to no number at all; the view stays.
    if (!std::isfinite(m_rcViewArea.x + dx) || !std::isfinite(m_rcViewArea.y + dy))
        return;
    m_rcViewArea.x += dx;
    m_rcViewArea.y += dy;
}

void CGLWnd::DrawHorizontalViewLine(double y, DWORD color)
{
    const CRectF rc = GetViewRectLP();
    plotvane::SetGLColor(color);
    glBegin(GL_LINES);
    glVertex2d(rc.Left(), y);
    glVertex2d(rc.Right(), y);
    glEnd();
}

void CGLWnd::DrawVerticalViewLine(double x, DWORD color)
{
    const CRectF rc = GetViewRectLP();
    plotvane::SetGLColor(color);
    glBegin(GL_LINES);
    glVertex2d(x, rc.Bottom());
    glVertex2d(x, rc.Top());
    glEnd();
}

void CGLWnd::RenderScene() {}

void CGLWnd::ReadSelectionBuffer(const DWORD* buffer, unsigned hits, CDWordArrayArray& out)
{
    out.DeleteAll();
    unsigned index = 0;
    for (unsigned hit = 0; hit < hits; ++hit)
    {
        const DWORD count = buffer[index];
        CDWordArray* names = new CDWordArray;
        for (DWORD i = 0; i < count; ++i)
            names->Add(buffer[index + 3 + i]);
        out.Add(names);
        index += 3 + count;
    }
}

// ---------------------------------------------------------------------------
// Handlers

void CGLWnd::OnPaint()
{
    CPaintDC dc(this);
}

BOOL CGLWnd::OnEraseBkgnd(CDC* /*pDC*/)
{
    // OpenGL owns the whole client area.
    return TRUE;
}

void CGLWnd::OnDestroy()
{
    CWnd::OnDestroy();
}

void CGLWnd::OnSize(UINT nType, int cx, int cy)
{
    // The viewport is set at every paint, not here.
    CWnd::OnSize(nType, cx, cy);
}

BOOL CGLWnd::OnMouseWheel(UINT nFlags, short zDelta, CPoint pt)
{
    if (zDelta != 0)
    {
        const bool towardsUser = (zDelta > 0) != (m_bReverseWheel != 0);
        m_nZoomExponent += towardsUser ? -1 : 1;
        Invalidate();
    }
    return CWnd::OnMouseWheel(nFlags, zDelta, pt);
}

void CGLWnd::OnRButtonDown(UINT nFlags, CPoint point)
{
    if (m_bMouseDrag && GetCapture() != this)
    {
        SetCapture();
        m_ptDragStart = point;
        m_ptDragEnd = point;
    }
    CWnd::OnRButtonDown(nFlags, point);
}

void CGLWnd::OnMouseMove(UINT nFlags, CPoint point)
{
    if (m_bMouseDrag && GetCapture() == this)
    {
        if (m_bDragFollowsMouse == 0)
        {
            // Drawn with XOR on the shown frame: drawing the old line again
            // erases it, so that no repaint is needed while dragging.
            BeginFrontXor();
            DrawRubberLine();
            m_ptDragEnd = point;
            DrawRubberLine();
            EndFrontXor();
        }
        else
        {
            m_ptDragEnd = point;
        }
    }
    CWnd::OnMouseMove(nFlags, point);
}

void CGLWnd::BeginFrontXor()
{
    MakeCurrent();
    glDrawBuffer(GL_FRONT);
    glPushAttrib(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_ENABLE_BIT);
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_COLOR_LOGIC_OP);
    glLogicOp(GL_XOR);
    glColor3ub(255, 255, 255);
    glPushMatrix();
}

void CGLWnd::EndFrontXor()
{
    glPopMatrix();
    glPopAttrib();
    glFlush();
    plotvane::FrontBufferFlushed(m_pDC != nullptr ? m_pDC->GetSafeHdc() : nullptr);
    glDrawBuffer(GL_BACK);
}

void CGLWnd::DrawRubberLine()
{
    const CPointF start = ClientPointToView(m_ptDragStart);
    const CPointF end = ClientPointToView(m_ptDragEnd);
    glBegin(GL_LINES);
    glVertex2f(start.x, start.y);
    glVertex2f(end.x, end.y);
    glEnd();
}

void CGLWnd::OnRButtonUp(UINT nFlags, CPoint point)
{
    if (m_bMouseDrag)
    {
        if (GetCapture() == this)
        {
            // The stored end decides, not the point of the release: a click
            // without movement leaves start and end equal.
            if (m_ptDragStart != m_ptDragEnd)
            {
                m_ptDragEnd = point;
                PanByDrag();
            }
        }
        ReleaseCapture();
    }
    CWnd::OnRButtonUp(nFlags, point);
}

void CGLWnd::PanByDrag()
{
    const CPointF start = ClientPointToView(m_ptDragStart);
    const CPointF end = ClientPointToView(m_ptDragEnd);
    float dx = end.x - start.x;
    float dy = end.y - start.y;
    if (m_bDragFollowsMouse == 0)
    {
        dx = -dx;
        dy = -dy;
    }
    OffsetViewArea(dx, dy);
    Invalidate(TRUE);
}
