// What every measurement overlay draws with: boxes, arrows and the measure
// text, plus the two overlays that need nothing else (the status summary of
// the drawn curves and the automatic measure points). All coordinates are
// logical; overlay polygons stand at z 500 so that they lie in front of the
// curves, and arrows switch the depth test off instead.
#include <plotvane/view/GLChartView.h>

#include <plotvane/dialogs/Plotvane_Dlg.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/view/ChartViewUtil.h>
#include <plotvane/view/GLTextBmp.h>

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

using plotvane::SetGLColor;

namespace
{
constexpr double kBoxZ = 500.0;
constexpr double kPi = 3.14159265358979323846;

void BoxVertices(GLenum mode, double x1, double y1, double x2, double y2)
{
    glBegin(mode);
    glVertex3d(x1, y1, kBoxZ);
    glVertex3d(x2, y1, kBoxZ);
    glVertex3d(x2, y2, kBoxZ);
    glVertex3d(x1, y2, kBoxZ);
    glEnd();
}

// Angles travel as a signed 32-bit fraction of a half turn, 2^31 standing
// for pi; a full half turn wraps to -pi, the same direction.
std::int32_t AngleToFixed(double dRadians)
{
    const double v = dRadians / kPi * 2147483648.0;
    return std::int32_t(std::uint32_t(std::int64_t(v)));
}

double FixedToAngle(std::int32_t n)
{
    return double(n) * kPi / 2147483648.0;
}

// Translation to (x, y) after a yaw about Z and a pitch about Y, column
// major for glMultMatrixd.
void ArrowFrame(double x, double y, double dYaw, double dPitch, GLdouble m[16])
{
    const double cy = std::cos(dYaw), sy = std::sin(dYaw);
    const double cp = std::cos(dPitch), sp = std::sin(dPitch);
    const GLdouble v[16] = {cy * cp, sy * cp, -sp, 0.0, -sy, cy, 0.0, 0.0,
                            cy * sp, sy * sp, cp,  0.0, x,   y,  0.0, 1.0};
    std::copy(v, v + 16, m);
}

// The shaft and the outlined heads of an arrow in its own frame, where the
// arrow runs from the origin along dir (1, 0) or (0, 1) over dLength; the
// heads spread across it by dHalf.
void ArrowLines(const GLdouble m[16], DWORD color, double dLength, double dHead, double dHalf,
                bool bAlongY, int bHeadAtStart, int bHeadAtEnd)
{
    // (u, v): u along the arrow, v across it.
    auto vertex = [bAlongY](double u, double v)
    {
        if (bAlongY)
            glVertex3d(v, u, 0.0);
        else
            glVertex3d(u, v, 0.0);
    };
    auto triangle = [&](double u0, double u1)
    {
        vertex(u0, 0.0);
        vertex(u1, -dHalf);
        vertex(u1, -dHalf);
        vertex(u1, dHalf);
        vertex(u1, dHalf);
        vertex(u0, 0.0);
    };
    glPushAttrib(GL_CURRENT_BIT | GL_LINE_BIT | GL_ENABLE_BIT);
    glLineWidth(3.0f);
    glDisable(GL_DEPTH_TEST);
    glPushMatrix();
    glMultMatrixd(m);
    SetGLColor(color);
    glBegin(GL_LINES);
    vertex(0.0, 0.0);
    vertex(dLength, 0.0);
    if (bHeadAtStart)
        triangle(0.0, dHead);
    if (bHeadAtEnd)
        triangle(dLength, dLength - dHead);
    glEnd();
    glPopMatrix();
    glPopAttrib();
}
} // namespace

// ---------------------------------------------------------------------------
// Boxes

void CGLChartView::DrawBox(double x1, double y1, double x2, double y2, DWORD color,
                           CString strLabel)
{
    SetGLColor(color);
    glPushAttrib(GL_ENABLE_BIT);
    glEnable(GL_POLYGON_STIPPLE);
    glPolygonStipple(plotvane::OverlayStipple());
    BoxVertices(GL_POLYGON, x1, y1, x2, y2);
    BoxVertices(GL_LINE_LOOP, x1, y1, x2, y2);
    if (!strLabel.IsEmpty())
    {
        // Only the width is measured: these boxes mark time windows.
        const CString text = strLabel + m_pManager->GetDisplayNumberByFormatType(
                                            std::fabs(x2 - x1) * m_pManager->GetScaleX());
        SetGLColor(m_crLabel);
        m_pFontMeasure->PrintText(text, CPointD((x1 + x2) * 0.5, (y1 + y2) * 0.5), nullptr);
    }
    glPopAttrib();
}

void CGLChartView::DrawBoxSolid(double x1, double y1, double x2, double y2, DWORD color,
                                CString strLabel)
{
    SetGLColor(color);
    BoxVertices(GL_POLYGON, x1, y1, x2, y2);
    BoxVertices(GL_LINE_LOOP, x1, y1, x2, y2);
    if (strLabel.IsEmpty())
        return;
    const CString text = strLabel + m_pManager->GetDisplayNumberByFormatType(
                                        std::fabs(x2 - x1) * m_pManager->GetScaleX());
    plotvane::SetGLColor(0x000000);
    m_pFontMeasure->PrintText(text, CPointD((x1 + x2) * 0.5, (y1 + y2) * 0.5), nullptr);
}

