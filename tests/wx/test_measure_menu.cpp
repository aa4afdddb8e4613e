// plotvane-viewer's Measure menu as a user drives it: the menu command, its
// dialog filled in and confirmed, the overlay's texts read back through the
// view's text hook, and a picture of the result.
#include "wx_test_support.h"

#include "viewer/DdrEye.h"
#include "viewer/ViewerFrame.h"

#include <wx/bitmap.h>
#include <wx/choice.h>
#include <wx/dcmemory.h>
#include <wx/dcscreen.h>
#include <wx/dialog.h>
#include <wx/image.h>
#include <wx/menu.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

using plotvane::test::Pump;
using plotvane::viewer::ViewerFrame;

using plotvane::test::ArtifactDir;
using plotvane::test::ShotDir;

namespace
{

// The chart archive a demo of plotvane-render writes.
std::string DemoChart(const std::string& demo)
{
    const std::string pvc = ShotDir() + "/measure-" + demo + ".pvc";
    const std::string cmd = std::string(PLOTVANE_RENDER_EXE) + " --demo " + demo + " -o " +
                            ShotDir() + "/measure-" + demo + "-render.png --save-chart " + pvc +
                            " >/dev/null";
    EXPECT_EQ(std::system(cmd.c_str()), 0) << cmd;
    return pvc;
}

// What the screen shows of a rectangle.
wxImage Grab(const wxRect& r)
{
    wxBitmap bitmap(r.width, r.height);
    wxMemoryDC mem(bitmap);
    wxScreenDC screen;
    mem.Blit(0, 0, r.width, r.height, &screen, r.x, r.y);
    mem.SelectObject(wxNullBitmap);
    return bitmap.ConvertToImage();
}

void SavePicture(const wxImage& image, const std::string& path)
{
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    EXPECT_TRUE(wxBitmap(image).SaveFile(path, wxBITMAP_TYPE_PNG));
}

// What the screen shows of a window, as a PNG: the dialog the user sees.
void SaveWindow(wxWindow& w, const std::string& path)
{
    SavePicture(Grab(w.GetScreenRect()), path);
}

class MeasureMenu : public testing::Test
{
protected:
    void SetUp() override
    {
        frame = new ViewerFrame(true);
        Pump(200);
        View()->SetTextHook(
            [this](const plotvane::ChartText& t)
            {
                if (t.layer == plotvane::ChartTextLayer::Overlay)
                    texts.push_back(t.strText.str());
            });
    }
    void TearDown() override
    {
        View()->SetTextHook({});
        frame->Destroy();
        Pump(50);
    }
    CGLChartView* View() { return frame->Manager().m_ChartDlg.GetGLChartView(); }

    // Chooses Measure > label. answers fill the dialog it opens by the
    // fields' labels (a choice takes the item's text) before OK is pressed;
    // answers whether a dialog came.
    bool Choose(const wxString& label,
                const std::vector<std::pair<wxString, wxString>>& answers = {})
    {
        const int id = frame->GetMenuBar()->FindMenuItem("Measure", label);
        EXPECT_NE(id, wxNOT_FOUND) << label;
        bool bDialog = false;
        wxTheApp->CallAfter([&] { bDialog = Answer(answers); });
        texts.clear();
        wxCommandEvent e(wxEVT_MENU, id);
        e.SetEventObject(frame);
        frame->ProcessWindowEvent(e);
        Pump(100);
        return bDialog;
    }

    static bool Answer(const std::vector<std::pair<wxString, wxString>>& answers)
    {
        wxDialog* dlg = nullptr;
        for (wxWindow* w : wxTopLevelWindows)
        {
            if (auto* d = dynamic_cast<wxDialog*>(w); d != nullptr && d->IsModal())
                dlg = d;
        }
        if (dlg == nullptr)
            return false;
        for (const auto& [name, value] : answers)
        {
            wxWindow* field = wxWindow::FindWindowByName(name, dlg);
            EXPECT_NE(field, nullptr) << name;
            auto* choice = dynamic_cast<wxChoice*>(field);
            if (auto* text = dynamic_cast<wxTextCtrl*>(field))
                text->ChangeValue(value);
            else if (choice != nullptr && !choice->SetStringSelection(value))
                ADD_FAILURE() << name << " has no item " << value;
        }
        if (!answers.empty())
        {
            Pump(100);
            const std::string name = "measure-dialog-" + dlg->GetTitle().utf8_string() + ".png";
            SaveWindow(*dlg, ArtifactDir() + "/" + name);
        }
        wxWindow* ok = dlg->FindWindow(wxID_OK);
        wxCommandEvent e(wxEVT_BUTTON, wxID_OK);
        e.SetEventObject(ok);
        ok->ProcessWindowEvent(e);
        return true;
    }

