#include <plotvane/dialogs/GLPlotvane_Environment_Dlg.h>

#include <plotvane/dialogs/DialogResources.h>
#include <plotvane/dialogs/GLPlotvane_Environment_Colorset_Dlg.h>
#include <plotvane/document/GLPlotvane_Environment.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <memory>

namespace
{

constexpr UINT kGridIds[3] = {IDC_RDO_TLC_GRID_SOLID, IDC_RDO_TLC_GRID_DOT, IDC_RDO_TLC_GRID_NONE};
// The built-in presets, "Dark Set" and "Light Set", come first.
constexpr int kPresetCount = 2;

// Radio "Solid", "Dot", "None" against the stored grid line 0, 2, 1: the
// same exchange both ways.
int GridLineOfRadio(int n)
{
    return n == 1 ? 2 : n == 2 ? 1 : n;
}

// The number at the start of the text, truncated toward zero; text that
// is no number is 0.
int TruncatedNumber(const CString& text)
{
    const double d = std::atof(text.GetString());
    if (std::isnan(d))
        return 0;
    return d >= double(INT_MAX) ? INT_MAX : d <= double(INT_MIN) ? INT_MIN : int(d);
}

CString PresetName(int i)
{
    CString name;
    name.Format("Preset %d", i - 1);
    return name;
}

} // namespace

CGLPlotvane_Environment_Dlg::CGLPlotvane_Environment_Dlg(CWnd* pParent)
    : CDialog(IDD, pParent), m_pEnvironment(new CGLPlotvane_Environment)
{
}

CGLPlotvane_Environment_Dlg::~CGLPlotvane_Environment_Dlg()
{
    delete m_pEnvironment;
}

void CGLPlotvane_Environment_Dlg::DoDataExchange(CDataExchange* pDX)
{
    CDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_CMB_TLC_COLOR_PRESET, m_cmbColorPreset);
    DDX_Control(pDX, IDC_BTN_TLC_COLOR_ADD, m_btnAdd);
    DDX_Control(pDX, IDC_BTN_TLC_COLOR_MODIFY, m_btnModify);
    DDX_Control(pDX, IDC_BTN_TLC_COLOR_DELETE, m_btnDelete);
    for (int i = 0; i < 3; ++i)
        DDX_Control(pDX, int(kGridIds[i]), m_rdoGrid[i]);
    DDX_Radio(pDX, IDC_RDO_TLC_GRID_SOLID, m_nGridLine);
    DDX_Text(pDX, IDC_EDT_TLC_LINE_WIDTH, m_strLineWidth);
    DDX_Text(pDX, IDC_EDT_TLC_HIGHLIGHTED_LINE_WIDTH, m_strHighlightedLineWidth);
    DDX_Text(pDX, IDC_EDT_TLC_FONT_LABEL, m_strFontSizeLabel);
    DDX_Text(pDX, IDC_EDT_TLC_FONT_VALUE, m_strFontSizeValue);
    DDX_Text(pDX, IDC_EDT_TLC_FONT_MEASURE, m_strFontSizeMeasure);
}

BOOL CGLPlotvane_Environment_Dlg::OnInitDialog()
{
    CDialog::OnInitDialog();
    Set_EnvironmentDB_To_DlgVal();
    return TRUE;
}

BOOL CGLPlotvane_Environment_Dlg::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const UINT id = LOWORD(wParam);
    const WORD code = HIWORD(wParam);
    if (id == IDC_CMB_TLC_COLOR_PRESET && code == CBN_SELCHANGE)
        OnCbnSelchangeCmbTlcColorPreset();
    else if (code == BN_CLICKED && id == IDC_BTN_TLC_COLOR_ADD)
        OnBnClickedAdd();
    else if (code == BN_CLICKED && id == IDC_BTN_TLC_COLOR_MODIFY)
        OnBnClickedModify();
    else if (code == BN_CLICKED && id == IDC_BTN_TLC_COLOR_DELETE)
        OnBnClickedDelete();
    else if (code == BN_CLICKED && id == UINT(IDOK))
        OnBnClickedOk();
    else
        return CDialog::OnCommand(wParam, lParam);
    return TRUE;
}

