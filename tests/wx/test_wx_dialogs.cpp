// The data, axis and appearance dialogs as real wx windows: built from their
// resources, driven with real X input, and pictured for a look.
#include "wx_test_support.h"

#include "dialogs/dialog_test_support.h"

#include <plotvane/dialogs/GLPlotvane_Environment_Colorset_Dlg.h>
#include <plotvane/dialogs/GLPlotvane_Environment_Dlg.h>
#include <plotvane/platform/wx/WxListCtrl.h>

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/dataview.h>
#include <wx/radiobut.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <functional>
#include <string>

using plotvane::test::ChartFrame;
using plotvane::test::Pump;
using plotvane::test::XDo;

namespace
{

// Where dialogs are shown, clear of the test frames: the test display has
// no window manager to keep one window above another.
constexpr int kDialogX = 700;
constexpr int kDialogY = 60;
// What a GTK button needs around its label: padding and frame.
constexpr int kButtonPadding = 12;

wxWindow* WxOf(const CWnd& wnd)
{
    return plotvane::InstallWxBackend().GetWxWindow(wnd.GetSafeHwnd());
}

wxWindow* WxItem(const CDialog& dlg, int nID)
{
    CWnd* pCtrl = dlg.GetDlgItem(nID);
    return pCtrl != nullptr ? WxOf(*pCtrl) : nullptr;
}

std::string At(const wxPoint& p)
{
    return std::to_string(p.x) + " " + std::to_string(p.y);
}

std::string CentreOf(const wxWindow* w)
{
    const wxRect rc = w->GetScreenRect();
    return At(wxPoint(rc.x + rc.width / 2, rc.y + rc.height / 2));
}

void Click(const wxWindow* w)
{
    ASSERT_NE(w, nullptr);
    XDo("mousemove " + CentreOf(w) + " click 1");
}

// Clicks into an edit, replaces its text by typing, and leaves it with Tab.
void TypeInto(const wxWindow* w, const std::string& text)
{
    Click(w);
    XDo("key ctrl+a");
    XDo("type --delay 20 -- '" + text + "'");
    XDo("key Tab");
}

// The GDK and GLib that wx runs on, looked up by name: the test program
// links wx, not them.
template <class F> F Gdk(const char* name)
{
    return reinterpret_cast<F>(dlsym(RTLD_DEFAULT, name));
}

// What the X server shows in the window's rectangle.
plotvane::Image ScreenShot(wxWindow* w)
{
    plotvane::Image image;
    const auto root = Gdk<void* (*)()>("gdk_get_default_root_window");
    const auto grab = Gdk<void* (*)(void*, int, int, int, int)>("gdk_pixbuf_get_from_window");
    const auto pixels = Gdk<unsigned char* (*)(void*)>("gdk_pixbuf_get_pixels");
    const auto stride = Gdk<int (*)(void*)>("gdk_pixbuf_get_rowstride");
    const auto channels = Gdk<int (*)(void*)>("gdk_pixbuf_get_n_channels");
    const auto unref = Gdk<void (*)(void*)>("g_object_unref");
    if (!root || !grab || !pixels || !stride || !channels || !unref)
        return image;
    const wxRect rc = w->GetScreenRect();
    void* pixbuf = grab(root(), rc.x, rc.y, rc.width, rc.height);
    if (pixbuf == nullptr)
        return image;
    image.Reset(rc.width, rc.height);
    for (int y = 0; y < rc.height; ++y)
        for (int x = 0; x < rc.width; ++x)
        {
            const unsigned char* p = pixels(pixbuf) + y * stride(pixbuf) + x * channels(pixbuf);
            std::uint8_t* q = &image.rgba[size_t(y * rc.width + x) * 4];
            q[0] = p[0];
            q[1] = p[1];
            q[2] = p[2];
            q[3] = 255;
        }
    unref(pixbuf);
    return image;
}

// Saves the dialog's picture as test-artifacts/dialogs/<ClassName>.png.
void SaveDialogShot(const CWnd& dlg, const std::string& name)
{
    const std::string out = plotvane::test::ArtifactDir() + "/dialogs";
    std::filesystem::create_directories(out);
    wxWindow* w = WxOf(dlg);
    ASSERT_NE(w, nullptr);
    Pump(300);
    const plotvane::Image image = ScreenShot(w);
    ASSERT_FALSE(image.IsEmpty());
    EXPECT_TRUE(plotvane::WritePng(CString(out + "/" + name + ".png"), image));
}

// Shows a dialog made with Create where the tests expect it.
// Moves a shown dialog where the tests expect it and gives it the X
// keyboard focus, which no window manager hands out here.
void Place(wxWindow* w)
{
    Pump(300);
    w->Move(kDialogX, kDialogY);
    w->Raise();
    Pump(200);
    const auto gdkWindow = Gdk<void* (*)(void*)>("gtk_widget_get_window");
    const auto xid = Gdk<unsigned long (*)(void*)>("gdk_x11_window_get_xid");
    ASSERT_TRUE(gdkWindow && xid);
    XDo("windowfocus --sync " + std::to_string(xid(gdkWindow(w->GetHandle()))));
}

void ShowAt(CDialog& dlg)
{
    dlg.ShowWindow(SW_SHOW);
    Place(WxOf(dlg));
}

bool IsNativeKindOf(const plotvane::DialogControl& c, wxWindow* ctrl)
{
    const DWORD kind = c.style & BS_TYPEMASK;
    if (c.className == "SysListView32")
        return dynamic_cast<wxDataViewCtrl*>(ctrl) != nullptr;
    if (c.className == "COMBOBOX")
        return dynamic_cast<wxChoice*>(ctrl) != nullptr;
    if (c.className == "EDIT")
        return dynamic_cast<wxTextCtrl*>(ctrl) != nullptr;
    if (c.className == "STATIC")
        return dynamic_cast<wxStaticText*>(ctrl) != nullptr;
    if (kind == BS_AUTORADIOBUTTON)
        return dynamic_cast<wxRadioButton*>(ctrl) != nullptr;
    if (kind == BS_GROUPBOX)
        return dynamic_cast<wxStaticBox*>(ctrl) != nullptr;
    return dynamic_cast<wxButton*>(ctrl) != nullptr;
}

// Every control of the resource is there with its id, its kind of native
// control and its place in dialog units; none leaves the dialog, and none
// is narrower than its text needs.
void ExpectBuiltFromResource(const CDialog& dlg)
{
    wxWindow* w = WxOf(dlg);
    ASSERT_NE(w, nullptr);
    const plotvane::DialogResource* res = dlg.GetResource();
    ASSERT_NE(res, nullptr);
    EXPECT_EQ(w->GetClientSize(), wxSize(w->ConvertDialogToPixels(wxSize(res->cx, res->cy))));
    const wxRect client(w->GetClientSize());
    for (const plotvane::DialogControl& c : res->controls)
    {
        if (c.id == IDC_STATIC)
            continue;
        wxWindow* ctrl = WxItem(dlg, int(c.id));
        ASSERT_NE(ctrl, nullptr) << c.id;
        EXPECT_EQ(ctrl->GetId(), int(c.id));
        const wxPoint lt = w->ConvertDialogToPixels(wxPoint(c.rect.left, c.rect.top));
        EXPECT_EQ(ctrl->GetPosition(), lt) << c.id;
        EXPECT_TRUE(client.Contains(ctrl->GetRect())) << c.id;
        EXPECT_TRUE(IsNativeKindOf(c, ctrl)) << c.id;
    }
    // Texts fit: a radio button or static text its best width, a button its
    // label with the theme's padding.
    for (wxWindow* child : w->GetChildren())
    {
        const wxString label = child->GetLabel();
        if (dynamic_cast<wxButton*>(child) != nullptr)
        {
            EXPECT_LE(child->GetTextExtent(label).x + kButtonPadding, child->GetSize().x) << label;
        }
        else if (dynamic_cast<wxRadioButton*>(child) || dynamic_cast<wxStaticText*>(child))
        {
            EXPECT_LE(child->GetBestSize().x, child->GetSize().x) << label;
        }
    }
}

// Runs dlg modally while user acts on it from inside the modal loop.
INT_PTR RunModal(CDialog& dlg, std::function<void()> user)
{
    wxTheApp->CallAfter(
        [&dlg, user]
        {
            if (wxWindow* w = WxOf(dlg))
                Place(w);
            user();
        });
    return dlg.DoModal();
}

} // namespace

