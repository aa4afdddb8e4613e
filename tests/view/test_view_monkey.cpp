// Ten thousand random events on a chart with data: presses, moves, wheel,
// keys, resizes and mode switches, as a restless user or a confused host
// would send them. Nothing may escape a handler, and the view must stay
// finite. Run under the sanitizers it also proves no leak and no bad access.
#include "common/headless_chart_fixture.h"

#include <plotvane/dialogs/Dialog.h>
#include <plotvane/platform/headless/HeadlessBackend.h>

#include <cmath>
#include <cstdlib>
#include <random>

namespace
{

plotvane::HeadlessBackend& Headless()
{
    return plotvane::HeadlessBackend::Default();
}

bool IsFinite(const CRectF& r)
{
    return std::isfinite(r.x) && std::isfinite(r.y) && std::isfinite(r.width) &&
           std::isfinite(r.height);
}

class ViewMonkeyTest : public HeadlessChartTest<320, 240>
{
protected:
    void TearDown() override
    {
        Headless().ReleaseAllKeys();
        Headless().SetModalHandler(nullptr);
    }

    void Dispatch(UINT message, WPARAM wParam, LPARAM lParam)
    {
        MSG msg;
        msg.hwnd = view->GetSafeHwnd();
        msg.message = message;
        msg.wParam = wParam;
        msg.lParam = lParam;
        plotvane::DispatchWindowMessage(msg);
    }

    int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); }

    // Mostly inside the window, sometimes outside it, as a captured drag is.
    LPARAM RandomPoint()
    {
        const int x = Pick(10) == 0 ? Pick(2000) - 1000 : Pick(kWidth);
        const int y = Pick(10) == 0 ? Pick(2000) - 1000 : Pick(kHeight);
        return MAKELPARAM(x, y);
    }

    void SwitchMode()
    {
        switch (Pick(12))
        {
        case 0: m.SetClickZoomAvailable(Pick(2)); break;
        case 1: m.SetClickZoomState(Pick(8)); break;
        case 2: m.ShowGLChartVerticalClipping(Pick(2)); break;
        case 3: m.ShowGLChartHorizontalClipping(Pick(2)); break;
        case 4: m.ShowGLChartVerticalClippingBox(Pick(2)); break;
        case 5: m.ShowGLChartHorizontalClippingBox(Pick(2)); break;
        case 6: view->SetPickingMode(Pick(2)); break;
        case 7: view->SetDrawMode(Pick(4)); break;
        case 8: m.RemoveClippingLineArray(); break;
        case 9: m.RemoveClippingBoxArray(); break;
        case 10:
            view->ClearTextDB();
            view->ClearSelectNodeNames();
            break;
        default:
            m.m_bClippingVerticalValue = Pick(2);
            m.m_bClippingVerticalDistance = Pick(2);
            m.m_bClippingHorizontalValue = Pick(2);
            m.m_bClippingHorizontalDistance = Pick(2);
            m.m_bEyeMaskFollowMouse = Pick(2);
            break;
        }
    }

    void PressKey()
    {
        static const UINT keys[] = {37, 38, 39, 40, 27, 'T', 'L', '1', 'A'};
        const UINT key = keys[Pick(9)];
        Headless().SetKeyState(VK_CONTROL, Pick(3) == 0);
        Headless().SetKeyState(VK_MENU, Pick(6) == 0);
        Headless().SetKeyState('1', key == '1');
        Dispatch(WM_KEYDOWN, key, 0);
        Headless().ReleaseAllKeys();
    }

    void OneEvent()
    {
        switch (Pick(10))
        {
        case 0: Dispatch(WM_LBUTTONDOWN, MK_LBUTTON, RandomPoint()); break;
        case 1: Dispatch(WM_LBUTTONUP, 0, RandomPoint()); break;
        case 2: Dispatch(WM_RBUTTONDOWN, MK_RBUTTON, RandomPoint()); break;
        case 3: Dispatch(WM_RBUTTONUP, 0, RandomPoint()); break;
        case 4:
        case 5: Dispatch(WM_MOUSEMOVE, Pick(2) ? MK_RBUTTON : 0, RandomPoint()); break;
        case 6:
            Dispatch(WM_MOUSEWHEEL, MAKEWPARAM(0, WORD(short((Pick(5) - 2) * 120))), RandomPoint());
            break;
        case 7: PressKey(); break;
        case 8:
            // Sizes down to nothing, as a host may lay the chart out.
            m.m_ChartDlg.MoveWindow(0, 0, Pick(kWidth + 1), Pick(kHeight + 1), TRUE);
            break;
        default: SwitchMode(); break;
        }
    }

    // PLOTVANE_MONKEY_SEED replays another run.
    std::mt19937 rng{std::getenv("PLOTVANE_MONKEY_SEED") != nullptr
                         ? unsigned(std::strtoul(std::getenv("PLOTVANE_MONKEY_SEED"), nullptr, 10))
                         : 20261123u};
};

} // namespace

TEST_F(ViewMonkeyTest, TenThousandRandomEventsLeaveAFiniteView)
{
    for (int s = 0; s < 3; ++s)
    {
        CChartPointDArray wave;
        for (int i = 0; i < 400; ++i)
            wave.Add(new CChartPointD(i * 1e-11, std::sin(i * 0.05 + s) * (s + 1)));
        wave.m_strName.Format("net%d", s);
        AddSet(wave, 0x0000FF << (8 * s));
    }
    m.SetChartDrawFit();
    // The text dialog gets an answer, or is cancelled.
    Headless().SetModalHandler([this](HWND hwnd) {
        if (Pick(2) == 0)
            return;
        auto* dlg = dynamic_cast<CDialog*>(CWnd::FromHandle(hwnd));
        if (CWnd* edit = dlg != nullptr ? dlg->GetDlgItem(21025) : nullptr)
            edit->SetWindowText("monkey");
        CWnd::FromHandle(hwnd)->SendMessage(WM_COMMAND, IDOK, 0);
    });

    for (int i = 0; i < 10000; ++i)
    {
        ASSERT_NO_THROW(OneEvent()) << "event " << i;
        if (i % 25 == 0)
        {
            ASSERT_NO_THROW(Headless().PaintPending()) << "paint after event " << i;
        }
        ASSERT_TRUE(IsFinite(view->m_rcViewArea)) << "after event " << i;
    }
    m.m_ChartDlg.MoveWindow(0, 0, kWidth, kHeight, TRUE);
    view->ViewZoomfit();
    Paint();
    EXPECT_TRUE(IsFinite(view->GetViewRectLP()));
}
