// The chart dialog in a real wx window: what it draws, how it is built from
// its resource, its status bar, and its context menu under real X input.
#include "wx_test_support.h"

#include <plotvane/platform/headless/HeadlessBackend.h>

#include <wx/stattext.h>
#include <wx/statusbr.h>
#include <wx/window.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

using plotvane::test::ChartFrame;
using plotvane::test::FillSine;
using plotvane::test::Pump;
using plotvane::test::XDo;

namespace
{

constexpr int kWidth = 640;
constexpr int kHeight = 480;

wxWindow* WxOf(const CWnd& wnd)
{
    return plotvane::InstallWxBackend().GetWxWindow(wnd.GetSafeHwnd());
}

void SaveShot(const plotvane::Image& image, const char* name)
{
    const char* dir = std::getenv("PLOTVANE_SHOT_DIR");
    plotvane::WritePng(CString(dir != nullptr ? dir : ".") + "/" + name, image);
}

} // namespace

// The same chart drawn in a wx window and offscreen gives the same pixels:
// both draw with the same code through libGL, and both software renderers
// are Mesa's llvmpipe.
TEST(WxChart, WindowDrawsTheSamePixelsAsHeadless)
{
    ChartFrame f(kWidth, kHeight + CPlotvane_Dlg::m_nStatusBarHeight);
    ASSERT_TRUE(f.created);
    f.m.RemoveAllData(); // the "NoData" set goes, as in the offscreen chart
    FillSine(f.m);
    f.m.RedrawGLChartView();
    Pump(200);
    f.m.RedrawGLChartView();
    const plotvane::Image* shown = plotvane::GetChartImage(f.m);
    ASSERT_NE(shown, nullptr);
    ASSERT_EQ(shown->width, kWidth);
    ASSERT_EQ(shown->height, kHeight);
    const plotvane::Image inWindow = *shown;
    SaveShot(inWindow, "wx-chart.png");

    // A thread has one current context, GLX or EGL: let go of the window's
    // before the offscreen chart takes EGL (its manager releases EGL again
    // when it goes, before the scope puts the wx backend back).
    plotvane::GetBackend().MakeCurrent(nullptr, nullptr);
    plotvane::BackendScope headless(plotvane::HeadlessBackend::Default());
    ASSERT_TRUE(plotvane::HeadlessBackend::Default().IsGLAvailable());
    CPlotvane_Manager h;
    ASSERT_TRUE(plotvane::CreateHeadlessChart(h, kWidth, kHeight));
    h.RemoveAllData();
    FillSine(h);
    h.RedrawGLChartView();
    const plotvane::Image* offscreen = plotvane::GetChartImage(h);
    ASSERT_NE(offscreen, nullptr);
    SaveShot(*offscreen, "headless-chart.png");

    int differing = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            differing += inWindow.Pixel(x, y) != offscreen->Pixel(x, y) ? 1 : 0;
    EXPECT_EQ(differing, 0);
    // Not a blank frame on both sides.
    EXPECT_LT(inWindow.CountColor(inWindow.Pixel(1, 1)), kWidth * kHeight);
}

