// Mouse, keys, zoom and the annotation layer, driven the way the window
// system drives them: messages through DispatchWindowMessage, the key table
// of the headless backend, and a stand-in user for the modal text dialog.
#include "common/headless_chart_fixture.h"

#include <plotvane/dialogs/Plotvane_InputText_Dlg.h>
#include <plotvane/platform/headless/HeadlessBackend.h>

#include <cmath>
#include <vector>

namespace
{

plotvane::HeadlessBackend& Headless()
{
    return plotvane::HeadlessBackend::Default();
}

CChartPointDArray Line(double x0, double y0, double x1, double y1)
{
    CChartPointDArray a;
    for (int i = 0; i <= 100; ++i)
    {
        const double t = i / 100.0;
        a.Add(new CChartPointD(x0 + (x1 - x0) * t, y0 + (y1 - y0) * t));
    }
    return a;
}

class ViewInputTest : public HeadlessChartTest<400, 300>
{
protected:
    void SetUp() override
    {
        HeadlessChartTest::SetUp();
        if (HasFatalFailure())
            return;
        // Two curves crossing at (0.5, 0.5).
        a = AddSet(Line(0, 0, 1, 1), 0x0000FF);
        b = AddSet(Line(0, 1, 1, 0), 0x00FF00);
        m.m_InputData.GetChartPointDArray(a)->m_strName = "rise";
        m.m_InputData.GetChartPointDArray(b)->m_strName = "fall";
        m.SetChartDrawFit();
        Paint();
        ASSERT_TRUE(host.Create(nullptr, "", WS_VISIBLE, CRect(0, 0, 10, 10), nullptr, 0));
        Headless().SetMessageHandler(host.GetSafeHwnd(), [this](UINT msg, WPARAM, LPARAM) -> LRESULT {
            messages.push_back(msg);
            return 0;
        });
        m.m_pParentWnd = &host;
    }
    void TearDown() override
    {
        // The host window outlives the log its handler writes to.
        Headless().SetMessageHandler(host.GetSafeHwnd(), nullptr);
        Headless().ReleaseAllKeys();
        Headless().SetModalHandler(nullptr);
        m.m_pParentWnd = nullptr;
    }

    void Send(UINT message, WPARAM wParam, CPoint pt)
    {
        MSG msg;
        msg.hwnd = view->GetSafeHwnd();
        msg.message = message;
        msg.wParam = wParam;
        msg.lParam = MAKELPARAM(pt.x, pt.y);
        plotvane::DispatchWindowMessage(msg);
    }
    void Click(CPoint pt)
    {
        Send(WM_LBUTTONDOWN, MK_LBUTTON, pt);
        Send(WM_LBUTTONUP, 0, pt);
    }
    void Key(UINT vk, bool ctrl = false)
    {
        Headless().SetKeyState(VK_CONTROL, ctrl);
        Send(WM_KEYDOWN, vk, CPoint(0, 0));
        Headless().SetKeyState(VK_CONTROL, false);
    }
    void Wheel(short delta)
    {
        view->SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(0, WORD(delta)), MAKELPARAM(200, 150));
    }
    // The next modal dialog gets this text and OK, or is cancelled.
    void AnswerTextDialog(const char* text, bool ok = true)
    {
        Headless().SetModalHandler([text, ok](HWND hwnd) {
            auto* dlg = dynamic_cast<CDialog*>(CWnd::FromHandle(hwnd));
            ASSERT_NE(dlg, nullptr);
            dlg->GetDlgItem(21025)->SetWindowText(text);
            dlg->SendMessage(WM_COMMAND, ok ? IDOK : IDCANCEL, 0);
        });
    }
    CRectF Area() const { return view->m_rcViewArea; }

    int a = 0;
    int b = 0;
    CWnd host;
    std::vector<UINT> messages;
};

} // namespace