    bool Shows(const std::string& text) const
    {
        return std::find(texts.begin(), texts.end(), text) != texts.end();
    }

    void Picture(const std::string& name)
    {
        std::filesystem::create_directories(ArtifactDir());
        EXPECT_TRUE(frame->ExportPng(ArtifactDir() + "/" + name));
    }

    ViewerFrame* frame = nullptr;
    std::vector<std::string> texts;
};

TEST_F(MeasureMenu, VixFromItsDialogShowsTheNumbersOfTheApiAndNoneTakesItAway)
{
    ASSERT_TRUE(frame->OpenFile(DemoChart("vix-vid")));
    ASSERT_TRUE(Choose("VIX...", {{"True leg", "U1.K7"},
                                  {"Complement leg", "U1.K8"},
                                  {"VDD (V)", "1.2"},
                                  {"VIX limit (mV)", "150"}}));
    // The demo's own numbers for the same pair and limit.
    EXPECT_TRUE(Shows("Measured VIX: 137.967 mV"));
    EXPECT_TRUE(Shows("VIX Margin: 12.0325 mV"));
    EXPECT_TRUE(Shows("Vref"));
    Picture("measure-vix.png");

    ASSERT_FALSE(Choose("None"));
    frame->Redraw();
    EXPECT_TRUE(texts.empty());
}

TEST_F(MeasureMenu, DfeMarksTheLossAtTheNyquistFrequencyAsked)
{
    ASSERT_TRUE(frame->OpenFile(DemoChart("dfe")));
    ASSERT_TRUE(Choose("DFE...", {{"Nyquist frequency (Hz)", "8e9"}, {"DFE budget (dB)", "-15"}}));
    EXPECT_TRUE(Shows("8000MHz"));
    EXPECT_TRUE(Shows("-10.82540dB"));
    Picture("measure-dfe.png");
}

// A chart of one plain waveform: an entry that needs more says what the
// chart should hold; the others draw on it with their dialogs' defaults.
TEST_F(MeasureMenu, EntriesTheChartCannotServeSayWhatItShouldHold)
{
    const std::string csv = ShotDir() + "/measure-pulse.csv";
    {
        std::ofstream out(csv);
        out << "Time (s),DQ3\n";
        for (int i = 0; i <= 400; ++i)
            out << i * 1e-11 << "," << (i % 200 < 100 ? 1.2 + 0.2 * (i % 100 == 3) : 0.0) << "\n";
    }
    ASSERT_TRUE(frame->OpenFile(csv));
    const std::size_t nBefore = frame->Messages().size();
    EXPECT_FALSE(Choose("VIX..."));
    EXPECT_FALSE(Choose("Flight Time..."));
    EXPECT_FALSE(Choose("Crosstalk..."));
    ASSERT_EQ(frame->Messages().size(), nBefore + 3);
    EXPECT_NE(frame->Messages().back().find("net name"), std::string::npos);
    EXPECT_FALSE(Choose("Bathtub..."));
    EXPECT_NE(frame->Messages().back().find("logarithmic BER axis"), std::string::npos);
    EXPECT_NE(frame->Messages()[nBefore].find("The chart should hold two waveforms"),
              std::string::npos);

    for (const char* entry : {"Eye Mask...", "Overshoot...", "Undershoot...", "Overshoot Area...",
                              "Target Impedance...", "TDR...", "DFE..."})
    {
        EXPECT_TRUE(Choose(entry)) << entry;
        frame->Redraw(); // whatever it turned on draws without harm
    }
    ASSERT_TRUE(Choose("Overshoot...", {{"Level (V)", "1.2"}, {"Limit (mV)", "400"}}));
    EXPECT_TRUE(Shows("Measured Overshoot: 200 mV"));
    EXPECT_TRUE(Shows("Overshoot Margin: 200 mV"));
    Picture("measure-overshoot.png");
}

} // namespace

