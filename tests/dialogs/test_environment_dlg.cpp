// The appearance dialogs without a toolkit: "Chart.uis" written on OK and
// only then, colour sets added, edited and deleted, the colour set grid.
#include "dialogs/dialog_test_support.h"

#include <plotvane/dialogs/GLPlotvane_Environment_Colorset_Dlg.h>
#include <plotvane/dialogs/GLPlotvane_Environment_Dlg.h>

#include <functional>

using plotvane_test::Headless;
using plotvane_test::IsEnabled;
using plotvane_test::TakeMessages;
using plotvane_test::TextOf;
using plotvane_test::Type;

namespace
{

using EnvironmentDialog = plotvane_test::DataDirTest;

// Stands in for the user of the colour set dialog when it opens.
void OnColorsetDialog(std::function<void(CGLPlotvane_Environment_Colorset_Dlg&)> user)
{
    Headless().SetModalHandler(
        [user](HWND hwnd)
        {
            auto* pDlg =
                dynamic_cast<CGLPlotvane_Environment_Colorset_Dlg*>(CWnd::FromHandle(hwnd));
            ASSERT_NE(pDlg, nullptr);
            user(*pDlg);
        });
}

void PressOK(CWnd& dlg)
{
    dlg.SendMessage(WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED));
}

CGLPlotvane_Environment Saved()
{
    CGLPlotvane_Environment env;
    env.LoadEnvironmentFIle();
    return env;
}

CDWordArray Colors(std::initializer_list<DWORD> values)
{
    CDWordArray a;
    for (DWORD v : values)
        a.Add(v);
    return a;
}

// The colour chooser answers with a fixed colour.
class ChoosingBackend : public plotvane::HeadlessBackend
{
public:
    bool ChooseColor(HWND /*owner*/, COLORREF& color) override
    {
        ++m_nAsked;
        color = m_answer;
        return true;
    }
    COLORREF m_answer = RGB(1, 2, 3);
    int m_nAsked = 0;
};

} // namespace

TEST_F(EnvironmentDialog, ShowsTheFileAndWritesItOnOK)
{
    CGLPlotvane_Environment stored;
    stored.SetGridLine(2); // dotted
    stored.SetFontSizeMeasure(18);
    CDWordArray mine = Colors({0x111111, 0x222222, 0x333333});
    stored.AddColorSet(&mine);
    stored.SetCurColorIndex(2);
    ASSERT_EQ(stored.SaveEnvironmentFIle(), 1);

    CGLPlotvane_Environment_Dlg dlg;
    ASSERT_TRUE(dlg.Create(CGLPlotvane_Environment_Dlg::IDD));
    EXPECT_EQ(dlg.m_cmbColorPreset.GetEntries(),
              (std::vector<CString>{"Dark Set", "Light Set", "Preset 1"}));
    EXPECT_EQ(dlg.m_cmbColorPreset.GetCurSel(), 2);
    EXPECT_EQ(dlg.m_rdoGrid[1].GetCheck(), BST_CHECKED); // "Dot"
    EXPECT_EQ(TextOf(dlg, 21046), CString("18"));
    EXPECT_TRUE(IsEnabled(dlg, 21048));

    dlg.m_rdoGrid[2].UserClicked(); // "None"
    Type(dlg, 21033, "2.9");
    Type(dlg, 21034, "-3");
    Type(dlg, 21035, "big");
    dlg.m_cmbColorPreset.UserSelected(1);
    EXPECT_FALSE(IsEnabled(dlg, 21048));
    PressOK(dlg);
    const CGLPlotvane_Environment after = Saved();
    EXPECT_EQ(after.GetGridLine(), 1);
    EXPECT_EQ(after.GetLineWidth(), 2);
    EXPECT_EQ(after.GetHighlightedLineWidth(), -3);
    EXPECT_EQ(after.GetFontSizeLabel(), 0);
    EXPECT_EQ(after.GetCurColorIndex(), 1);
    EXPECT_EQ(after.GetColorSetCount(), 3);
    // The dialog has no message of its own.
    EXPECT_TRUE(TakeMessages().empty());
}

TEST_F(EnvironmentDialog, CancelWritesNothing)
{
    CGLPlotvane_Environment_Dlg dlg;
    Headless().SetModalHandler(
        [](HWND hwnd)
        {
            auto& env = dynamic_cast<CGLPlotvane_Environment_Dlg&>(*CWnd::FromHandle(hwnd));
            Type(env, 21033, "5");
            OnColorsetDialog([](CGLPlotvane_Environment_Colorset_Dlg& c) { PressOK(c); });
            env.OnBnClickedAdd();
            env.SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED));
        });
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_FALSE(HasSettingsFile());
}

