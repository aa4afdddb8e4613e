// The chart's frame: axis lines from the plot frame's origin, axis names
// with their unit text, the grid in its three looks with the minor decade
// lines of logarithmic axes, and the value texts along both axes. Every
// place is a share of the visible logical rectangle, so that labels keep
// their screen place at any zoom.
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/view/ChartViewUtil.h>
#include <plotvane/view/GLTextBmp.h>

#include <GL/gl.h>

#include <cmath>

using plotvane::SetGLColor;
using plotvane::TruncToInt;

namespace
{

void Segment(double x1, double y1, double x2, double y2)
{
    glBegin(GL_LINES);
    glVertex2d(x1, y1);
    glVertex2d(x2, y2);
    glEnd();
}

// Mode 2 draws the line dotted, and its tick in the margin solid.
constexpr GLushort kGridStipple = 257;

} // namespace

// ---------------------------------------------------------------------------
// Axes

void CGLChartView::DrawAxisLine()
{
    const plotvane::ChartFrame f = GetChartFrame();
    glLineWidth(GLfloat(m_dAxisLineWidth));
    SetGLColor(m_crAxis);
    glBegin(GL_LINES);
    glVertex2d(f.OriginX(), f.OriginY());
    glVertex2d(f.Right(), f.OriginY());
    glVertex2d(f.OriginX(), f.OriginY());
    glVertex2d(f.OriginX(), f.Top());
    glEnd();
    glLineWidth(1.0f);
    DrawAxisName();
}

void CGLChartView::DrawAxisName()
{
    TextLayerScope layer(*this, plotvane::ChartTextLayer::AxisName);
    const plotvane::ChartFrame f = GetChartFrame();
    SetGLColor(m_crLabel);
    m_pFontXY->PrintText(GetXAxisDisplayString(),
                         CPointD(f.Right() - f.Width() * 0.5, f.Bottom() + f.Height() / 50),
                         nullptr);
    m_pFontXY->PrintText(GetYAxisDisplayString(), CPointD(f.Left(), f.Top() - f.Height() / 30),
                         nullptr);
}

// A unit word of the attribute wins; without one the prefix of the data's
// unit base is shown.
CString CGLChartView::GetXAxisDisplayString()
{
    const CAxisAttribute& axis = m_pManager->m_Attribute.m_XAxis;
    const CString strUnit = axis.GetUnitName();
    if (!strUnit.IsEmpty())
        return GetAxisName(axis.GetAxisName(), ChangeUnitString(strUnit));
    return GetAxisName(axis.GetAxisName(), GetUnitNameX(m_pManager->GetXUnitBase()));
}

CString CGLChartView::GetYAxisDisplayString()
{
    const CAxisAttribute& axis = m_pManager->m_Attribute.m_YAxis;
    const CString strUnit = axis.GetUnitName();
    if (!strUnit.IsEmpty())
        return GetAxisName(axis.GetAxisName(), ChangeUnitString(strUnit));
    return GetAxisName(axis.GetAxisName(), GetUnitNameY(m_pManager->GetYUnitBase()));
}

// In the engineering format the numbers carry their own prefix letters, so
// the name stays bare. A name with a bracket takes the unit inside it:
// "Time (s)" with "n" becomes "Time (ns)".
CString CGLChartView::GetAxisName(CString strName, CString strUnit)
{
    if (m_pManager->m_nFormatType == 2)
        return strName;
    if (strName.Find('(') >= 0)
    {
        strUnit.Remove('(');
        strUnit.Remove(')');
        strName.Replace("(", CString("(") + strUnit);
        return strName;
    }
    if (strUnit.IsEmpty())
        return strName;
    // A unit that has brackets already gets a second pair.
    return strName + "(" + strUnit + ")";
}

CString CGLChartView::GetAxisName_Log(CString strName, CString strUnit)
{
    if (m_pManager->m_nFormatType == 2)
        return strName;
    if (strName.Find('(') >= 0)
    {
        strUnit.Remove('(');
        strUnit.Remove(')');
        strName.Replace("(", CString("(") + strUnit);
        return strName;
    }
    return strName + strUnit;
}

