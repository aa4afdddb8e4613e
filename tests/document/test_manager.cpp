#include <plotvane/document/ChartMarkers.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/view/GLChartView.h>

#include <gtest/gtest.h>

#include <cfloat>

// What the host puts in through the manager is what the view and the dialogs
// read, also after the manager was assigned from another one.
TEST(ChartManager, PartsReadTheDocumentTheManagerHolds)
{
    CPlotvane_InputData::SetViewScaleX(1.0);
    CPlotvane_Manager a, m;
    a.m_InputData.AddNewDataSet(2);
    a.SetAxisXName("Volt");
    m = a;
    a.m_InputData.AddNewDataSet(5);
    a.SetAxisXName("Current");
    m.SetAxisXName("Time (s)");
    m.m_InputData.AddNewDataSet(1);
    m.m_InputData.m_dMaxX = 5e-9; // a nanosecond range: the unit word becomes "ns"

    EXPECT_EQ(m.m_ChartDlg.GetGLChartView()->GetXAxisDisplayString(), CString("Time (ns)"));
    EXPECT_EQ(m.m_ChartDlg.m_pInputData->GetDataSetSize(), 3u);
    EXPECT_EQ(m.m_InputDataDlg.m_pInputData->GetDataSetSize(), 3u);
    EXPECT_EQ(m.m_AttributeDlg.m_pAttribute->m_XAxis.GetAxisName(), CString("Time (s)"));

    // The shared store pointer names the newest store, and any store going
    // away clears it.
    EXPECT_EQ(CPlotvane_InputData::m_pInputData, &m.m_InputData);
    {
        CPlotvane_Manager other;
    }
    EXPECT_EQ(CPlotvane_InputData::m_pInputData, nullptr);
}

TEST(ChartManager, BathtubFloorIsWhereTheSpacingBreaks)
{
    CPlotvane_Manager m;
    CChartPointDArray a;
    EXPECT_EQ(m.GetBathtubMinValue(&a), DBL_MIN);
    a.Add(new CChartPointD(0.0, 0.25));
    EXPECT_EQ(m.GetBathtubMinValue(&a), 0.25);
    // Even steps of 1, then a gap of 3: the larger Y around the gap.
    for (double x : {1.0, 2.0, 5.0, 6.0})
        a.Add(new CChartPointD(x, x == 2.0 ? 0.5 : x == 5.0 ? 0.1 : 1.0));
    EXPECT_EQ(m.GetBathtubMinValue(&a), 0.5);
    // A step of 1.6 is below twice the first but more than half off it.
    CChartPointDArray b;
    for (double x : {0.0, 1.0, 2.6, 3.6})
        b.Add(new CChartPointD(x, x == 1.0 ? 0.3 : x == 2.6 ? 0.7 : 0.05));
    EXPECT_EQ(m.GetBathtubMinValue(&b), 0.7);
    CChartPointDArray c;
    for (double x : {0.0, 1.0, 2.0, 3.0})
        c.Add(new CChartPointD(x, 4.0 - x));
    EXPECT_EQ(m.GetBathtubMinValue(&c), 1.0);
}

TEST(ChartManager, DeleteKeepsTheDrawListAndScalesRemoveResetsThem)
{
    CPlotvane_Manager m;
    m.m_InputData.AddNewDataSet(2);
    CPlotvane_InputData::SetViewScaleX(1e8);
    m.DeleteAllChartData();
    EXPECT_EQ(m.m_InputData.GetDataSetSize(), 0u);
    EXPECT_EQ(m.m_InputData.GetDrawDataSetCount(), 2);
    EXPECT_EQ(CPlotvane_InputData::m_dViewScaleX, 1e8);
    m.m_InputData.AddNewDataSet(1);
    CPlotvane_InputData::SetViewScaleY(1e-3);
    m.RemoveAllData();
    EXPECT_EQ(m.m_InputData.GetDataSetSize(), 0u);
    EXPECT_EQ(m.m_InputData.GetDrawDataSetCount(), 0);
    EXPECT_EQ(CPlotvane_InputData::m_dViewScaleX, 100.0);
    EXPECT_EQ(CPlotvane_InputData::m_dViewScaleY, 100.0);
}

TEST(ChartManager, CopyAndEqualityFollowTheCopyMarks)
{
    CPlotvane_Manager a;
    a.m_InputData.SetCurrentEditSet(a.m_InputData.AddNewDataSet());
    a.m_InputData.AddData(1.0, 2.0);
    a.SetAxisXName("t");
    a.m_nFrequencyScale = 1;
    a.m_nFreqDomainMode = 2;
    a.m_ptClickZoomStartLP = CPointF(1.0f, 2.0f);
    a.m_pClippingBoxArray->Add(new CChartClippingBox);
    a.m_bUseMagnitude = 0;
    a.m_nMeasureType = 4;

    CPlotvane_Manager b;
    EXPECT_FALSE(b == a);
    b = a;
    EXPECT_TRUE(b == a);
    EXPECT_EQ(b.m_nFreqDomainMode, 2);
    EXPECT_EQ(b.m_InputData.GetDataY(0), 2.0);
    EXPECT_EQ(b.m_pClippingBoxArray->GetSize(), 1);
    EXPECT_NE(b.m_pClippingBoxArray, a.m_pClippingBoxArray);
    // Magnitude and overlay state are neither copied nor compared.
    EXPECT_EQ(b.m_bUseMagnitude, 1);
    EXPECT_EQ(b.m_nMeasureType, -1);
    b.m_nDisplayOption = 1;
    EXPECT_TRUE(b != a);
    // The copied box shares its texts with the source's: only one of the two
    // may keep them.
    b.m_pClippingBoxArray->GetAt(0)->m_pWidthText = nullptr;
    b.m_pClippingBoxArray->GetAt(0)->m_pHeightText = nullptr;
}