TEST(WxDialogs, DataDialogTypedPointsAndCheckBoxesReachTheChart)
{
    ChartFrame f(400, 300);
    ASSERT_TRUE(f.created);
    f.m.RemoveAllData();
    plotvane::test::FillSine(f.m);
    CPlotvane_InputData_Dlg& dlg = f.m.m_InputDataDlg;
    ASSERT_TRUE(dlg.Create(CPlotvane_InputData_Dlg::IDD));
    ShowAt(dlg);
    ExpectBuiltFromResource(dlg);
    CPlotvane_InputData& data = f.m.m_InputData;

    // A new set through the window: "Add Set", named by typing.
    Click(WxItem(dlg, 21002));
    Click(WxItem(dlg, 21015)); // "Edit Set" on the new set
    ASSERT_EQ(data.GetDataSetSize(), 2u);
    EXPECT_EQ(data.GetCurrentEditSet(), 1);
    TypeInto(WxItem(dlg, 21016), "clock");
    EXPECT_EQ(data.GetChartPointDArray(1)->m_strName, CString("clock"));
    TypeInto(WxItem(dlg, 11001), "0.5");
    TypeInto(WxItem(dlg, 11002), "1.25");
    Click(WxItem(dlg, 11003));
    TypeInto(WxItem(dlg, 11001), "2");
    TypeInto(WxItem(dlg, 11002), "-1");
    Click(WxItem(dlg, 11003));
    ASSERT_EQ(data.GetDataSize(1), 2);
    EXPECT_EQ(data.GetDataX(0), 0.5);
    EXPECT_EQ(data.GetDataY(1), -1.0);
    // The point list shows what the store holds.
    auto* points = dynamic_cast<wxDataViewCtrl*>(WxItem(dlg, 11000));
    ASSERT_NE(points, nullptr);
    Pump(200);
    auto* rows = dynamic_cast<wxDataViewVirtualListModel*>(points->GetModel());
    ASSERT_NE(rows, nullptr);
    EXPECT_EQ(rows->GetCount(), 2u);
    SaveDialogShot(dlg, "CPlotvane_InputData_Dlg");

    // The check box of a set row draws it or not.
    wxWindow* sets = WxItem(dlg, 21018);
    const wxRect row0 = plotvane::wx::ListCellScreenRect(sets, 0, 0);
    ASSERT_FALSE(row0.IsEmpty());
    const wxPoint box(row0.x + 10, row0.y + row0.height / 2);
    XDo("mousemove " + At(box) + " click 1");
    Pump(200);
    CArrayN drawn;
    data.GetDrawlDataSetIndexArray(drawn);
    EXPECT_FALSE(drawn.IsExist(0));
    EXPECT_TRUE(drawn.IsExist(1));
    EXPECT_FALSE(dlg.m_ctrlSetList.GetCheck(0));
    XDo("mousemove " + At(box) + " click 1");
    Pump(200);
    drawn.RemoveAll();
    data.GetDrawlDataSetIndexArray(drawn);
    EXPECT_TRUE(drawn.IsExist(0));

    // A click on the "X" header sorts the points by X, downwards the second
    // time.
    const wxRect header = plotvane::wx::ListCellScreenRect(points, 0, 0);
    XDo("mousemove " + At(wxPoint(header.x + 10, header.y - header.height / 2)) + " click 1");
    XDo("mousemove " + At(wxPoint(header.x + 10, header.y - header.height / 2)) + " click 1");
    Pump(200);
    EXPECT_EQ(data.GetSortStateX(), 2);
    EXPECT_EQ(data.GetDataX(0), 2.0);
    dlg.DestroyWindow();
}