CString CGLChartView::ChangeUnitString(CString strUnit)
{
    static const struct
    {
        const char* word;
        const char* prefix;
    } kWords[] = {{"pico", "p"}, {"nano", "n"}, {"micro", "u"}, {"milli", "m"}, {"0", ""},
                  {"Kilo", "K"}, {"Mega", "M"}, {"Giga", "G"},  {"Tera", "T"}};
    for (const auto& w : kWords)
    {
        if (strUnit == w.word)
            return w.prefix;
    }
    return strUnit;
}

namespace
{

// The prefix of a unit base, with the X or the Y spelling above 1; the Y
// spelling has lower-case "k" and "g".
const char* UnitPrefix(int nExponent, bool bYSpelling)
{
    const int n = std::abs(nExponent);
    if (nExponent <= 0)
    {
        switch (n)
        {
        case 3:
            return "(m";
        case 6:
            return "(u";
        case 9:
            return "(n";
        case 12:
            return "(p";
        default:
            return "";
        }
    }
    switch (n)
    {
    case 3:
        return bYSpelling ? "(k" : "(K";
    case 6:
        return "(M";
    case 9:
        return bYSpelling ? "(g" : "(G";
    case 12:
        return "(T";
    default:
        return "";
    }
}

CString BracketedUnit(const CString& strPrefix, const CString& strUnit)
{
    if (!strPrefix.IsEmpty())
        return strPrefix + strUnit + ")";
    if (!strUnit.IsEmpty())
        return CString("(") + strUnit + ")";
    return CString();
}

} // namespace

CString CGLChartView::GetUnitNameX(int nExponent)
{
    if (m_pManager->m_nFormatType == 2)
        return CString();
    return BracketedUnit(UnitPrefix(nExponent, false), m_pManager->GetUnitNameX());
}

// Takes the X axis's unit name too: both axes have always shown it so.
CString CGLChartView::GetUnitNameY(int nExponent)
{
    return BracketedUnit(UnitPrefix(nExponent, true), m_pManager->GetUnitNameX());
}

// ---------------------------------------------------------------------------
// Grid

void CGLChartView::DrawGridLine()
{
    const double dx = m_pManager->GetXGridInterval();
    const double dy = m_pManager->GetYGridInterval();
    const int nSaved = m_pManager->m_nFormatType;
    m_pManager->m_nFormatType = 2;
    DrawGridValueText(dx, dy);
    m_pManager->m_nFormatType = nSaved;
    glLineWidth(GLfloat(m_dGridLineWidth));
    DrawGrid(dx, dy, m_crGrid, 1);
    glLineWidth(1.0f);
}

void CGLChartView::DrawGridLine_Log()
{
    const double dx = m_pManager->GetXGridInterval();
    const double dy = m_pManager->GetYGridInterval();
    const int nSaved = m_pManager->m_nFormatType;
    m_pManager->m_nFormatType = 2;
    DrawGridValueText_Log(dx, dy);
    m_pManager->m_nFormatType = nSaved;
    glLineWidth(GLfloat(m_dGridLineWidth));
    DrawGrid(dx, dy, m_crGrid, 1);
    glLineWidth(1.0f);
}

void CGLChartView::DrawGridHLine(double y, double ox, double tx, double right) const
{
    if (m_nGridMode == 1)
    {
        Segment(ox - tx, y, ox, y);
        return;
    }
    if (m_nGridMode == 2)
    {
        glEnable(GL_LINE_STIPPLE);
        glLineStipple(1, kGridStipple);
        Segment(ox - tx, y, right, y);
        glDisable(GL_LINE_STIPPLE);
        Segment(ox - tx, y, ox, y);
        return;
    }
    Segment(ox - tx, y, right, y);
}