// The dialog and its controls come from resource 20502 in dialog units, with
// the resource's ids; the status bar has the three panes of 0.1 %, 55 % and
// 44 % of the width, the last one stretching.
TEST(WxChart, DialogIsBuiltFromItsResourceWithStatusBar)
{
    ChartFrame f(kWidth, kHeight);
    ASSERT_TRUE(f.created);
    CPlotvane_Dlg& dlg = f.m.m_ChartDlg;
    wxWindow* dlgWx = WxOf(dlg);
    ASSERT_NE(dlgWx, nullptr);

    for (const plotvane::DialogControl& c : dlg.GetResource()->controls)
    {
        CWnd* pCtrl = dlg.GetDlgItem(int(c.id));
        ASSERT_NE(pCtrl, nullptr) << c.id;
        wxWindow* w = WxOf(*pCtrl);
        ASSERT_NE(w, nullptr);
        EXPECT_EQ(w->GetId(), int(c.id));
        EXPECT_NE(dynamic_cast<wxStaticText*>(w), nullptr);
        const wxPoint lt = dlgWx->ConvertDialogToPixels(wxPoint(c.rect.left, c.rect.top));
        const wxPoint rb = dlgWx->ConvertDialogToPixels(wxPoint(c.rect.right, c.rect.bottom));
        EXPECT_EQ(w->GetPosition(), lt) << c.id;
        EXPECT_EQ(w->GetSize(), wxSize(rb.x - lt.x, rb.y - lt.y)) << c.id;
    }
    EXPECT_EQ(dlg.m_stcView.GetSafeHwnd(), dlg.GetDlgItem(11008)->GetSafeHwnd());
    EXPECT_EQ(dlg.m_stcInfo.GetSafeHwnd(), dlg.GetDlgItem(11018)->GetSafeHwnd());
    EXPECT_FALSE(dlg.IsSizeGripShown());

    // Laid out by hand: the view above, the 20-pixel bar along the bottom.
    wxWindow* viewWx = WxOf(*dlg.GetGLChartView());
    ASSERT_NE(viewWx, nullptr);
    EXPECT_EQ(dlg.GetGLChartView()->GetDlgCtrlID(), 123456);
    EXPECT_EQ(viewWx->GetSize(), wxSize(kWidth, kHeight - 20));
    auto* bar = dynamic_cast<wxStatusBar*>(WxOf(dlg.m_wndStatusBar));
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(dlg.m_wndStatusBar.GetDlgCtrlID(), 59393);
    EXPECT_EQ(bar->GetRect(), wxRect(0, kHeight - 20, kWidth, 20));

    // The widths come from the client width when the dialog was made: the
    // dialog's resource size, before the host sized it.
    const CRect made = plotvane::InstallWxBackend().MapDialogRect(dlg.GetSafeHwnd(),
                                                                  CRect(0, 0, 338, 304));
    ASSERT_EQ(bar->GetFieldsCount(), 3);
    EXPECT_EQ(bar->GetStatusWidth(0), std::max(1, int(made.Width() * 0.001)));
    EXPECT_EQ(bar->GetStatusWidth(1), int(made.Width() * 0.55));
    EXPECT_EQ(bar->GetStatusWidth(2), -1);
    UINT id = 0, style = 0;
    int width = 0;
    dlg.m_wndStatusBar.GetPaneInfo(2, id, style, width);
    EXPECT_EQ(id, 21000u);
    EXPECT_EQ(width, int(made.Width() * 0.44));

    dlg.DisplayCurrentCoordInfo("X: 1.5 ns, Y: 0.3 V");
    dlg.DisplayDistanceInfo("dX: 2 ns");
    dlg.DisplayCurrentCoordInfo("");
    dlg.DisplayDistanceInfo("");
    EXPECT_EQ(bar->GetStatusText(1), "X: 1.5 ns, Y: 0.3 V");
    EXPECT_EQ(bar->GetStatusText(2), "dX: 2 ns");

    // A resize by the host moves the bar and keeps the pane widths.
    f.frame->SetClientSize(kWidth + 100, kHeight + 60);
    dlg.MoveWindow(0, 0, kWidth + 100, kHeight + 60);
    Pump(100);
    EXPECT_EQ(viewWx->GetSize(), wxSize(kWidth + 100, kHeight + 40));
    EXPECT_EQ(bar->GetRect(), wxRect(0, kHeight + 40, kWidth + 100, 20));
    EXPECT_EQ(bar->GetStatusWidth(1), int(made.Width() * 0.55));
}

// A chart with no data set gets the set "NoData".
TEST(WxChart, EmptyChartShowsNoData)
{
    ChartFrame f(320, 240);
    ASSERT_TRUE(f.created);
    ASSERT_EQ(f.m.m_InputData.GetDataSetSize(), 1);
    f.m.m_InputData.SetCurrentEditSet(0);
    EXPECT_EQ(f.m.m_InputData.GetCurrentSetName(), CString("NoData"));
}