TEST(WxDialogs, AxisDialogStoresTypedNamesAndRangeMode)
{
    ChartFrame f(400, 300);
    ASSERT_TRUE(f.created);
    CPlotvane_Attribute_Dlg& dlg = f.m.m_AttributeDlg;
    ASSERT_TRUE(dlg.Create(CPlotvane_Attribute_Dlg::IDD));
    ShowAt(dlg);
    ExpectBuiltFromResource(dlg);
    SaveDialogShot(dlg, "CPlotvane_Attribute_Dlg");

    TypeInto(WxItem(dlg, 11035), "Time (s)");
    EXPECT_EQ(f.m.m_Attribute.m_XAxis.GetAxisName(), CString("Time (s)"));
    EXPECT_FALSE(WxItem(dlg, 11031)->IsEnabled());
    Click(WxItem(dlg, 11030)); // "User"
    EXPECT_EQ(f.m.m_Attribute.m_nRangeMode, 2);
    EXPECT_TRUE(WxItem(dlg, 11031)->IsEnabled());
    TypeInto(WxItem(dlg, 11032), "7.5");
    EXPECT_EQ(f.m.m_Attribute.m_XAxis.GetEndPoint(), 7.5);
    Click(WxItem(dlg, 11021)); // "Default"
    EXPECT_EQ(f.m.m_Attribute.m_nRangeMode, 0);
    EXPECT_FALSE(WxItem(dlg, 11031)->IsEnabled());
    dlg.DestroyWindow();
}