TEST_F(ViewInputTest, EachClickZoomStateGivesItsRectangle)
{
    // Corners from two clicks at logical (sx, sy) and (px, py).
    const CPoint start(100, 200);
    const CPoint end(180, 120);
    const CPointF s = view->ClientPointToView(start);
    const CPointF p = view->ClientPointToView(end);
    const CRectF rc = view->GetViewRectLP();
    const auto expectArea = [&](double left, double bottom, double right, double top) {
        const CRectF r = Area();
        EXPECT_FLOAT_EQ(r.Right(), float(right));
        EXPECT_FLOAT_EQ(r.Top(), float(top));
        // The ninth that the plot frame keeps below and left of the corner.
        EXPECT_NEAR(r.Left(), left - (right - left) / 9.0, 1e-5);
        EXPECT_NEAR(r.Bottom(), bottom - (top - bottom) / 9.0, 1e-5);
    };
    const CRectF before = Area();
    for (int state : {0, 1, 2, 3, 4, 5, 7})
    {
        view->m_rcViewArea = before;
        m.m_nClickZoomState = state;
        m.m_ptClickZoomStartLP = s;
        m.m_ptClickZoomStart = CPointN(start.x, start.y);
        view->ClickZoomArea(end);
        SCOPED_TRACE(state);
        const double x1 = std::fmin(s.x, p.x), x2 = std::fmax(s.x, p.x);
        const double y1 = std::fmin(s.y, p.y), y2 = std::fmax(s.y, p.y);
        const double ex = (x2 - x1) * (double(rc.height) / rc.width) * 0.5;
        switch (state)
        {
        case 0:
            expectArea(x1, y1, x2, y2);
            break;
        case 1:
            expectArea(x1, rc.Bottom(), x2, rc.Top());
            break;
        case 2:
            expectArea(rc.Left(), y1, rc.Right(), y2);
            break;
        case 3: // moved 80 px across and 80 down: not more across, so as 5
        case 5:
        {
            const double e = (y2 - y1) * (double(rc.width) / rc.height) * 0.5;
            expectArea(p.x - e, y1, p.x + e, y2);
            break;
        }
        case 4:
            expectArea(x1, p.y - ex, x2, p.y + ex);
            break;
        default:
            EXPECT_EQ(Area().x, before.x);
            EXPECT_EQ(Area().width, before.width);
        }
    }
}

TEST_F(ViewInputTest, TwoClickZoomRepaintsAndTellsTheHost)
{
    m.SetClickZoomAvailable(1);
    Click(CPoint(100, 100));
    EXPECT_EQ(m.m_bClickZoomStarted, 1);
    Send(WM_MOUSEMOVE, 0, CPoint(150, 140)); // the XOR band, no repaint needed
    EXPECT_EQ(m.m_ptClickZoomEnd.x, 150);
    const CPointF p1 = view->ClientPointToView(CPoint(100, 100));
    const CPointF p2 = view->ClientPointToView(CPoint(300, 200));
    Click(CPoint(300, 200));
    EXPECT_EQ(m.m_bClickZoomAvailable, 0);
    EXPECT_EQ(m.m_bClickZoomStarted, 0);
    // Both corners are in view, and the view is smaller than before.
    const CRectF r = view->GetViewRectLP();
    EXPECT_LE(r.Left(), p1.x);
    EXPECT_GE(r.Right(), p2.x);
    EXPECT_LT(r.width, 1.5f * (p2.x - p1.x));
    ASSERT_FALSE(messages.empty());
    EXPECT_EQ(messages.back(), 2527u);
}

TEST_F(ViewInputTest, FewGridLinesAskTheHostForDecimals)
{
    // One grid line across X: 2524 before 2527, and not 2525.
    CAxisAttribute& x = m.m_Attribute.m_XAxis;
    x.m_bUserSettingInterval = 1;
    x.SetGridInterval(view->GetViewRectLP().width / 2.0);
    view->ApplyZoomAreaToViewAndAdjustDecimalOfParentDlg(0);
    EXPECT_EQ(messages, (std::vector<UINT>{2524, 2527}));
}

TEST_F(ViewInputTest, WheelZoomsByStateAndKeysPan)
{
    const CRectF before = Area();
    m.m_nClickZoomState = 1;
    Wheel(-120); // towards the screen: in, X only
    EXPECT_NEAR(Area().width, before.width * 10.0f / 12.0f, 1e-4);
    EXPECT_FLOAT_EQ(Area().height, before.height);
    Wheel(120);
    EXPECT_NEAR(Area().width, before.width * 10.0f / 12.0f * 1.2f, 1e-4);

    view->m_rcViewArea = before;
    m.m_nClickZoomState = 4;
    const int exponent = view->m_nZoomExponent;
    Wheel(-120);
    EXPECT_EQ(view->m_nZoomExponent, exponent + 1);
    view->m_bReverseWheel = 1;
    Wheel(-120);
    EXPECT_EQ(view->m_nZoomExponent, exponent);
    Wheel(0);
    EXPECT_EQ(view->m_nZoomExponent, exponent);

    Paint();
    const CRectF visible = view->GetViewRectLP();
    const CRectF area = Area();
    Key(39); // right: the view moves right by a tenth of what is visible
    EXPECT_NEAR(Area().x - area.x, visible.width / 10.0f, 1e-5);
    Key(38);
    EXPECT_NEAR(Area().y - area.y, visible.height / 10.0f, 1e-5);
}

