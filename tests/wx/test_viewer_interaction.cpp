// plotvane-viewer's chart under real X input: a two-click zoom, the wheel,
// a right-drag pan, a cursor with its value text, Ctrl+T with a typed text,
// and the zoom history. Each step leaves a screenshot in the artifact
// folder's viewer/.
#include "wx_test_support.h"

#include "viewer/ViewerFrame.h"
#include "viewer/ZoomHistory.h"

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/evtloop.h>
#include <wx/menu.h>
#include <wx/textctrl.h>
#include <wx/timer.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

using plotvane::test::Pump;
using plotvane::test::XDo;
using plotvane::viewer::ViewerFrame;

using plotvane::test::ShotDir;

namespace
{

class ViewerInteraction : public testing::Test
{
protected:
    void SetUp() override
    {
        const std::string csv = ShotDir() + "/viewer-interaction.csv";
        {
            std::ofstream out(csv);
            out << "Time (s),rise (V)\n";
            for (int i = 0; i <= 100; ++i)
                out << i * 1e-10 << "," << i * 0.01 << "\n";
        }
        frame = new ViewerFrame(true);
        frame->SetSize(wxSize(900, 640));
        frame->Raise();
        Pump(300);
        ASSERT_TRUE(frame->OpenFile(csv));
        Pump(200);
        fitted = View().m_rcViewArea;
        View().SetTextHook([this](const plotvane::ChartText& t) { texts.push_back(t); });
    }
    void TearDown() override
    {
        View().SetTextHook({});
        frame->Destroy();
        Pump(100);
    }

    CGLChartView& View() { return frame->View(); }
    CPlotvane_Manager& M() { return frame->Manager(); }
    // The screen point of a client point of the view.
    std::string At(int x, int y)
    {
        CPoint pt(x, y);
        View().ClientToScreen(&pt);
        return std::to_string(pt.x) + " " + std::to_string(pt.y);
    }
    void Menu(const char* menu, const char* item, bool checked = true)
    {
        const int id = frame->GetMenuBar()->FindMenuItem(menu, item);
        ASSERT_NE(id, wxNOT_FOUND) << menu << " > " << item;
        wxCommandEvent e(wxEVT_MENU, id);
        e.SetInt(checked ? 1 : 0);
        frame->ProcessWindowEvent(e);
        Pump(100);
    }
    void Shot(const char* name)
    {
        M().RedrawGLChartView();
        const plotvane::Image* image = plotvane::GetChartImage(M());
        ASSERT_NE(image, nullptr);
        const std::string dir = plotvane::test::ArtifactDir() + "/viewer";
        std::filesystem::create_directories(dir);
        EXPECT_TRUE(plotvane::WritePng(CString((dir + "/" + name).c_str()), *image));
    }
    std::vector<CString> TextsOf(plotvane::ChartTextLayer layer)
    {
        texts.clear();
        M().RedrawGLChartView();
        std::vector<CString> out;
        for (const auto& t : texts)
            if (t.layer == layer)
                out.push_back(t.strText);
        return out;
    }

    ViewerFrame* frame = nullptr;
    CRectF fitted;
    std::vector<plotvane::ChartText> texts;
};

// Within a part in a million of the rectangle's size: the corners of a zoom
// come back through float arithmetic.
// Runs a real event loop for about ms milliseconds. Only this loop is ended
// by the timer: a modal loop running inside it is left alone.
void RunEventLoop(int ms)
{
    wxGUIEventLoop loop;
    wxTimer timer;
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    timer.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        if (std::chrono::steady_clock::now() >= end && wxEventLoopBase::GetActive() == &loop)
            loop.Exit();
    });
    timer.Start(50);
    loop.Run();
    timer.Stop();
}

bool Contains(const CRectF& r, const CPointF& p)
{
    const float ex = r.width * 1e-6f;
    const float ey = r.height * 1e-6f;
    return p.x >= r.Left() - ex && p.x <= r.Right() + ex && p.y >= r.Bottom() - ey &&
           p.y <= r.Top() + ey;
}

} // namespace

TEST_F(ViewerInteraction, TwoClickZoomThenBackAndForward)
{
    Menu("Zoom", "Zoom Window");
    EXPECT_EQ(M().m_bClickZoomAvailable, 1);
    const CPointF a = View().ClientPointToView(CPoint(200, 150));
    const CPointF b = View().ClientPointToView(CPoint(420, 330));
    XDo("mousemove " + At(200, 150) + " click 1");
    EXPECT_EQ(M().m_bClickZoomStarted, 1);
    XDo("mousemove " + At(420, 330) + " click 1");
    EXPECT_EQ(M().m_bClickZoomAvailable, 0);
    const CRectF zoomed = View().GetViewRectLP();
    EXPECT_TRUE(Contains(zoomed, a) && Contains(zoomed, b));
    EXPECT_LT(zoomed.width, fitted.width);
    Shot("viewer-click-zoom.png");

    Menu("Zoom", "Back");
    EXPECT_TRUE(View().m_rcViewArea == fitted);
    Menu("Zoom", "Forward");
    EXPECT_FALSE(View().m_rcViewArea == fitted);
}

TEST_F(ViewerInteraction, WheelZoomsAndRightDragPans)
{
    const int exponent = View().m_nZoomExponent;
    XDo("mousemove " + At(300, 250) + " click 5"); // towards the user: in
    EXPECT_EQ(View().m_nZoomExponent, exponent + 1);
    Shot("viewer-wheel-zoom.png");

    const CRectF before = View().m_rcViewArea;
    XDo("mousemove " + At(300, 250) + " mousedown 3");
    XDo("mousemove " + At(340, 270));
    XDo("mousemove " + At(380, 290) + " mouseup 3");
    EXPECT_LT(View().m_rcViewArea.x, before.x); // the scene follows the hand to the right
    EXPECT_GT(View().m_rcViewArea.y, before.y);
    Shot("viewer-right-drag.png");
}

