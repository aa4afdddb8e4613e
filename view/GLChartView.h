// The chart view: the window that shows one chart. For now it is the object
// that the document reaches through the chart dialog, holding the fitted view
// area and its manager; the window, the GL context and the drawing come with
// the GL window layer.
#pragma once

#include "foundation/ValueTypes.h"

class CPlotvane_Manager;
class CPlotvane_Dlg;

class CGLChartView
{
public:
    CGLChartView() = default;
    CGLChartView(const CGLChartView&) = delete;
    CGLChartView& operator=(const CGLChartView&) = delete;
    virtual ~CGLChartView() = default;

    void SetCPlotvane_Manager(CPlotvane_Manager* p) { m_pManager = p; }
    void SetParent(CPlotvane_Dlg* p) { m_pParent = p; }

    // The logical rectangle that fills the window at zoom level 0; the store
    // writes it when it fits the extents.
    CRectF m_rcViewArea;

    CPlotvane_Manager* m_pManager = nullptr;
    CPlotvane_Dlg* m_pParent = nullptr;
};