void CGLChartView::DrawGridVLine(double x, double oy, double ty, double top) const
{
    if (m_nGridMode == 1)
    {
        Segment(x, oy - ty, x, oy);
        return;
    }
    if (m_nGridMode == 2)
    {
        glEnable(GL_LINE_STIPPLE);
        glLineStipple(1, kGridStipple);
        Segment(x, oy - ty, x, top);
        glDisable(GL_LINE_STIPPLE);
        Segment(x, oy - ty, x, oy);
        return;
    }
    Segment(x, oy - ty, x, top);
}

// Lines lie on whole multiples of the interval in logical space. Each line
// is issued once per cell: the repetition changes nothing on the screen and
// the cell count is capped by the interval functions.
void CGLChartView::DrawGrid(double dx, double dy, DWORD color, int bLines) const
{
    // Reading the visible rectangle goes through the GL window's mapping,
    // which is not const; drawing changes nothing of the view.
    CGLChartView& self = const_cast<CGLChartView&>(*this);
    glPointSize(1.0f);
    SetGLColor(color);

    const plotvane::ChartFrame f = self.GetChartFrame();
    const double ox = f.OriginX();
    const double oy = f.OriginY();
    const int ny = TruncToInt(f.Height() / dy + 2.0);
    const int nx = TruncToInt(f.Width() / dx + 2.0);
    const double sx = f.Left() - std::fmod(f.Left(), dx);
    const double sy = f.Bottom() - std::fmod(f.Bottom(), dy);

    if (!bLines)
    {
        glBegin(GL_POINTS);
        for (int i = 0; i < ny; ++i)
        {
            for (int j = 0; j < nx; ++j)
                glVertex2d(j * dx + sx, i * dy + sy);
        }
        glEnd();
        return;
    }

    // Tick length: 10 pixels in logical units.
    const double tx = f.LogicalPerPixelX() * 10.0;
    const double ty = f.LogicalPerPixelY() * 10.0;

    // Minor decade lines on Y want the magnitude flag at exactly 1, where
    // the axis itself is logarithmic for any nonzero flag.
    const bool bLogY = f.IsLogY() && m_pManager->m_bUseMagnitude == 1;
    const bool bLogX = f.IsLogX();
    for (int i = 0; i < ny; ++i)
    {
        for (int j = 0; j < nx; ++j)
        {
            const double x = j * dx + sx;
            const double y = i * dy + sy;
            if (!(y > oy))
                continue;
            DrawGridHLine(y, ox, tx, f.Right());
            // Minor lines fill the decade under the line; the first row has
            // none.
            if (bLogY && i != 0)
            {
                const double step = ((i + 1) * dy + sy - y) / 10.0;
                for (int k = 1; k <= 9; ++k)
                {
                    const double yMinor = y + log10f(float(k * step));
                    if (!(yMinor < oy))
                        DrawGridHLine(yMinor, ox, tx, f.Right());
                }
            }
            if (!(x > ox))
                continue;
            DrawGridVLine(x, oy, ty, f.Top());
            // The first two columns have no minor lines on X.
            if (bLogX && j >= 2)
            {
                const double step = ((j + 1) * dx + sx - x) / 10.0;
                for (int k = 1; k <= 9; ++k)
                {
                    const double xMinor = x + std::log10(k * step);
                    if (!(xMinor < ox))
                        DrawGridVLine(xMinor, oy, ty, f.Top());
                }
            }
        }
    }
}

// ---------------------------------------------------------------------------
// Value texts, placed by their lower left corner.