TEST(WxDialogs, AppearanceOKWritesTheFileAndCancelLeavesIt)
{
    ChartFrame f(400, 300);
    ASSERT_TRUE(f.created);
    plotvane_test::PrivateDataDir dir;

    CGLPlotvane_Environment_Dlg dlg;
    const INT_PTR ok = RunModal(dlg,
                                [&dlg]
                                {
                                    ExpectBuiltFromResource(dlg);
                                    SaveDialogShot(dlg, "CGLPlotvane_Environment_Dlg");
                                    TypeInto(WxItem(dlg, 21033), "3");
                                    TypeInto(WxItem(dlg, 21046), "16.7");
                                    Click(WxItem(dlg, 21044)); // "Dot"
                                    Click(WxItem(dlg, IDOK));
                                });
    EXPECT_EQ(ok, IDOK);
    CGLPlotvane_Environment saved;
    ASSERT_EQ(saved.LoadEnvironmentFIle(), 1);
    EXPECT_EQ(saved.GetLineWidth(), 3);
    EXPECT_EQ(saved.GetFontSizeMeasure(), 16);
    EXPECT_EQ(saved.GetGridLine(), 2);

    // The stored look reaches the chart.
    f.m.SetChartEnvironment();
    EXPECT_EQ(f.m.m_ChartDlg.GetGridMode(), 2);

    const auto before = std::filesystem::last_write_time(dir.File());
    CGLPlotvane_Environment_Dlg again;
    const INT_PTR cancel = RunModal(again,
                                    [&again]
                                    {
                                        auto* width =
                                            dynamic_cast<wxTextCtrl*>(WxItem(again, 21033));
                                        ASSERT_NE(width, nullptr);
                                        EXPECT_EQ(width->GetValue(), "3");
                                        TypeInto(width, "9");
                                        Click(WxItem(again, IDCANCEL));
                                    });
    EXPECT_EQ(cancel, IDCANCEL);
    EXPECT_EQ(std::filesystem::last_write_time(dir.File()), before);
    CGLPlotvane_Environment after;
    after.LoadEnvironmentFIle();
    EXPECT_EQ(after.GetLineWidth(), 3);
}

TEST(WxDialogs, ColorSetDialogShowsColourCells)
{
    ChartFrame f(400, 300);
    ASSERT_TRUE(f.created);
    CDWordArray colors;
    for (int i = 0; i < 22; ++i)
        colors.Add(RGB(i * 11, 255 - i * 11, 128));
    CGLPlotvane_Environment_Colorset_Dlg dlg;
    dlg.m_pColorSet = &colors;
    const INT_PTR result =
        RunModal(dlg,
                 [&dlg]
                 {
                     ExpectBuiltFromResource(dlg);
                     SaveDialogShot(dlg, "CGLPlotvane_Environment_Colorset_Dlg");
                     // The swatch of row 1, column 1 shows colour 2 on the screen.
                     wxWindow* list = WxItem(dlg, 21049);
                     const wxRect cell = plotvane::wx::ListCellScreenRect(list, 1, 1);
                     ASSERT_FALSE(cell.IsEmpty());
                     const plotvane::Image shot = ScreenShot(list);
                     const wxPoint at = cell.GetPosition() - list->GetScreenRect().GetPosition() +
                                        wxPoint(cell.width / 2, cell.height / 2);
                     EXPECT_EQ(shot.Pixel(at.x, at.y), RGB(22, 233, 128));
                     Click(WxItem(dlg, IDCANCEL));
                 });
    EXPECT_EQ(result, IDCANCEL);
    EXPECT_EQ(colors.GetAt(2), RGB(22, 233, 128));
}
