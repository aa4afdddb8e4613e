// The demos of the eye mask and bathtub, overshoot and undershoot, and
// differential-level overlays, with what their sources share: a data set
// added as a host adds it, and the numbers the overlay printed.
#pragma once

#include "render/OverlayDemo.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/view/GLChartView.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace plotvane
{

// EyeMaskDemos.cpp
void BuildEyeMaskDemo(CPlotvane_Manager& mgr, const RenderOptions& options);
void ReportEyeMaskDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts,
                       JsonWriter& json);
void BuildBathtubDemo(CPlotvane_Manager& mgr, const RenderOptions& options);
void ReportBathtubDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts,
                       JsonWriter& json);

// OverUnderShootDemos.cpp
void BuildOvershootDemo(CPlotvane_Manager& mgr, const RenderOptions& options);
void BuildUndershootDemo(CPlotvane_Manager& mgr, const RenderOptions& options);
void BuildOvershootAreaDemo(CPlotvane_Manager& mgr, const RenderOptions& options);
void ReportShootDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts,
                     JsonWriter& json);

// DifferentialDemos.cpp
void BuildVixDemo(CPlotvane_Manager& mgr, const RenderOptions& options);
void BuildVidDemo(CPlotvane_Manager& mgr, const RenderOptions& options);
void ReportDifferentialDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts,
                            JsonWriter& json);

namespace demo
{
// Moves src into a new drawn data set of that colour; answers its index.
inline int AddDrawnSet(CPlotvane_Manager& mgr, CChartPointDArray& src, COLORREF color)
{
    CPlotvane_InputData& data = mgr.m_InputData;
    const int i = data.AddNewDataSet();
    CChartPointDArray& set = *data.GetChartPointDArray(i);
    set = src;
    set.m_Color = CColor(color);
    data.AddDrawDataSetIndex(i);
    return i;
}

// The first overlay text that starts with prefix, or null.
inline const ChartText* FindText(const std::vector<ChartText>& texts, const char* prefix)
{
    for (const ChartText& t : texts)
    {
        if (t.layer == ChartTextLayer::Overlay && t.strText.Find(prefix) == 0)
            return &t;
    }
    return nullptr;
}

// The number printed after prefix; NaN (null in the report) when the
// overlay did not print it.
inline double TextNumber(const std::vector<ChartText>& texts, const char* prefix)
{
    const ChartText* t = FindText(texts, prefix);
    double v = 0.0;
    if (t == nullptr || std::sscanf(t->strText.GetString() + std::strlen(prefix), "%lf", &v) != 1)
        return std::nan("");
    return v;
}

// The chart has been on screen once, fitted, before the host asks for a
// measurement: the overlays of the display list place their texts by the
// view of that moment.
inline void ShowFittedChart(CPlotvane_Manager& mgr)
{
    mgr.SetChartDrawFit();
    mgr.m_ChartDlg.GetGLChartView()->SendMessage(WM_PAINT);
}
} // namespace demo

} // namespace plotvane
