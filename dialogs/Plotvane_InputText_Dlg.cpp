#include <plotvane/dialogs/Plotvane_InputText_Dlg.h>

#include <plotvane/dialogs/DialogResources.h>

namespace
{

constexpr int IDC_TEXT = 21025;
constexpr int IDC_TEXT_CAPTION = 21026;

} // namespace

CPlotvane_InputText_Dlg::CPlotvane_InputText_Dlg(CWnd* pParent) : CDialog(IDD, pParent) {}

void CPlotvane_InputText_Dlg::DoDataExchange(CDataExchange* pDX)
{
    CDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_TEXT, m_ctrlText);
    DDX_Text(pDX, IDC_TEXT, m_strText);
}

namespace plotvane
{

DialogResource InputTextDialogResource()
{
    DialogResource r;
    r.id = CPlotvane_InputText_Dlg::IDD;
    r.title = "Input Text String";
    r.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
    r.cx = 206;
    r.cy = 46;
    r.fontName = "Tahoma";
    r.fontPoints = 9;
    const DWORD visible = WS_CHILD | WS_VISIBLE;
    r.controls.push_back({IDC_TEXT_CAPTION, "STATIC", "Text String", CRect(7, 9, 50, 17), visible});
    r.controls.push_back({IDC_TEXT, "EDIT", "", CRect(52, 7, 199, 19), visible | WS_BORDER | WS_TABSTOP});
    r.controls.push_back({IDOK, "BUTTON", "OK", CRect(95, 25, 145, 39), visible | WS_TABSTOP});
    r.controls.push_back({IDCANCEL, "BUTTON", "Cancel", CRect(149, 25, 199, 39), visible | WS_TABSTOP});
    return r;
}

} // namespace plotvane
