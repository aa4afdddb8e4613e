#include "render/Legend.h"

#include "render/ChartInput.h"
#include <plotvane/document/ChartMarkers.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/view/GLChartView.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

namespace plotvane
{
namespace
{

// Logical rectangle, left < right and bottom < top.
struct Box
{
    double left, bottom, right, top;

    bool Holds(double x, double y) const
    {
        return x >= left && x <= right && y >= bottom && y <= top;
    }
    bool Meets(const Box& o) const
    {
        return left <= o.right && o.left <= right && bottom <= o.top && o.bottom <= top;
    }
    // Whether the segment from a to b passes through the box: its bounding
    // box meets it, and the box's corners do not all lie on one side of
    // its line.
    bool Crosses(double ax, double ay, double bx, double by) const
    {
        if (!Meets({std::min(ax, bx), std::min(ay, by), std::max(ax, bx), std::max(ay, by)}))
            return false;
        int nSide = 0;
        for (const auto& [cx, cy] : {std::array<double, 2>{left, bottom}, {left, top},
                                     {right, bottom}, {right, top}})
        {
            const double c = (bx - ax) * (cy - ay) - (by - ay) * (cx - ax);
            nSide |= c > 0 ? 1 : c < 0 ? 2 : 3;
        }
        return nSide == 3;
    }
};

struct Entry
{
    std::string name;
    COLORREF color;
};

std::vector<Entry> DrawnEntries(const CPlotvane_Manager& mgr)
{
    std::vector<Entry> entries;
    // A set without a name has nothing to say in a legend.
    ForEachDrawnSet(mgr, [&entries](const CChartPointDArray& set)
                    {
                        if (!set.m_strName.IsEmpty())
                            entries.push_back({set.m_strName.str(), COLORREF(set.m_Color)});
                    });
    return entries;
}

// How many samples and segments of the drawn curves fall into each box. A
// step back in X is a seam, which the chart does not draw.
std::vector<long long> CurveHits(const CPlotvane_Manager& mgr, const ChartFrame& f,
                                 const std::vector<Box>& boxes)
{
    std::vector<long long> hits(boxes.size(), 0);
    ForEachDrawnSet(mgr, [&](const CChartPointDArray& set)
                    {
                        double px = 0.0, py = 0.0, pDataX = 0.0;
                        for (INT_PTR i = 0; i < set.GetSize(); ++i)
                        {
                            const double dx = set.GetPointX(i);
                            const CPointD p = f.DataToLogical(dx, set.GetPointY(i));
                            for (std::size_t b = 0; b < boxes.size(); ++b)
                            {
                                if (boxes[b].Holds(p.x, p.y) ||
                                    (i > 0 && dx >= pDataX && boxes[b].Crosses(px, py, p.x, p.y)))
                                    ++hits[b];
                            }
                            px = p.x;
                            py = p.y;
                            pDataX = dx;
                        }
                    });
    return hits;
}

// Rough advance of the annotation face: enough to keep a box around the
// text, which only decides where the legend goes.
double TextPixels(const std::string& text, int nFontSize)
{
    return double(text.size()) * 0.68 * nFontSize;
}

} // namespace

namespace
{

// The legend's size and the four places it may take in a frame.
struct Layout
{
    double dRow, dLine, dGap, w, h;
    std::vector<Box> boxes;
};

Layout LayoutIn(const ChartFrame& f, const std::vector<Entry>& entries, int nFontSize,
                bool bEyeSummary)
{
    const double px = f.LogicalPerPixelX();
    const double py = f.LogicalPerPixelY();
    Layout l;
    // Entry rows: a 24 pixel line, a gap, the name.
    l.dRow = nFontSize * 1.4 * py;
    l.dLine = 24.0 * px;
    l.dGap = 6.0 * px;
    double dTextWidth = 0.0;
    for (const Entry& e : entries)
        dTextWidth = std::max(dTextWidth, TextPixels(e.name, nFontSize) * px);
    l.w = l.dLine + l.dGap + dTextWidth;
    l.h = l.dRow * double(entries.size());

    // Inside the plot frame, clear of the Y axis name at the top left and,
    // on an eye chart, of the margin texts at the top right.
    const double padX = 12.0 * px;
    const double padY = 8.0 * py;
    const double left = f.OriginX() + padX;
    const double right = f.Right() - padX;
    const double bottom = f.OriginY() + padY;
    const double topLeftTop = f.Top() - f.Height() / 30 - l.dRow;
    const double topRightTop =
        bEyeSummary ? f.Top() - f.Height() / 15 - 2 * l.dRow : f.Top() - padY;
    l.boxes = {
        {right - l.w, topRightTop - l.h, right, topRightTop},
        {left, topLeftTop - l.h, left + l.w, topLeftTop},
        {right - l.w, bottom, right, bottom + l.h},
        {left, bottom, left + l.w, bottom + l.h},
    };
    return l;
}

// The highest drawn sample, in logical units.
double CurvesTop(const CPlotvane_Manager& mgr, const ChartFrame& f)
{
    double dTop = -HUGE_VAL;
    ForEachDrawnSet(mgr, [&](const CChartPointDArray& set)
                    {
                        if (set.GetSize() > 0)
                            dTop = std::max(dTop, f.DataToLogicalY(set.GetMaxY()));
                    });
    return dTop;
}

// Raises the top of the view area, the bottom staying, until the curves end
// below the rows that a legend at the top takes.
void MakeRoomAtTop(CGLChartView& view, const ChartFrame& f, const Layout& l, double dCurvesTop)
{
    const double dTaken = f.Top() - l.boxes[0].bottom + 4.0 * f.LogicalPerPixelY();
    const double dShare = dTaken / f.Height();
    if (!(dShare < 0.8) || !(dCurvesTop > f.Bottom()))
        return;
    const double dHeight = (dCurvesTop - f.Bottom()) / (1.0 - dShare);
    if (!(dHeight > f.Height()))
        return;
    view.m_rcViewArea.height = float(dHeight);
    view.m_rcViewArea.y = float(f.Bottom() + dHeight);
}

} // namespace

void AddLegend(CPlotvane_Manager& mgr, int nFontSize, bool bEyeSummary)
{
    CGLChartView* view = mgr.m_ChartDlg.GetGLChartView();
    const std::vector<Entry> entries = DrawnEntries(mgr);
    if (view == nullptr || view->GetSafeHwnd() == nullptr || entries.empty())
        return;
    view->FitCurViewAreaWithWindow();
    ChartFrame f = view->GetChartFrame();
    Layout l = LayoutIn(f, entries, nFontSize, bEyeSummary);
    std::vector<long long> hits = CurveHits(mgr, f, l.boxes);
    if (*std::min_element(hits.begin(), hits.end()) > 0)
    {
        // No corner is free: make one above the curves.
        MakeRoomAtTop(*view, f, l, CurvesTop(mgr, f));
        view->FitCurViewAreaWithWindow();
        f = view->GetChartFrame();
        l = LayoutIn(f, entries, nFontSize, bEyeSummary);
        hits = CurveHits(mgr, f, l.boxes);
    }
    const std::size_t best = std::size_t(std::min_element(hits.begin(), hits.end()) - hits.begin());
    const Box& box = l.boxes[best];
    const double px = f.LogicalPerPixelX();
    const double py = f.LogicalPerPixelY();
    for (std::size_t i = 0; i < entries.size(); ++i)
    {
        // The name's baseline sits a quarter row above the row's bottom; the
        // line runs at the middle of its lower case letters.
        const double baseline = box.top - l.dRow * double(i + 1) + l.dRow * 0.25;
        const double lineY = baseline + nFontSize * 0.3 * py;
        auto* line = new CChartLineData;
        line->m_dX1 = box.left;
        line->m_dX2 = box.left + l.dLine;
        line->m_dY1 = line->m_dY2 = lineY;
        line->m_dWidth = 2.0;
        line->m_color = entries[i].color;
        view->m_pLineDB->Add(line);
        auto* text = new CChartTextData;
        text->m_dX = box.left + l.dLine + l.dGap;
        text->m_dY = baseline;
        text->m_strText = CString(entries[i].name);
        text->m_color = entries[i].color;
        text->m_nFontSize = nFontSize;
        text->m_dHeight = nFontSize * py;
        text->m_dWidth = TextPixels(entries[i].name, nFontSize) * px;
        view->m_pTextDB->Add(text);
    }
}

bool HasEyeSummary(const CPlotvane_Manager& mgr)
{
    bool bEye = false;
    ForEachDrawnSet(mgr, [&bEye](const CChartPointDArray& set)
                    { bEye = bEye || (set.m_nDataType >= 2 && set.m_nPinRole == 2); });
    return bEye;
}

} // namespace plotvane
