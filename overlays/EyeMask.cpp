// Eye mask and bathtub: the keep-out hexagon or rectangle that the user
// places on an eye, and the width of bathtub curves at chosen bit error
// rates, as double arrows on a logarithmic Y axis. Both read the manager's
// fields on every frame; the host measures the bathtub and fills the map.
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/view/ChartViewUtil.h>
#include <plotvane/view/GLTextBmp.h>

#include <GL/gl.h>

#include <cmath>
#include <cstdlib>

using plotvane::SetGLColor;

namespace
{
constexpr double kMaskZ = 500.0;

// The mask's half sizes in logical units, taken anew for every draw so that
// a stored hexagon follows the fields at once. The percentages are divided
// by 100 twice and halved once more on top of the half width: hosts size
// their masks by that rule.
struct MaskSize
{
    double uy;
    double a;  // half width of the flat top and bottom
    double b;  // half width at the tips on the centre line
    double hh; // half height

    bool IsHexagon() const { return b > a; }
};

MaskSize MaskSizeOf(CPlotvane_Manager& m)
{
    const double ux = m.GetXUnit() / m.GetScaleX();
    const double uy = m.GetYUnit() / m.GetScaleY();
    const double dHalfWidth = ux * m.m_dEyeMaskWidth * 0.5;
    MaskSize s;
    s.uy = uy;
    s.a = m.m_dEyeMaskTopPercent / 100.0 * dHalfWidth * 0.5 / 100.0;
    s.b = m.m_dEyeMaskBottomPercent / 100.0 * dHalfWidth * 0.5 / 100.0;
    s.hh = uy * m.m_dEyeMaskHeight * 0.5;
    return s;
}

void MaskOutline(const MaskSize& s, double cx, double cy)
{
    glBegin(GL_LINE_LOOP);
    if (s.IsHexagon())
    {
        glVertex3d(cx - s.b, cy, kMaskZ);
        glVertex3d(cx - s.a, cy - s.hh, kMaskZ);
        glVertex3d(cx + s.a, cy - s.hh, kMaskZ);
        glVertex3d(cx + s.b, cy, kMaskZ);
        glVertex3d(cx + s.a, cy + s.hh, kMaskZ);
        glVertex3d(cx - s.a, cy + s.hh, kMaskZ);
    }
    else
    {
        glVertex3d(cx - s.a, cy - s.hh, kMaskZ);
        glVertex3d(cx + s.a, cy - s.hh, kMaskZ);
        glVertex3d(cx + s.a, cy + s.hh, kMaskZ);
        glVertex3d(cx - s.a, cy + s.hh, kMaskZ);
    }
    glEnd();
}

// The centre of a mask that hangs on the mouse: the mouse's logical X, and a
// Y by the centre mode (0: the manager's centre field, 1: zero, otherwise the
// mouse's own).
CPointD MouseCentre(CGLChartView& view, CPlotvane_Manager& m, const MaskSize& s)
{
    const CPointF pt = view.ClientPointToView(CPoint(m.m_ptCurrentMouse.x, m.m_ptCurrentMouse.y));
    double cy = pt.y;
    if (m.m_nEyeMaskCenterMode == 0)
        cy = double(float(s.uy * m.m_dEyeMaskCenterY));
    else if (m.m_nEyeMaskCenterMode == 1)
        cy = 0.0;
    return CPointD(pt.x, cy);
}

void StoredRectOutline(const CRectD& rc)
{
    glBegin(GL_LINE_LOOP);
    glVertex3d(rc.Left(), rc.Top(), kMaskZ);
    glVertex3d(rc.Right(), rc.Top(), kMaskZ);
    glVertex3d(rc.Right(), rc.Bottom(), kMaskZ);
    glVertex3d(rc.Left(), rc.Bottom(), kMaskZ);
    glEnd();
}
} // namespace

void CGLChartView::DrawEyeMask()
{
    CPlotvane_Manager& m = *m_pManager;
    const MaskSize s = MaskSizeOf(m);
    const CArrayRectD& masks = *m.m_pEyeMaskRectArray;
    const INT_PTR n = masks.GetSize();
    // The colour is set only when a mask is drawn: the layers after this one
    // find the current colour as the frame left it.
    if (m.m_bEyeMaskVisible && n >= 1)
    {
        SetGLColor(m_crEyeMask);
        // A stored hexagon takes the sizes of this frame around its centre; a
        // stored rectangle keeps the size it was placed with.
        for (const CRectD* rc : masks)
        {
            if (rc == nullptr)
                continue;
            if (s.IsHexagon())
            {
                const CPointD c = rc->CenterPoint();
                MaskOutline(s, c.x, c.y);
            }
            else
            {
                StoredRectOutline(*rc);
            }
        }
    }
    if (m.m_bEyeMaskFollowMouse && n == 0)
    {
        SetGLColor(m_crEyeMask);
        const CPointD c = MouseCentre(*this, m, s);
        MaskOutline(s, c.x, c.y);
    }
}

// The click that ends the placing: the one mask where the mouse stands, as
// wide as its widest part.
void CGLChartView::MakeEyeMaskArray()
{
    CPlotvane_Manager& m = *m_pManager;
    m.m_pEyeMaskRectArray->DeleteAll();
    const MaskSize s = MaskSizeOf(m);
    const CPointD c = MouseCentre(*this, m, s);
    const double w = s.IsHexagon() ? s.b : s.a;
    CRectD* rc = new CRectD;
    rc->SetData(c.x - w, c.y - s.hh, c.x + w, c.y + s.hh);
    m.m_pEyeMaskRectArray->Add(rc);
    m.m_bEyeMaskFollowMouse = 0;
}

// One double arrow per curve and error rate between the two crossing times
// the host measured; its width stands below it, the n-th curve of a rate n
// twentieths of the view lower, so that curves of one rate do not overlap.
void CGLChartView::DrawBathtubMeasure()
{
    CPlotvane_Manager& m = *m_pManager;
    if (!m.m_bBathtub || !m.m_bUseMagnitude || !m.m_nMagnitudeScale)
        return;
    const plotvane::ChartFrame f = GetChartFrame();
    const double H = f.Height();
    const double sx = m.GetScaleX();
    const double gx = f.ViewScaleX();
    for (const auto& rate : m.m_mapBathtub)
    {
        const double y = plotvane::ChartFrame::LogAxisValue(std::atof(rate.first));
        int i = 0;
        for (const auto& curve : rate.second)
        {
            ++i;
            const DWORD color = curve.first;
            const double x1w = curve.second.x * gx;
            const double x2w = curve.second.y * gx;
            DrawHorizontalArrowLine(x1w, y, x2w, y, color, 1, 1);
            CString str;
            str.Format("%.4f", std::fabs(x1w - x2w) * sx);
            glPushMatrix();
            SetGLColor(color);
            m_pFontMeasure->PrintText(str, CPointD((x1w + x2w) * 0.5, y - (H / 20.0) * i),
                                      nullptr);
            glPopMatrix();
        }
    }
}