void CGLChartView::DrawGridValueText(double dx, double dy)
{
    TextLayerScope layer(*this, plotvane::ChartTextLayer::GridValue);
    CPlotvane_Manager& m = *m_pManager;
    SetGLColor(m_crLabel);
    const plotvane::ChartFrame f = GetChartFrame();
    const double left = f.Left(), top = f.Top(), bottom = f.Bottom();
    const double W = f.Width(), H = f.Height(), ox = f.OriginX(), oy = f.OriginY();
    const double sx = left - std::fmod(left, dx);
    const double sy = bottom - std::fmod(bottom, dy);
    const bool bLogY = f.IsLogY();

    // Y values stop short of the top, where the Y axis name stands.
    const long long iLast = TruncToInt(H / dy) + 2LL;
    for (long long i = 0; i <= iLast; ++i)
    {
        const double y = i * dy + sy;
        const double v = bLogY ? m.GetYUnit() * std::pow(10.0, y) : y * m.GetScaleY();
        const double px = left + W / 40;
        const double py = y - H * 0.01;
        if (py < oy || !(py + 2 * (H * 0.01) < top - H / 30))
            continue;
        m_pFontDefault->PrintText(m.GetDisplayNumberByFormatType(v), CPointD(px, py), nullptr);
    }
    if (dy == 0.0)
        m_pFontDefault->PrintText(m.GetDisplayNumberByFormatType((sy + 0.5) * m.GetScaleY()),
                                  CPointD(left + W / 30, sy + 0.5), nullptr);

    // X values have no limit at the right.
    const long long jLast = TruncToInt(W / dx) + 2LL;
    for (long long j = 0; j <= jLast; ++j)
    {
        const double x = j * dx + sx;
        const double px = x + W * 0.01 - W / 60.0;
        if (px < ox)
            continue;
        m_pFontDefault->PrintText(m.GetDisplayNumberByFormatType(x * m.GetScaleX()),
                                  CPointD(px, bottom + H / 20), nullptr);
    }
    if (dx == 0.0)
        m_pFontDefault->PrintText(m.GetDisplayNumberByFormatType((sx + 0.5) * m.GetScaleX()),
                                  CPointD(sx + 0.5, bottom + H / 20), nullptr);
}

void CGLChartView::DrawGridValueText_Log(double dx, double dy)
{
    TextLayerScope layer(*this, plotvane::ChartTextLayer::GridValue);
    CPlotvane_Manager& m = *m_pManager;
    m.m_nFormatType = 2;
    SetGLColor(m_crLabel);
    const plotvane::ChartFrame f = GetChartFrame();
    const double left = f.Left(), right = f.Right(), top = f.Top(), bottom = f.Bottom();
    const double W = f.Width(), H = f.Height(), ox = f.OriginX(), oy = f.OriginY();
    const double sx = left - std::fmod(left, dx);
    const double sy = bottom - std::fmod(bottom, dy);
    const bool bLogY = f.IsLogY();

    // Y values keep a ring of 4 % of H clear around the start of the Y axis
    // name.
    const CPointD ptName(left + W / 20, top - H / 30);
    const long long iLast = TruncToInt(H / dy) + 2LL;
    for (long long i = 0; i <= iLast; ++i)
    {
        const double y = i * dy + sy;
        const double px = bLogY ? left + W / 50 : left + W / 30;
        const double v = bLogY ? m.GetYUnit() * std::pow(10.0, y) : y * m.GetScaleY();
        const double py = y - H * 0.01;
        if (py < oy || !(CPointD(px, py).DistanceToPoint(ptName) > 4 * (H * 0.01)))
            continue;
        m_pFontDefault->PrintText(m.GetDisplayNumberByFormatType(v), CPointD(px, py), nullptr);
    }
    if (dy == 0.0)
        m_pFontDefault->PrintText(m.GetDisplayNumberByFormatType((sy + 0.5) * m.GetScaleY()),
                                  CPointD(left + W / 30, sy + 0.5), nullptr);

    // X values skip the first grid position and stop short of the right.
    const long long jLast = TruncToInt(W / dx) + 1LL;
    for (long long j = 1; j <= jLast; ++j)
    {
        const double x = j * dx + sx;
        const double px = x - W / 60.0;
        if (px < ox || px > right - W * 0.05)
            continue;
        m_pFontDefault->PrintText(m.GetDisplayNumberByFormatType(m.GetXUnit() * std::pow(10.0, x)),
                                  CPointD(px, bottom + H / 20), nullptr);
    }
    if (dx == 0.0)
        m_pFontDefault->PrintText(
            m.GetDisplayNumberByFormatType(m.GetXUnit() * std::pow(10.0, sx + 0.5)),
            CPointD(sx + 0.5, bottom + H / 20), nullptr);
}
