// A chart drawn offscreen at 800 x 600 for the overlay tests, with helpers
// that place data coordinates on the client image.
#pragma once

#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/platform/headless/HeadlessBackend.h>
#include <plotvane/view/GLChartView.h>
#include <plotvane/view/HeadlessChart.h>

#include <gtest/gtest.h>

#include <algorithm>

class OverlayFixture : public testing::Test
{
protected:
    static constexpr int kWidth = 800;
    static constexpr int kHeight = 600;
    static constexpr COLORREF kGreen = 0x00FF00;
    static constexpr COLORREF kWhite = 0xFFFFFF;
    static constexpr COLORREF kGrey = 0x808080;
    // Yellow: no curve, grid or mark has it.
    static constexpr COLORREF kLabel = 0x00FFFF;

    void SetUp() override
    {
        if (!plotvane::HeadlessBackend::Default().IsGLAvailable())
            GTEST_SKIP() << "no EGL display";
        ASSERT_TRUE(plotvane::CreateHeadlessChart(m, kWidth, kHeight));
        view = m.m_ChartDlg.GetGLChartView();
        m.RemoveAllData();
        view->SetLabelColor(kLabel);
    }

    // A drawn copy of src in this colour; answers its index.
    int AddSet(const CChartPointDArray& src, COLORREF color)
    {
        CPlotvane_InputData& d = m.m_InputData;
        const int i = d.AddNewDataSet();
        CChartPointDArray& set = *d.GetChartPointDArray(i);
        set = src;
        set.m_Color = CColor(color);
        d.AddDrawDataSetIndex(i);
        return i;
    }

    void Paint() { view->SendMessage(WM_PAINT); }
    const plotvane::Image& Image() const { return *plotvane::GetChartImage(m); }

    // Client pixel of a data point.
    CPoint ToClient(double x, double y)
    {
        return view->ViewPointToClient(CPointF(float(x * CPlotvane_InputData::m_dViewScaleX),
                                               float(y * CPlotvane_InputData::m_dViewScaleY)));
    }
    // Client rectangle of a data rectangle, one pixel inside its edges.
    CRect DataRect(double x1, double y1, double x2, double y2)
    {
        const CPoint a = ToClient(x1, y1);
        const CPoint b = ToClient(x2, y2);
        return CRect(std::min(a.x, b.x) + 1, std::min(a.y, b.y) + 1, std::max(a.x, b.x) - 1,
                     std::max(a.y, b.y) - 1);
    }
    int CountData(COLORREF color, const CRect& rc)
    {
        return Image().CountColor(color, rc.left, rc.top, rc.right, rc.bottom);
    }

    CPlotvane_Manager m;
    CGLChartView* view = nullptr;
};