void CGLPlotvane_Environment_Dlg::Set_EnvironmentDB_To_DlgVal()
{
    CGLPlotvane_Environment& env = *m_pEnvironment;
    env.LoadEnvironmentFIle();
    m_cmbColorPreset.ResetContent();
    const int count = env.GetColorSetCount();
    if (count > 1)
    {
        m_cmbColorPreset.AddString("Dark Set");
        m_cmbColorPreset.AddString("Light Set");
    }
    for (int i = kPresetCount; i < count; ++i)
        m_cmbColorPreset.AddString(PresetName(i));
    m_cmbColorPreset.SetCurSel(env.GetCurColorIndex());
    const int stored = env.GetGridLine();
    if (stored >= 0 && stored <= 2)
        m_nGridLine = GridLineOfRadio(stored);
    m_strLineWidth.Format("%d", env.GetLineWidth());
    m_strHighlightedLineWidth.Format("%d", env.GetHighlightedLineWidth());
    m_strFontSizeLabel.Format("%d", env.GetFontSizeLabel());
    m_strFontSizeValue.Format("%d", env.GetFontSizeValue());
    m_strFontSizeMeasure.Format("%d", env.GetFontSizeMeasure());
    UpdateData(FALSE);
    OnCbnSelchangeCmbTlcColorPreset();
}

void CGLPlotvane_Environment_Dlg::Set_DlgVal_To_EnvironmentDB()
{
    UpdateData(TRUE);
    CGLPlotvane_Environment& env = *m_pEnvironment;
    env.SetCurColorIndex(m_cmbColorPreset.GetCurSel());
    env.SetGridLine(GridLineOfRadio(m_nGridLine));
    env.SetLineWidth(TruncatedNumber(m_strLineWidth));
    env.SetHighlightedLineWidth(TruncatedNumber(m_strHighlightedLineWidth));
    env.SetFontSizeLabel(TruncatedNumber(m_strFontSizeLabel));
    env.SetFontSizeValue(TruncatedNumber(m_strFontSizeValue));
    env.SetFontSizeMeasure(TruncatedNumber(m_strFontSizeMeasure));
    env.SaveEnvironmentFIle();
}

void CGLPlotvane_Environment_Dlg::OnBnClickedOk()
{
    Set_DlgVal_To_EnvironmentDB();
    CDialog::OnOK();
}

void CGLPlotvane_Environment_Dlg::OnCbnSelchangeCmbTlcColorPreset()
{
    UpdateData(TRUE);
    const int sel = m_cmbColorPreset.GetCurSel();
    m_btnDelete.EnableWindow(sel > 1);
    m_pEnvironment->SetCurColorIndex(sel);
}

void CGLPlotvane_Environment_Dlg::OnBnClickedAdd()
{
    // The chooser edits a copy; the environment takes a copy of its own.
    auto pColors = std::make_unique<CDWordArray>();
    if (const CDWordArray* pCurrent = m_pEnvironment->GetColorSet())
        pColors->Copy(*pCurrent);
    CGLPlotvane_Environment_Colorset_Dlg dlg(nullptr);
    dlg.m_pColorSet = pColors.get();
    if (dlg.DoModal() != IDOK)
        return;
    const int i = m_pEnvironment->AddColorSet(pColors.get());
    m_pEnvironment->SetCurColorIndex(i);
    m_cmbColorPreset.AddString(PresetName(i));
    m_cmbColorPreset.SetCurSel(i);
    m_btnModify.EnableWindow(TRUE);
}

void CGLPlotvane_Environment_Dlg::OnBnClickedModify()
{
    CGLPlotvane_Environment_Colorset_Dlg dlg(nullptr);
    dlg.m_pColorSet = m_pEnvironment->GetColorSet();
    dlg.m_bReadOnly = m_pEnvironment->GetCurColorIndex() < kPresetCount ? 1 : 0;
    dlg.DoModal();
}

void CGLPlotvane_Environment_Dlg::OnBnClickedDelete()
{
    const int sel = m_cmbColorPreset.GetCurSel();
    if (sel <= 1)
        return;
    // The last name goes, so that the names left stay numbered in order.
    m_cmbColorPreset.DeleteString(UINT(m_cmbColorPreset.GetCount() - 1));
    m_pEnvironment->DeleteColorSet(sel);
    m_cmbColorPreset.SetCurSel(0);
    m_pEnvironment->SetCurColorIndex(0);
    m_btnDelete.EnableWindow(FALSE);
    UpdateData(FALSE);
}