// Real X input: a right click on the view opens menu 20506, a right drag
// pans and opens nothing, and "Zoom All" chosen from the menu refits.
TEST(WxChart, RightClickOpensMenuDragDoesNotAndZoomAllRefits)
{
    ChartFrame f(kWidth, kHeight);
    ASSERT_TRUE(f.created);
    f.m.RemoveAllData();
    FillSine(f.m);
    f.m.RedrawGLChartView();
    Pump(200);
    const CRectF fitted = f.View()->m_rcViewArea;

    int menus = 0;
    CString firstItem;
    UINT answer = 0;
    plotvane::SetPopupMenuWatcher([&](const CMenu& menu, CPoint, CWnd* pOwner) {
        ++menus;
        firstItem = menu.GetMenuString(0);
        EXPECT_EQ(pOwner, &f.m.m_ChartDlg);
        return answer;
    });

    const wxPoint a = f.Screen(300, 200);
    XDo("mousemove " + std::to_string(a.x) + " " + std::to_string(a.y) + " click 3");
    EXPECT_EQ(menus, 1);
    EXPECT_EQ(firstItem, CString("Zoom Window"));
    EXPECT_TRUE(f.View()->m_rcViewArea == fitted);

    const wxPoint b = f.Screen(380, 260);
    XDo("mousemove " + std::to_string(a.x) + " " + std::to_string(a.y) + " mousedown 3");
    XDo("mousemove " + std::to_string(a.x + 30) + " " + std::to_string(a.y + 20));
    XDo("mousemove " + std::to_string(b.x) + " " + std::to_string(b.y) + " mouseup 3");
    EXPECT_EQ(menus, 1);
    EXPECT_FALSE(f.View()->m_rcViewArea == fitted);

    answer = 21052; // "Zoom All\tAlt+1"
    XDo("mousemove " + std::to_string(a.x) + " " + std::to_string(a.y) + " click 3");
    EXPECT_EQ(menus, 2);
    EXPECT_TRUE(f.View()->m_rcViewArea == fitted);
    plotvane::SetPopupMenuWatcher(nullptr);
}

// The view's notifications to its host (2524, 2525, 2527) arrive both as a
// wx event on the host's window and through the plain callback; the key
// state is the X server's.
TEST(WxChart, HostMessagesAndKeyState)
{
    ChartFrame f(320, 240);
    ASSERT_TRUE(f.created);
    plotvane::WxBackend& backend = plotvane::InstallWxBackend();
    std::vector<UINT> viaEvent, viaCallback;
    f.frame->Bind(plotvane::EVT_PLOTVANE_MESSAGE, [&](plotvane::WxMessageEvent& e) {
        viaEvent.push_back(e.message);
        EXPECT_EQ(e.hwnd, f.host.GetSafeHwnd());
    });
    backend.SetMessageCallback([&](HWND hwnd, UINT message, WPARAM, LPARAM) {
        EXPECT_EQ(hwnd, f.host.GetSafeHwnd());
        viaCallback.push_back(message);
        return LRESULT(0);
    });
    for (UINT m : {2524u, 2525u, 2527u})
        f.host.SendMessage(m, 0, 0);
    backend.SetMessageCallback(nullptr);
    EXPECT_EQ(viaEvent, (std::vector<UINT>{2524, 2525, 2527}));
    EXPECT_EQ(viaCallback, (std::vector<UINT>{2524, 2525, 2527}));

    EXPECT_EQ(GetAsyncKeyState(VK_SHIFT) & 0x8000, 0);
    XDo("keydown shift");
    EXPECT_NE(GetAsyncKeyState(VK_SHIFT) & 0x8000, 0);
    XDo("keyup shift");
    EXPECT_EQ(GetAsyncKeyState(VK_SHIFT) & 0x8000, 0);
}