namespace
{

// A DDR write burst in time: DQ0 toggling by a pattern each 625 ps unit
// interval, with a differential strobe centred in the data eye; 80 ps
// ramps, 0.2 V to 1.2 V, sampled each 5 ps.
std::string WriteBurstCsv()
{
    const std::string csv = ShotDir() + "/measure-ddr-burst.csv";
    const double ui = 0.625e-9, ramp = 80e-12;
    const int bits[] = {0, 1, 1, 0, 1, 0, 0, 1, 1, 1, 0, 0, 1, 0, 1, 0, 0, 1};
    const int n = int(std::size(bits));
    // The level of a sequence that changes at each multiple of ui.
    const auto level = [&](auto bit, double t)
    {
        const int k = int(std::floor(t / ui));
        if (k <= 0 || k >= n)
            return double(bit(std::clamp(k, 0, n - 1)));
        const double a = bit(k - 1), b = bit(k), in = t - k * ui;
        return in < ramp ? a + (b - a) * in / ramp : b;
    };
    const auto dq = [&](int k) { return bits[k]; };
    const auto strobe = [](int k) { return k == 0 ? 0 : (k - 1) % 2; };
    std::ofstream out(csv);
    out << "time (s),DQ0,DQS,DQS_N\n";
    for (int i = 0; i * 5e-12 <= n * ui; ++i)
    {
        const double t = i * 5e-12, s = level(strobe, t + ui / 2);
        out << t << "," << 0.2 + level(dq, t) << "," << 0.2 + s << "," << 1.2 - s << "\n";
    }
    return csv;
}

// What plotvane-render --measure reports for the same signals.
std::string RenderMeasureReport(const std::string& csv)
{
    const std::string json = ShotDir() + "/measure-ddr-burst.json";
    const std::string cmd = std::string(PLOTVANE_RENDER_EXE) + " --measure --dq " + csv +
                            ":DQ0 --dqs " + csv + ":DQS --dqs-bar " + csv +
                            ":DQS_N --period 1.25n --fold -o " + ShotDir() +
                            "/measure-ddr-burst.png --report " + json + " >/dev/null";
    EXPECT_EQ(std::system(cmd.c_str()), 0) << cmd;
    std::ifstream in(json);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

} // namespace

// A CSV of several columns opens as one set per column; the DDR eye made
// from its DQ and strobe reads as plotvane-render --measure reads it.
TEST_F(MeasureMenu, DdrEyeFromSetsFoldsAChosenPairAndMeasuresItAsTheRenderProgramDoes)
{
    const std::string csv = WriteBurstCsv();
    ASSERT_TRUE(frame->OpenFile(csv));
    CPlotvane_InputData& data = frame->Manager().m_InputData;
    ASSERT_EQ(data.GetDrawDataSetCount(), 3);
    const CChartPointDArray& dqs = *data.GetChartPointDArray(data.m_DrawSet[1]);
    EXPECT_EQ(dqs.m_strName.str(), "DQS");
    EXPECT_NEAR(plotvane::viewer::StrobePeriod(dqs), 1.25e-9, 1e-15);
    EXPECT_FALSE(plotvane::viewer::IsFoldedEye(dqs));
    // A legend names the curves; a new chart takes away the marks of the
    // one before.
    const auto legend = [this]
    {
        std::vector<std::string> names;
        for (INT_PTR i = 0; i < View()->m_pTextDB->GetSize(); ++i)
            names.push_back(View()->m_pTextDB->GetAt(i)->m_strText.str());
        return names;
    };
    EXPECT_EQ(legend(), (std::vector<std::string>{"DQ0", "DQS", "DQS_N"}));

    // Three different sets, or nothing happens.
    ASSERT_TRUE(Choose("DDR Eye from Sets...", {{"DQ", "DQS"}, {"DQS", "DQS"}}));
    EXPECT_NE(frame->Messages().back().find("three different sets"), std::string::npos);
    EXPECT_EQ(data.GetDrawDataSetCount(), 3);

    // The names pick DQ0, DQS and DQS_N.
    ASSERT_TRUE(Choose("DDR Eye from Sets...", {{"Period (s)", "1.25e-9"}}));
    EXPECT_EQ(data.GetDrawDataSetCount(), 3);
    EXPECT_EQ(data.GetDataSetSize(), 6u); // the waveforms stay, undrawn
    EXPECT_TRUE(plotvane::viewer::IsFoldedEye(*data.GetChartPointDArray(data.m_DrawSet[0])));
    const std::string told = frame->Messages().back();
    EXPECT_NE(told.find("DQ0 against DQS/DQS_N, period 1250.000 ps"), std::string::npos) << told;
    EXPECT_NE(told.find("setup margin 204.500 ps, hold margin 204.500 ps: PASS"),
              std::string::npos)
        << told;
    const std::string report = RenderMeasureReport(csv);
    EXPECT_NE(report.find("\"setup_margin_ps\": 204.5,"), std::string::npos) << report;
    EXPECT_NE(report.find("\"hold_margin_ps\": 204.5,"), std::string::npos) << report;
    EXPECT_EQ(legend(), (std::vector<std::string>{"EYE1_DQ0", "EYE1_DQS", "EYE1_DQS_N"}));
    frame->Redraw();
    EXPECT_TRUE(Shows("Setup Margin: 204 ps"));
    EXPECT_TRUE(Shows("Hold Margin: 204 ps"));
    Picture("measure-ddr-eye-from-sets.png");

    // The margins the overlay left in the DQ set.
    EXPECT_FALSE(Choose("DDR Eye Margins"));
    EXPECT_NE(frame->Messages().back().find("setup 204 ps, hold 204 ps"), std::string::npos)
        << frame->Messages().back();

    // A read cycle of the waveforms, which stay in the chart, undrawn: its
    // margins are tQH and tDQSQ.
    data.RemoveAllDrawDataSetIndex();
    for (int i = 0; i < 3; ++i)
        data.AddDrawDataSetIndex(i);
    ASSERT_TRUE(Choose("DDR Eye from Sets...",
                       {{"Period (s)", "1.25e-9"}, {"Cycle", "read: tDQSQ and tQH"}}));
    EXPECT_EQ(legend(), (std::vector<std::string>{"EYE2_DQ0", "EYE2_DQS", "EYE2_DQS_N"}));
    // plotvane-render --measure --read says the same of these signals.
    const std::string read = frame->Messages().back();
    EXPECT_NE(read.find("tQH 312.500 ps, tDQSQ not measured."), std::string::npos) << read;
    EXPECT_FALSE(Choose("DDR Eye Margins"));
    const std::string margins = frame->Messages().back();
    EXPECT_NE(margins.find("EYE2_DQ0: tQH 0 ps, tDQSQ 312 ps"), std::string::npos) << margins;
    EXPECT_EQ(margins.find("EYE1_DQ0"), std::string::npos) << "an eye no longer drawn";
}

// The README's picture: the viewer on the DDR write eye with its Measure
// menu opened from the keyboard, as the X server shows it. The screen is
// read back right only in a process that has shown no other window, so
// CTest runs this suite on its own.
using ReadmePicture = MeasureMenu;
TEST_F(ReadmePicture, MeasureMenuOpensFromTheMenuBarByKeyboard)
{
    ASSERT_TRUE(frame->OpenFile(DemoChart("ddr-write")));
    frame->SetSize(wxRect(0, 0, 960, 660));
    frame->Raise();
    Pump(300);
    frame->Redraw();
    Pump(300);
    wxString opened;
    frame->Bind(wxEVT_MENU_OPEN,
                [&](wxMenuEvent& e)
                {
                    if (e.GetMenu() != nullptr)
                        opened = wxStripMenuCodes(e.GetMenu()->GetTitle());
                    e.Skip();
                });
    // Without a window manager the keys go to the window under the pointer.
    const wxRect r = frame->GetScreenRect();
    plotvane::test::XDo("mousemove " + std::to_string(r.x + r.width / 2) + " " +
                        std::to_string(r.y + r.height / 2));
    plotvane::test::XDo("key F10");
    for (int i = 0; i < 7; ++i) // File View Zoom Cursors Data Chart Tools, then Measure
        plotvane::test::XDo("key Right");
    // The open menu is a light block over the dark chart; the X server may
    // show it a little after wx has opened it.
    const auto lightPixels = [](const wxImage& image)
    {
        int n = 0;
        for (int y = 40; y < image.GetHeight(); ++y)
            for (int x = 0; x < image.GetWidth(); ++x)
                n += image.GetRed(x, y) > 200 && image.GetGreen(x, y) > 200 &&
                     image.GetBlue(x, y) > 200;
        return n;
    };
    wxImage shot;
    for (int attempt = 0; attempt < 20 && lightPixels(shot = Grab(r)) < 40000; ++attempt)
        Pump(200);
    SavePicture(shot, ArtifactDir() + "/viewer/plotvane-viewer.png");
    EXPECT_GE(lightPixels(shot), 40000);
    plotvane::test::XDo("key Escape");
    plotvane::test::XDo("key Escape");
    EXPECT_EQ(opened, "Measure");
}
