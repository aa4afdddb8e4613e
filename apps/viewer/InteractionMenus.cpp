// The Zoom and Cursors menus: what the chart view does with the mouse, made
// reachable by menu, plus a zoom history of the viewer's own. Keys the view
// takes itself (Ctrl+T, Ctrl+L, Esc, arrows) carry no menu accelerator, so
// that they keep reaching the view.
#include "viewer/ViewerMenus.h"

#include "viewer/ViewerFrame.h"
#include "viewer/ZoomHistory.h"

#include <wx/menu.h>

#include <functional>
#include <memory>

namespace plotvane::viewer
{

namespace
{

// The click zoom states in words, in the order of their numbers.
constexpr const char* kClickZoomShapes[] = {
    "&Free Rectangle",          "&X Range Only",         "&Y Range Only",
    "Keep Aspect, &Longer Side", "X Range, Keep &Aspect", "Y Range, Keep A&spect",
};

ViewState StateOf(CGLChartView& view)
{
    return ViewState{view.m_rcViewArea, view.m_nZoomExponent};
}

void Show(CGLChartView& view, const ViewState& state)
{
    view.m_rcViewArea = state.area;
    view.m_nZoomExponent = state.zoomExponent;
    view.Invalidate(TRUE);
}

class Interaction
{
public:
    explicit Interaction(ViewerFrame& frame) : m_frame(frame) {}

    wxMenu* BuildZoomMenu();
    wxMenu* BuildCursorsMenu();
    // The view finished a zoom (message 2527).
    void OnViewZoomed() { m_history.Record(StateOf(m_frame.View())); }
    void OnChartReplaced()
    {
        m_history.Clear();
        m_history.Record(StateOf(m_frame.View()));
    }

private:
    void Bind(wxMenuItem* item, std::function<void()> action)
    {
        m_frame.Bind(wxEVT_MENU, [action](wxCommandEvent&) { action(); }, item->GetId());
    }
    void BindCheck(wxMenuItem* item, std::function<void(int)> action)
    {
        m_frame.Bind(wxEVT_MENU, [action](wxCommandEvent& e) { action(e.IsChecked() ? 1 : 0); },
                     item->GetId());
    }
    // A zoom the viewer makes: the view before and after goes into the
    // history.
    void Zoom(const std::function<void(CGLChartView&)>& step)
    {
        CGLChartView& view = m_frame.View();
        m_history.Record(StateOf(view));
        step(view);
        m_history.Record(StateOf(view));
    }
    void GoBack()
    {
        CGLChartView& view = m_frame.View();
        if (auto state = m_history.Back(StateOf(view)))
            Show(view, *state);
    }
    void GoForward()
    {
        CGLChartView& view = m_frame.View();
        if (auto state = m_history.Forward(StateOf(view)))
            Show(view, *state);
    }
    CPlotvane_Manager& M() { return m_frame.Manager(); }