// ---------------------------------------------------------------------------
// Arrows

// The head is at most a fortieth of the visible width, and its spread is
// corrected by the window's aspect so that it looks the same on a wide
// window as on a tall one.
void CGLChartView::DrawHorizontalArrowLine(double x1, double y1, double x2, double y2, DWORD color,
                                           int bHeadAtStart, int bHeadAtEnd)
{
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const double dLength = double(float(std::sqrt(dx * dx + dy * dy)));
    const plotvane::ChartFrame f = GetChartFrame();
    const double W = f.Width();
    const double H = f.Height();
    const double dHead = std::min(W / 40.0, dLength * 0.125);
    const double k = m_pManager->GetScaleX() / m_pManager->GetScaleY();
    const double dHalf = dHead * 0.5 * k / ((W / H) * k);

    const double dYaw = FixedToAngle(AngleToFixed(std::atan2(dy, dx)));
    const double dPitch = FixedToAngle(AngleToFixed(std::atan2(0.0, std::sqrt(dx * dx + dy * dy))));
    GLdouble m[16];
    ArrowFrame(x1, y1, dYaw, dPitch, m);
    ArrowLines(m, color, dLength, dHead, dHalf, false, bHeadAtStart, bHeadAtEnd);
}

// Unlike the arrow above: a fixed logical cap on the head, no aspect
// correction and no rotation, so it always points up from the first point.
void CGLChartView::DrawVerticalArrowLine(double x1, double y1, double x2, double y2, DWORD color,
                                         int bHeadAtStart, int bHeadAtEnd)
{
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const double dLength = double(float(std::sqrt(dx * dx + dy * dy)));
    const double dHead = std::min(1.0, dLength * 0.125);
    const double dHalf = dHead * 0.5 * m_pManager->GetScaleY() / m_pManager->GetScaleX();
    GLdouble m[16];
    ArrowFrame(x1, y1, 0.0, 0.0, m);
    ArrowLines(m, color, dLength, dHead, dHalf, true, bHeadAtStart, bHeadAtEnd);
}

// ---------------------------------------------------------------------------
// Status summary and automatic marks

// The accumulators start at 0.0 and position 0 of the list seeds them,
// valid or not: a bad first entry leaves 0.0 in the comparison.
void CGLChartView::DisplayMeasureInfo()
{
    CPlotvane_Dlg* pDlg = dynamic_cast<CPlotvane_Dlg*>(GetParent());
    if (pDlg == nullptr)
        return;
    const CPlotvane_InputData& data = m_pManager->m_InputData;
    const CNSet& drawn = data.m_DrawSet;
    double dMin = 0.0;
    double dMax = 0.0;
    for (INT_PTR k = 0; k < drawn.GetSize(); ++k)
    {
        const int i = drawn.GetData()[k];
        if (i < 0 || (unsigned long long)i >= data.GetDataSetSize())
            continue;
        const CChartPointDArray* p = data.GetChartPointDArray(i);
        if (p == nullptr)
            continue;
        if (k == 0)
        {
            dMin = p->GetMinY();
            dMax = p->GetMaxY();
        }
        else
        {
            dMin = std::min(dMin, p->GetMinY());
            dMax = std::max(dMax, p->GetMaxY());
        }
    }
    const double dPeak = std::fabs(dMax - dMin);
    CString str;
    if (GetChartFrame().IsLogY())
        str.Format("MinY:%s, MaxY:%s, Peak-Peak:%s",
                   (const char*)m_pManager->GetDisplayNumberByFormatType(dMin),
                   (const char*)m_pManager->GetDisplayNumberByFormatType(dMax),
                   (const char*)m_pManager->GetDisplayNumberByFormatType(dPeak));
    else
        str.Format("MinY:%2.3f, MaxY:%2.3f, Peak-Peak:%2.3f", dMin, dMax, dPeak);
    pDlg->DisplayDistanceInfo(str);
}

void CGLChartView::DisplayAutoMeasureMarks()
{
    if (!m_pManager->m_bDisplayAutoMeasureMarks)
        return;
    // Linear on both axes, whatever the frame's axes are.
    const plotvane::ChartFrame f = GetChartFrame();
    const double sx = f.ViewScaleX();
    const double sy = f.ViewScaleY();
    const CArrayPointD& marks = m_pManager->m_arrAutoMeasureMarks;
    const CPointD* pts = marks.GetData();
    glPushMatrix();
    SetGLColor(m_crMeasureMark);
    glPointSize(GLfloat(m_dPointSize));
    glBegin(GL_POINTS);
    for (INT_PTR i = 0; i < marks.GetSize(); ++i)
        glVertex2f(GLfloat(pts[i].x * sx), GLfloat(pts[i].y * sy));
    glEnd();
    glPopMatrix();
}