namespace plotvane
{

DialogResource EnvironmentDialogResource()
{
    DialogResource r;
    r.id = CGLPlotvane_Environment_Dlg::IDD;
    r.title = "Plot Environment";
    r.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
    r.cx = 153;
    r.cy = 235;
    r.fontName = "Tahoma";
    r.fontPoints = 8;
    const DWORD child = WS_CHILD | WS_VISIBLE;
    const DWORD group = child | BS_GROUPBOX;
    const DWORD radio = child | BS_AUTORADIOBUTTON;
    const DWORD edit = child | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL;
    const DWORD button = child | WS_TABSTOP | BS_PUSHBUTTON;
    auto add = [&r](UINT id, const char* cls, const char* text, CRect rc, DWORD style) {
        r.controls.push_back({id, cls, text, rc, style});
    };
    add(IDC_STC_TLC_GRID_LINE, "BUTTON", "Grid Line", CRect(7, 7, 146, 33), group);
    add(IDC_RDO_TLC_GRID_SOLID, "BUTTON", "Solid", CRect(14, 18, 52, 28),
        radio | WS_GROUP | WS_TABSTOP);
    add(IDC_RDO_TLC_GRID_DOT, "BUTTON", "Dot", CRect(58, 18, 92, 28), radio);
    add(IDC_RDO_TLC_GRID_NONE, "BUTTON", "None", CRect(98, 18, 139, 28), radio);
    add(IDC_STC_TLC_COLOR, "BUTTON", "Color", CRect(7, 40, 146, 86), group);
    add(IDC_CMB_TLC_COLOR_PRESET, "COMBOBOX", "", CRect(14, 51, 139, 151),
        child | WS_TABSTOP | WS_VSCROLL | WS_GROUP | CBS_DROPDOWNLIST);
    add(IDC_BTN_TLC_COLOR_ADD, "BUTTON", "Add", CRect(14, 68, 52, 82), button);
    add(IDC_BTN_TLC_COLOR_MODIFY, "BUTTON", "Modify", CRect(57, 68, 96, 82), button);
    add(IDC_BTN_TLC_COLOR_DELETE, "BUTTON", "Delete", CRect(101, 68, 139, 82), button);
    add(IDC_STC_TLC_WIDTH, "BUTTON", "Width", CRect(7, 92, 146, 136), group);
    add(IDC_STATIC, "STATIC", "Line width", CRect(14, 105, 100, 113), child);
    add(IDC_EDT_TLC_LINE_WIDTH, "EDIT", "", CRect(104, 103, 139, 115), edit);
    add(IDC_STATIC, "STATIC", "Highlighted line width", CRect(14, 120, 100, 128), child);
    add(IDC_EDT_TLC_HIGHLIGHTED_LINE_WIDTH, "EDIT", "", CRect(104, 118, 139, 130), edit);
    add(IDC_STC_TLC_FONT_SIZE, "BUTTON", "Font Size", CRect(7, 143, 146, 202), group);
    add(IDC_STATIC, "STATIC", "Label", CRect(14, 156, 100, 164), child);
    add(IDC_EDT_TLC_FONT_LABEL, "EDIT", "", CRect(104, 154, 139, 166), edit);
    add(IDC_STATIC, "STATIC", "Value", CRect(14, 172, 100, 180), child);
    add(IDC_EDT_TLC_FONT_VALUE, "EDIT", "", CRect(104, 170, 139, 182), edit);
    add(IDC_STATIC, "STATIC", "Measure", CRect(14, 188, 100, 196), child);
    add(IDC_EDT_TLC_FONT_MEASURE, "EDIT", "", CRect(104, 186, 139, 198), edit);
    add(IDOK, "BUTTON", "OK", CRect(42, 212, 92, 226), child | WS_TABSTOP | BS_DEFPUSHBUTTON);
    add(IDCANCEL, "BUTTON", "Cancel", CRect(96, 212, 146, 226), button);
    return r;
}

} // namespace plotvane