TEST_F(ViewerInteraction, VerticalCursorShowsItsValueAndCrossings)
{
    Menu("Cursors", "Show Values");
    Menu("Cursors", "Vertical Lines");
    XDo("mousemove " + At(400, 250) + " click 1");
    ASSERT_EQ(M().m_pClippingLineArray->GetSize(), 1);
    const std::vector<CString> cursorTexts = TextsOf(plotvane::ChartTextLayer::Cursor);
    // Its label and where it crosses the curve.
    EXPECT_GE(cursorTexts.size(), 2u);
    Shot("viewer-vertical-cursor.png");
    Menu("Cursors", "Vertical Lines", false);
    Menu("Cursors", "Remove All Cursors");
    EXPECT_EQ(M().m_pClippingLineArray->GetSize(), 0);

    // The axis dialog's current point follows the mouse.
    Menu("Chart", "Axes and Ranges...");
    ASSERT_NE(M().m_AttributeDlg.GetSafeHwnd(), nullptr);
    CRect rc;
    M().m_AttributeDlg.GetWindowRect(&rc); // out of the chart's way
    M().m_AttributeDlg.MoveWindow(1000, 0, rc.Width(), rc.Height());
    XDo("mousemove " + At(300, 200));
    const CString before = M().m_Attribute.m_strCurrentPoint;
    XDo("mousemove " + At(500, 300));
    EXPECT_EQ(M().m_Attribute.m_strCurrentPoint.Find("X:"), 0);
    EXPECT_NE(M().m_Attribute.m_strCurrentPoint, before);
    CString shown;
    M().m_AttributeDlg.GetDlgItem(IDC_STC_CURRENT_POINT)->GetWindowText(shown);
    EXPECT_EQ(shown, M().m_Attribute.m_strCurrentPoint);
    M().m_AttributeDlg.DestroyWindow();
}

TEST_F(ViewerInteraction, CtrlTAsksForATextAndAClickPlacesIt)
{
    // The view takes keys once it has the focus, which a click gives it.
    XDo("mousemove " + At(100, 100) + " click 1");
    // Real keys, Ctrl held as a user holds it: the view asks the key state
    // when the key message arrives. They come from a second xdotool, since
    // the dialog runs modally inside the key handler and the test waits in
    // a real event loop meanwhile.
    std::system("(sleep 0.5; xdotool keydown ctrl; sleep 0.2; xdotool key t; sleep 0.2; "
                "xdotool keyup ctrl) >/dev/null 2>&1 &");
    // The user of the dialog: it must be the modal "Input Text String" with
    // its field and OK. Typing into a modal GTK dialog with XTEST does not
    // arrive under Xvfb without a window manager, so the text is put into
    // the field through wx and OK is pressed as a click would press it.
    bool answered = false;
    wxTimer user;
    user.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        for (wxWindow* top : wxTopLevelWindows)
        {
            auto* dlg = dynamic_cast<wxDialog*>(top);
            if (answered || dlg == nullptr || !dlg->IsModal() ||
                dlg->GetTitle() != "Input Text String")
                continue;
            auto* field = dynamic_cast<wxTextCtrl*>(dlg->FindWindow(21025));
            auto* ok = dynamic_cast<wxButton*>(dlg->FindWindow(IDOK));
            ASSERT_NE(field, nullptr);
            ASSERT_NE(ok, nullptr);
            field->WriteText("eye 1");
            wxCommandEvent click(wxEVT_BUTTON, IDOK);
            click.SetEventObject(ok);
            ok->ProcessWindowEvent(click);
            answered = true;
        }
    });
    user.Start(100);
    RunEventLoop(3000);
    user.Stop();
    EXPECT_TRUE(answered);
    EXPECT_EQ(View().GetDrawMode(), 1);
    EXPECT_STREQ(View().m_pCurrentText->m_strText.GetString(), "eye 1");
    const INT_PTR nLegend = View().m_pTextDB->GetSize();
    XDo("mousemove " + At(450, 200));
    XDo("click 1");
    ASSERT_EQ(View().m_pTextDB->GetSize(), nLegend + 1);
    EXPECT_STREQ(View().m_pTextDB->GetAt(nLegend)->m_strText.GetString(), "eye 1");
    const std::vector<CString> notes = TextsOf(plotvane::ChartTextLayer::Annotation);
    EXPECT_NE(std::find(notes.begin(), notes.end(), CString("eye 1")), notes.end());
    Shot("viewer-ctrl-t.png");
}

TEST(ZoomHistory, BackRecordsWhereTheUserIsAndANewZoomDropsForward)
{
    using plotvane::viewer::ViewState;
    plotvane::viewer::ZoomHistory h;
    const auto state = [](float x) {
        ViewState s;
        s.area.x = x;
        return s;
    };
    h.Record(state(0));
    h.Record(state(1));
    // A pan to 2 since: Back comes back to it with Forward.
    EXPECT_EQ(h.Back(state(2))->area.x, 1.0f);
    EXPECT_EQ(h.Back(state(1))->area.x, 0.0f);
    EXPECT_FALSE(h.Back(state(0)));
    EXPECT_EQ(h.Forward(state(0))->area.x, 1.0f);
    EXPECT_FALSE(h.Forward(state(7))); // moved since: no way forward
    h.Record(state(5));                // a new zoom from 1 drops 2
    EXPECT_FALSE(h.Forward(state(5)));
    EXPECT_EQ(h.Back(state(5))->area.x, 1.0f);
    EXPECT_EQ(h.Size(), 3u);
}