TEST_F(ViewInputTest, RightDragMovesTheSceneWithTheHand)
{
    const CRectF before = Area();
    const CPointF a0 = view->ClientPointToView(CPoint(100, 100));
    const CPointF a1 = view->ClientPointToView(CPoint(160, 130));
    Send(WM_RBUTTONDOWN, MK_RBUTTON, CPoint(100, 100));
    Send(WM_MOUSEMOVE, MK_RBUTTON, CPoint(160, 130));
    Send(WM_RBUTTONUP, 0, CPoint(160, 130));
    EXPECT_NEAR(Area().x, before.x - (a1.x - a0.x), 1e-5);
    EXPECT_NEAR(Area().y, before.y - (a1.y - a0.y), 1e-5);
    EXPECT_EQ(view->m_bMouseDrag, 0);
}

TEST_F(ViewInputTest, EscLeavesEveryModeAndAltOneFits)
{
    m.SetClickZoomAvailable(1);
    view->SetDrawMode(2);
    Key(27);
    EXPECT_EQ(m.m_bClickZoomAvailable, 0);
    EXPECT_EQ(view->GetDrawMode(), 0);
    EXPECT_EQ(messages, (std::vector<UINT>{2527}));

    const int fit = m.m_nBaseZoomLevel;
    Wheel(-120);
    Headless().SetKeyState(VK_MENU, true);
    Headless().SetKeyState('1', true);
    Send(WM_MOUSEMOVE, 0, CPoint(10, 10)); // any message will do
    EXPECT_EQ(view->m_nZoomExponent, fit);
}

TEST_F(ViewInputTest, CtrlTPlacesATextOnReleaseAndCancelKeepsTheLast)
{
    AnswerTextDialog("DQ0 eye");
    Key('T', true);
    EXPECT_EQ(view->GetDrawMode(), 1);
    EXPECT_STREQ(view->m_pCurrentText->m_strText.GetString(), "DQ0 eye");
    Send(WM_LBUTTONDOWN, MK_LBUTTON, CPoint(120, 80));
    EXPECT_EQ(view->m_pTextDB->GetSize(), 0); // not on the press
    Send(WM_LBUTTONUP, 0, CPoint(120, 80));
    ASSERT_EQ(view->m_pTextDB->GetSize(), 1);
    const CChartTextData& t = *view->m_pTextDB->GetAt(0);
    EXPECT_STREQ(t.m_strText.GetString(), "DQ0 eye");
    EXPECT_EQ(t.m_color, view->GetLabelColor());
    EXPECT_GT(t.m_dWidth, 0.0);
    EXPECT_EQ(view->GetDrawMode(), 0);

    AnswerTextDialog("ignored", false);
    Key('t', true);
    Click(CPoint(200, 200));
    ASSERT_EQ(view->m_pTextDB->GetSize(), 2);
    EXPECT_STREQ(view->m_pTextDB->GetAt(1)->m_strText.GetString(), "DQ0 eye");

    // Drawn through the annotation layer of the text hook.
    std::vector<CString> drawn;
    view->SetTextHook([&](const plotvane::ChartText& text) {
        if (text.layer == plotvane::ChartTextLayer::Annotation)
            drawn.push_back(text.strText);
    });
    Paint();
    EXPECT_EQ(drawn.size(), 2u);
    view->SetTextHook({});
}

TEST_F(ViewInputTest, CtrlLDrawsALineInTwoClicksAndEscKeepsItsStart)
{
    view->AllChangeLineDataWidth(3.0);
    Key('L', true);
    EXPECT_EQ(view->GetDrawMode(), 2);
    Click(CPoint(50, 50));
    EXPECT_EQ(view->GetDrawStep(), 1);
    Key(27);
    EXPECT_EQ(view->GetDrawMode(), 0);
    EXPECT_EQ(view->GetDrawStep(), 1); // Ctrl+L goes on from the old point
    Key('L', true);
    Click(CPoint(150, 120));
    ASSERT_EQ(view->m_pLineDB->GetSize(), 1);
    const CChartLineData& l = *view->m_pLineDB->GetAt(0);
    const CPointF p0 = view->ClientPointToView(CPoint(50, 50));
    EXPECT_FLOAT_EQ(float(l.m_dX1), p0.x);
    EXPECT_EQ(l.m_dWidth, 3.0);
    EXPECT_EQ(view->GetDrawMode(), 0);
    EXPECT_EQ(view->GetDrawStep(), 0);
}