    ViewerFrame& m_frame;
    ZoomHistory m_history;
};

wxMenu* Interaction::BuildZoomMenu()
{
    auto* menu = new wxMenu;
    Bind(menu->Append(wxID_ANY, "Zoom &Window", "Click two corners of the area to show"), [this] {
        m_history.Record(StateOf(m_frame.View()));
        M().SetClickZoomAvailable(1);
    });
    auto* shapes = new wxMenu;
    for (int state = 0; state < 6; ++state)
    {
        wxMenuItem* item = shapes->AppendRadioItem(wxID_ANY, kClickZoomShapes[state]);
        Bind(item, [this, state] { M().SetClickZoomState(state); });
    }
    menu->AppendSubMenu(shapes, "Zoom &Shape", "What a zoom window, the wheel and Zoom In change");
    menu->AppendSeparator();
    Bind(menu->Append(wxID_ANY, "Zoom &In"), [this] { Zoom([](CGLChartView& v) { v.ZoomIn(); }); });
    Bind(menu->Append(wxID_ANY, "Zoom &Out"), [this] { Zoom([](CGLChartView& v) { v.ZoomOut(); }); });
    Bind(menu->Append(wxID_ANY, "Zoom &All\tAlt+1"),
         [this] { Zoom([](CGLChartView& v) { v.ViewZoomfit(); }); });
    menu->AppendSeparator();
    Bind(menu->Append(wxID_ANY, "&Back\tAlt+Left", "The view before the last zoom"),
         [this] { GoBack(); });
    Bind(menu->Append(wxID_ANY, "&Forward\tAlt+Right", "The view that Back left"),
         [this] { GoForward(); });
    return menu;
}

wxMenu* Interaction::BuildCursorsMenu()
{
    auto* menu = new wxMenu;
    BindCheck(menu->AppendCheckItem(wxID_ANY, "&Vertical Lines", "Click to place a vertical cursor"),
              [this](int on) { M().ShowGLChartVerticalClipping(on); });
    BindCheck(menu->AppendCheckItem(wxID_ANY, "&Horizontal Lines", "Click to place a horizontal cursor"),
              [this](int on) { M().ShowGLChartHorizontalClipping(on); });
    BindCheck(menu->AppendCheckItem(wxID_ANY, "Show &Values", "Values where new cursors cross the curves"),
              [this](int on) {
                  M().SetClippingVerticalValueONOFF(on);
                  M().SetClippingHorizontalValueONOFF(on);
              });
    BindCheck(menu->AppendCheckItem(wxID_ANY, "Show &Distances", "Distance lines between pairs of new cursors"),
              [this](int on) {
                  M().SetClippingVerticalDistanceONOFF(on);
                  M().SetClippingHorizontalDistanceONOFF(on);
              });
    menu->AppendSeparator();
    BindCheck(menu->AppendCheckItem(wxID_ANY, "Vertical &Boxes", "Two clicks measure a width"),
              [this](int on) { M().ShowGLChartVerticalClippingBox(on); });
    BindCheck(menu->AppendCheckItem(wxID_ANY, "Hori&zontal Boxes", "Two clicks measure a height"),
              [this](int on) { M().ShowGLChartHorizontalClippingBox(on); });
    Bind(menu->Append(wxID_ANY, "&Remove All Cursors"), [this] {
        M().RemoveClippingLineArray();
        M().RemoveClippingBoxArray();
    });
    menu->AppendSeparator();
    BindCheck(menu->AppendCheckItem(wxID_ANY, "&Picking Mode", "Click a curve to label it with its name"),
              [this](int on) { m_frame.View().SetPickingMode(on); });
    Bind(menu->Append(wxID_ANY, "Add &Text...  (Ctrl+T)", "Type a text, then click where it goes"),
         [this] { m_frame.View().SetDrawMode(1); });
    Bind(menu->Append(wxID_ANY, "Add &Line  (Ctrl+L)", "Click the two ends of a line"),
         [this] { m_frame.View().SetDrawMode(2); });
    Bind(menu->Append(wxID_ANY, "&Clear Texts, Lines and Labels"), [this] {
        CGLChartView& view = m_frame.View();
        view.ClearTextDB();
        view.ClearLineDB();
        view.ClearSelectNodeNames();
        view.Invalidate(TRUE);
    });
    return menu;
}

} // namespace

void AddInteractionMenus(ViewerFrame& frame, wxMenuBar& bar)
{
    // Lives as long as the frame's bindings that share it.
    auto interaction = std::make_shared<Interaction>(frame);
    bar.Append(interaction->BuildZoomMenu(), "&Zoom");
    bar.Append(interaction->BuildCursorsMenu(), "&Cursors");
    frame.AddChartReplacedListener([interaction] { interaction->OnChartReplaced(); });
    frame.ChartPanel()->Bind(EVT_PLOTVANE_MESSAGE, [interaction](WxMessageEvent& e) {
        e.Skip();
        if (e.message == 2527)
            interaction->OnViewZoomed();
    });
}

} // namespace plotvane::viewer
