// The chart host dialogs without a toolkit: layout, status bar, context
// menu rule, forwarders and the environment, on the headless backend.
#include "common/gl_required.h"

#include <plotvane/plotvane.h>

#include <gtest/gtest.h>

namespace
{

// A headless chart of 1000 x 500 pixels with the dialog initialised.
class ChartDialog : public ::testing::Test
{
protected:
    void SetUp() override
    {
        PLOTVANE_REQUIRE_GL();
        ASSERT_TRUE(plotvane::CreateHeadlessChart(m, 1000, 500));
    }
    CPlotvane_Dlg& Dlg() { return m.m_ChartDlg; }
    CGLChartView& View() { return *m.m_ChartDlg.GetGLChartView(); }
    CPlotvane_Manager m;
};

} // namespace

TEST_F(ChartDialog, StatusBarPanesTextsAndLayout)
{
    CStatusBar& bar = Dlg().m_wndStatusBar;
    ASSERT_EQ(bar.GetCount(), 3);
    const auto& p = bar.GetPanes();
    EXPECT_EQ(p[0].id, 0u);
    EXPECT_EQ(p[0].width, 1); // 1000 * 0.001
    EXPECT_EQ(p[1].id, 21001u);
    EXPECT_EQ(p[1].width, 550);
    EXPECT_EQ(p[1].style, SBPS_NORMAL);
    EXPECT_EQ(p[2].id, 21000u);
    EXPECT_EQ(p[2].width, 440);
    EXPECT_EQ(p[2].style, SBPS_STRETCH);
    CRect rc;
    bar.GetWindowRect(&rc);
    EXPECT_EQ(rc.Height(), 20);

    Dlg().DisplayCurrentCoordInfo("X: 1 ns");
    Dlg().DisplayCurrentCoordInfo("");
    Dlg().DisplayDistanceInfo("dX: 2 ns");
    Dlg().DisplayDistanceInfo("");
    EXPECT_EQ(bar.GetPaneText(1), CString("X: 1 ns"));
    EXPECT_EQ(bar.GetPaneText(2), CString("dX: 2 ns"));

    // Resized, the view leaves the bar its height; the panes keep their widths.
    Dlg().MoveWindow(0, 0, 600, 400);
    View().GetClientRect(&rc);
    EXPECT_EQ(rc.Width(), 600);
    EXPECT_EQ(rc.Height(), 380);
    bar.GetClientRect(&rc);
    EXPECT_EQ(rc.Width(), 600);
    EXPECT_EQ(bar.GetPanes()[1].width, 550);
}

TEST_F(ChartDialog, ContextMenuOnlyForAClickOnTheView)
{
    int shown = 0;
    plotvane::SetPopupMenuWatcher([&](const CMenu& menu, CPoint, CWnd*) {
        ++shown;
        EXPECT_EQ(menu.GetMenuItemCount(), 2);
        EXPECT_EQ(menu.GetMenuItemID(0), 21053u);
        EXPECT_EQ(menu.GetMenuString(1), CString("Zoom All\tAlt+1"));
        return UINT(0);
    });
    CGLChartView& v = View();
    v.SendMessage(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(100, 100));
    v.SendMessage(WM_RBUTTONUP, 0, MAKELPARAM(100, 100));
    EXPECT_EQ(shown, 1);

    v.SendMessage(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(100, 100));
    v.SendMessage(WM_MOUSEMOVE, MK_RBUTTON, MAKELPARAM(140, 120));
    v.SendMessage(WM_RBUTTONUP, 0, MAKELPARAM(140, 120));
    EXPECT_EQ(shown, 1);

    // From another child window: nothing.
    Dlg().OnContextMenu(&Dlg().m_wndStatusBar, CPoint(5, 5));
    EXPECT_EQ(shown, 1);
    plotvane::SetPopupMenuWatcher(nullptr);
}

TEST(ChartDialogWithoutView, ForwardersAnswerDefaults)
{
    CPlotvane_Dlg dlg;
    CGLChartView* view = dlg.m_pGLChartView;
    dlg.m_pGLChartView = nullptr;
    EXPECT_EQ(dlg.GetBackgroundColor(), 0u);
    EXPECT_EQ(dlg.GetAxisColor(), 0xC8C8C8u);
    EXPECT_EQ(dlg.GetGridColor(), 0xC8C8C8u);
    EXPECT_EQ(dlg.GetLabelColor(), 0x6464DCu);
    EXPECT_EQ(dlg.GetGridMode(), 0);
    EXPECT_EQ(dlg.GetLineWidth(), 1.0);
    EXPECT_EQ(dlg.GetHighlightedLineWidth(), 1.0);
    dlg.SetAxisColor(1);
    dlg.SetGridColor(1);
    dlg.SetLabelColor(1);
    dlg.SetGridMode(1);
    dlg.SetBackgroundColor(1);
    dlg.RedrawChartView();
    dlg.ResizeChartView(10, 10);
    delete view;
}

TEST_F(ChartDialog, EnvironmentGivesAxisGridAndLabelsOneColour)
{
    CGLPlotvane_Environment env;
    env.SetCurColorIndex(1);
    env.SetGridLine(1);
    env.SetLineWidth(3);
    env.SetHighlightedLineWidth(4);
    m.SetChartEnvironment(&env);
    const DWORD label = env.GetLabelColor();
    EXPECT_EQ(Dlg().GetAxisColor(), label);
    EXPECT_EQ(Dlg().GetGridColor(), label);
    EXPECT_EQ(Dlg().GetLabelColor(), label);
    EXPECT_EQ(Dlg().GetBackgroundColor(), DWORD(env.GetBackgroundColor()));
    EXPECT_EQ(Dlg().GetGridMode(), 1);
    EXPECT_EQ(Dlg().GetHighlightedLineWidth(), 4.0);
}

TEST(LeanChartDialog, MakesItsViewWithoutReportingToIt)
{
    PLOTVANE_REQUIRE_GL();
    CPlotvane_InputData data;
    CGLPlotvane_Dlg dlg;
    dlg.SetCPlotvaneInputData(&data);
    ASSERT_TRUE(dlg.CreateEx(0, nullptr, "", WS_VISIBLE, CRect(0, 0, 300, 200), nullptr, 0));
    dlg.OnInitDialog();
    EXPECT_EQ(dlg.GetDlgItem(59393), nullptr); // no status bar
    EXPECT_EQ(data.GetDataSetSize(), 1u);
    ASSERT_NE(dlg.GetGLChartView()->GetSafeHwnd(), nullptr);
    EXPECT_EQ(dlg.GetGLChartView()->GetDlgCtrlID(), 123456);
    EXPECT_EQ(dlg.GetGLChartView()->m_bMouseDrag, 1);
    dlg.ResizeChartView(120, 80);
    CRect rc;
    dlg.GetGLChartView()->GetClientRect(&rc);
    EXPECT_EQ(rc.Width(), 120);
    EXPECT_EQ(rc.Height(), 80);
}
