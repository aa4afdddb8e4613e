// plotvane-viewer's Measure menu as a user drives it: the menu command, its
// dialog filled in and confirmed, the overlay's texts read back through the
// view's text hook, and a picture of the result.
#include "wx_test_support.h"

#include "viewer/ViewerFrame.h"

#include <wx/bitmap.h>
#include <wx/choice.h>
#include <wx/dcmemory.h>
#include <wx/dcscreen.h>
#include <wx/dialog.h>
#include <wx/menu.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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

// What the screen shows of a window, as a PNG: the dialog the user sees.
void SaveWindow(wxWindow& w, const std::string& path)
{
    std::filesystem::create_directories(ArtifactDir());
    const wxRect r = w.GetScreenRect();
    wxBitmap bitmap(r.width, r.height);
    wxMemoryDC mem(bitmap);
    wxScreenDC screen;
    mem.Blit(0, 0, r.width, r.height, &screen, r.x, r.y);
    mem.SelectObject(wxNullBitmap);
    EXPECT_TRUE(bitmap.SaveFile(path, wxBITMAP_TYPE_PNG));
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