TEST_F(EnvironmentDialog, AddModifyAndDeleteColorSets)
{
    CGLPlotvane_Environment_Dlg dlg;
    ASSERT_TRUE(dlg.Create(CGLPlotvane_Environment_Dlg::IDD));
    dlg.m_cmbColorPreset.UserSelected(1);

    // Add copies the current set; a cancelled chooser adds nothing.
    Headless().SetModalHandler(nullptr);
    dlg.OnBnClickedAdd();
    EXPECT_EQ(dlg.m_pEnvironment->GetColorSetCount(), 2);
    OnColorsetDialog([](CGLPlotvane_Environment_Colorset_Dlg& c) { PressOK(c); });
    dlg.OnBnClickedAdd();
    dlg.OnBnClickedAdd();
    EXPECT_EQ(dlg.m_cmbColorPreset.GetEntries(),
              (std::vector<CString>{"Dark Set", "Light Set", "Preset 1", "Preset 2"}));
    EXPECT_EQ(dlg.m_cmbColorPreset.GetCurSel(), 3);
    EXPECT_EQ(dlg.m_pEnvironment->GetCurColorIndex(), 3);
    EXPECT_EQ(dlg.m_pEnvironment->GetColorSet()->GetAt(0), 0xFFFFFFu); // light background

    // Presets open read only: "OK" disabled, and Enter changes nothing.
    dlg.m_cmbColorPreset.UserSelected(0);
    bool okEnabled = true;
    OnColorsetDialog(
        [&okEnabled](CGLPlotvane_Environment_Colorset_Dlg& c)
        {
            okEnabled = c.m_btnOK.IsWindowEnabled() != FALSE;
            c.OnOK();
        });
    dlg.OnBnClickedModify();
    EXPECT_FALSE(okEnabled);
    EXPECT_EQ(dlg.m_pEnvironment->GetColorSet()->GetAt(3), 0xCCCC00u);

    // Deleting "Preset 1" removes the last name: "Preset 1" now names what
    // was the second.
    dlg.m_cmbColorPreset.UserSelected(2);
    EXPECT_TRUE(IsEnabled(dlg, 21048));
    dlg.OnBnClickedDelete();
    EXPECT_EQ(dlg.m_cmbColorPreset.GetEntries(),
              (std::vector<CString>{"Dark Set", "Light Set", "Preset 1"}));
    EXPECT_EQ(dlg.m_cmbColorPreset.GetCurSel(), 0);
    EXPECT_EQ(dlg.m_pEnvironment->GetColorSetCount(), 3);
    EXPECT_FALSE(IsEnabled(dlg, 21048));
    dlg.OnBnClickedDelete(); // a preset selected: nothing
    EXPECT_EQ(dlg.m_pEnvironment->GetColorSetCount(), 3);
    EXPECT_FALSE(HasSettingsFile());
}

TEST_F(EnvironmentDialog, ColorSetGridLayout)
{
    CGLPlotvane_Environment_Colorset_Dlg three;
    CDWordArray a = Colors({10, 11, 12});
    three.m_pColorSet = &a;
    ASSERT_TRUE(three.Create(CGLPlotvane_Environment_Colorset_Dlg::IDD));
    CExXListCtrl& list = three.m_ctrlColorList;
    ASSERT_EQ(list.GetItemCount(), 2);
    EXPECT_EQ(list.GetItemText(0, 0), CString("BG"));
    EXPECT_EQ(list.GetItemText(0, 2), CString("Label"));
    EXPECT_EQ(list.GetItemColor(0, 3), 11u);
    EXPECT_EQ(list.GetItemText(1, 0), CString("1"));
    EXPECT_EQ(list.GetItemColor(1, 1), 12u);
    EXPECT_TRUE(list.GetItemText(1, 2).IsEmpty());
    EXPECT_EQ(list.GetCallbackMask(), 3u);
    EXPECT_EQ(list.GetHeader().GetItemFormat(3), LVCFMT_CENTER);

    // A lone background colour, or no set at all, makes no rows.
    CDWordArray one = Colors({10});
    for (CDWordArray* pSet : {&one, static_cast<CDWordArray*>(nullptr)})
    {
        CGLPlotvane_Environment_Colorset_Dlg dlg;
        dlg.m_pColorSet = pSet;
        ASSERT_TRUE(dlg.Create(CGLPlotvane_Environment_Colorset_Dlg::IDD));
        EXPECT_EQ(dlg.m_ctrlColorList.GetItemCount(), 0);
    }
}

// A click on a colour cell asks the chooser; OK reads the grid row by row,
// so the two halves of the curve colours come back interleaved, the
// shorter second half leaving its last cell empty.
TEST_F(EnvironmentDialog, ColorCellClicksChooseAndOKReadsRowByRow)
{
    ChoosingBackend backend;
    plotvane::BackendScope scope(backend);
    CDWordArray set = Colors({0, 1, 2, 3, 4, 5, 6});
    CGLPlotvane_Environment_Colorset_Dlg dlg;
    dlg.m_pColorSet = &set;
    ASSERT_TRUE(dlg.Create(CGLPlotvane_Environment_Colorset_Dlg::IDD));
    CExXListCtrl& list = dlg.m_ctrlColorList;
    list.UserClickedCell(1, 0); // a text cell
    list.UserClickedCell(5, 1); // no such row
    EXPECT_EQ(backend.m_nAsked, 0);
    list.UserClickedCell(1, 3);
    EXPECT_EQ(list.GetItemColor(1, 3), RGB(1, 2, 3));
    dlg.OnOK();
    EXPECT_EQ(std::vector<DWORD>(set.GetData(), set.GetData() + set.GetSize()),
              (std::vector<DWORD>{0, 1, 2, RGB(1, 2, 3), 3, 6, 4}));

    dlg.m_bReadOnly = 1;
    list.UserClickedCell(0, 1);
    EXPECT_EQ(backend.m_nAsked, 1);
}
