// The chart of the level overlays' tests (eye mask, bathtub, overshoot,
// differential levels): every text of a paint caught by the text hook.
#pragma once

#include "overlay_fixture.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

class LevelOverlayTest : public OverlayFixture
{
protected:
    void SetUpChart() override
    {
        view->SetTextHook(
            [this](const plotvane::ChartText& t)
            {
                if (t.layer == plotvane::ChartTextLayer::Overlay)
                    texts.push_back(t);
            });
    }
    // As a host shows a measure: the fitted chart has been on screen once,
    // then a redraw request compiles the list in that view and paints.
    void Show()
    {
        m.SetChartDrawFit();
        Paint();
        Measure();
    }
    void Measure()
    {
        texts.clear();
        m.RedrawGLChartView();
    }
    std::vector<std::string> Strings() const
    {
        std::vector<std::string> r;
        for (const plotvane::ChartText& t : texts)
            r.push_back(t.strText.str());
        return r;
    }
    const plotvane::ChartText* Text(const char* prefix) const
    {
        for (const plotvane::ChartText& t : texts)
            if (t.strText.Find(prefix) == 0)
                return &t;
        return nullptr;
    }
    // The number after prefix; NaN when the text is missing.
    double Number(const char* prefix) const
    {
        const plotvane::ChartText* t = Text(prefix);
        double v = NAN;
        return t && std::sscanf(t->strText.GetString() + std::strlen(prefix), "%lf", &v) == 1 ? v
                                                                                               : NAN;
    }
    // A text at (lx, ly), to a float's rounding, in that colour.
    void ExpectText(const char* prefix, double lx, double ly, COLORREF color)
    {
        const plotvane::ChartText* t = Text(prefix);
        ASSERT_NE(t, nullptr) << prefix;
        EXPECT_NEAR(t->ptLogical.x, lx, 1e-4 * (1.0 + std::fabs(lx))) << prefix;
        EXPECT_NEAR(t->ptLogical.y, ly, 1e-4 * (1.0 + std::fabs(ly))) << prefix;
        EXPECT_EQ(t->crColor, DWORD(color)) << prefix;
    }

    double Gx() const { return CPlotvane_InputData::m_dViewScaleX; }
    double Gy() const { return CPlotvane_InputData::m_dViewScaleY; }
    CPoint Client(double lx, double ly) { return view->ViewPointToClient(CPointF(float(lx), float(ly))); }
    // Pixels of a colour on the rows around a logical Y, across the chart.
    int RowPixels(COLORREF color, double ly, int r = 1)
    {
        const CPoint p = Client(0.0, ly);
        return Image().CountColor(color, 0, p.y - r, kWidth, p.y + r + 1);
    }
    // Pixels of a colour in a narrow column between two logical Y values.
    int ColumnPixels(COLORREF color, double lx, double ly1, double ly2)
    {
        const CPoint a = Client(lx, ly1), b = Client(lx, ly2);
        return Image().CountColor(color, a.x - 3, std::min(a.y, b.y), a.x + 4, std::max(a.y, b.y));
    }

    std::vector<plotvane::ChartText> texts;
};