TEST_F(ViewInputTest, GrabbingFollowsItsOrderWithTheBoxTextException)
{
    const CPoint at(200, 150);
    const CPointF p = view->ClientPointToView(at);
    const auto place = [&](CChartTextData* t) {
        t->m_bVisible = 1;
        t->m_dX = p.x - 0.01;
        t->m_dY = p.y - 0.01;
        t->m_dWidth = t->m_dHeight = 0.05;
        return t;
    };
    const auto textAt = [&](const char* s) {
        auto* t = place(new CChartTextData);
        t->m_strText = s;
        return t;
    };
    // A box text and a curve label on the same spot: the label takes over,
    // the box text stays hidden.
    auto* box = new CChartClippingBox;
    place(box->m_pWidthText);
    m.m_pClippingBoxArray->Add(box);
    CChartTextData* label = textAt("rise");
    view->m_pSelectNodeNames->Add(label);
    Send(WM_LBUTTONDOWN, MK_LBUTTON, at);
    EXPECT_EQ(view->GetDrawMode(), 3);
    EXPECT_EQ(view->m_pPickedText, label);
    EXPECT_EQ(box->m_pWidthText->m_bVisible, 0);
    EXPECT_EQ(label->m_bVisible, 0);

    // The next press puts it down where the mouse is.
    Send(WM_MOUSEMOVE, 0, CPoint(250, 100));
    Paint();
    Send(WM_LBUTTONDOWN, MK_LBUTTON, CPoint(250, 100));
    EXPECT_EQ(view->GetDrawMode(), 0);
    EXPECT_EQ(label->m_bVisible, 1);
    EXPECT_NEAR(label->m_dX, view->ClientPointToView(CPoint(250, 100)).x, 1e-6);

    // A free text comes before box texts and labels.
    CChartTextData* free = textAt("note");
    view->m_pTextDB->Add(free);
    Send(WM_LBUTTONDOWN, MK_LBUTTON, at);
    EXPECT_EQ(view->m_pPickedText, free);
    Key(27); // Esc: the text stays hidden and picked
    EXPECT_EQ(view->GetDrawMode(), 0);
    EXPECT_EQ(view->m_pPickedText, free);
    view->ClearTextDB(); // and is let go with its collection
    EXPECT_EQ(view->m_pPickedText, nullptr);
}

TEST_F(ViewInputTest, PickingLabelsEveryCurveUnderThePoint)
{
    view->SetPickingMode(1);
    Click(ToClient(0.5, 0.5)); // where the two cross
    ASSERT_EQ(view->m_pSelectNodeNames->GetSize(), 2);
    std::vector<CString> names;
    for (CChartTextData* t : *view->m_pSelectNodeNames)
        names.push_back(t->m_strText);
    EXPECT_NE(std::find(names.begin(), names.end(), CString("rise")), names.end());
    EXPECT_NE(std::find(names.begin(), names.end(), CString("fall")), names.end());

    Click(ToClient(0.25, 0.25)); // on "rise" only
    EXPECT_EQ(view->m_pSelectNodeNames->GetSize(), 3);
    EXPECT_EQ(view->m_pSelectNodeNames->GetAt(2)->m_color, 0x0000FFu);
    const CPoint empty = ToClient(0.1, 0.9);
    Click(CPoint(empty.x, empty.y + 40)); // empty ground
    EXPECT_EQ(view->m_pSelectNodeNames->GetSize(), 3);
}

TEST_F(ViewInputTest, MouseMoveReportsCoordinatesInTheStatusBar)
{
    m.SetAxisXName("Time(s)");
    Send(WM_MOUSEMOVE, 0, ToClient(0.5, 0.25));
    const CString text = m.m_ChartDlg.m_wndStatusBar.GetPaneText(1);
    EXPECT_EQ(text.Find(" [ "), 0);
    EXPECT_GE(text.Find("Time"), 0);
}

TEST_F(ViewInputTest, AFollowingEyeMaskStaysWhereTheClickPutsIt)
{
    m.m_bEyeMaskFollowMouse = 1;
    m.m_dEyeMaskWidth = 20.0;
    m.m_dEyeMaskHeight = 0.2;
    m.m_dEyeMaskTopPercent = 50.0;
    m.m_dEyeMaskBottomPercent = 50.0;
    ASSERT_EQ(m.m_pEyeMaskRectArray->GetSize(), 0);
    const CPoint at = ToClient(0.3, 0.5);
    Send(WM_MOUSEMOVE, 0, at);
    EXPECT_EQ(m.m_ptCurrentMouse.x, at.x); // the mask follows
    Send(WM_LBUTTONDOWN, MK_LBUTTON, at);
    ASSERT_EQ(m.m_pEyeMaskRectArray->GetSize(), 1);
    EXPECT_EQ(m.m_bEyeMaskFollowMouse, 0);
    const CRectD& mask = *m.m_pEyeMaskRectArray->GetAt(0);
    const double cx = view->ClientPointToView(at).x;
    EXPECT_NEAR((mask.Left() + mask.Right()) / 2.0, cx, 1e-6);
}
