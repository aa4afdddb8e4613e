#include <plotvane/dialogs/Plotvane_Attribute_Dlg.h>

#include <plotvane/dialogs/DialogResources.h>
#include <plotvane/dialogs/Plotvane_Dlg.h>
#include <plotvane/document/AxisAttribute.h>

namespace
{

// The edits whose loss of focus stores, in the order of m_edtFields.
constexpr UINT kFieldIds[8] = {IDC_EDT_X_AXIS_NAME, IDC_EDT_Y_AXIS_NAME, IDC_EDT_X_START,
                               IDC_EDT_X_END,       IDC_EDT_Y_START,     IDC_EDT_Y_END,
                               IDC_EDT_X_INTERVAL,  IDC_EDT_Y_INTERVAL};
constexpr UINT kRangeIds[3] = {IDC_RDO_RANGE_DEFAULT, IDC_RDO_RANGE_BASE, IDC_RDO_RANGE_USER};
constexpr UINT kRangeEditIds[4] = {IDC_EDT_X_START, IDC_EDT_X_END, IDC_EDT_Y_START, IDC_EDT_Y_END};
constexpr int kUserRange = 2;

bool IsFieldId(UINT id)
{
    for (UINT f : kFieldIds)
    {
        if (f == id)
            return true;
    }
    return false;
}

} // namespace

CPlotvane_Attribute_Dlg::CPlotvane_Attribute_Dlg(CWnd* pParent) : CDialog(IDD, pParent) {}

void CPlotvane_Attribute_Dlg::DoDataExchange(CDataExchange* pDX)
{
    CDialog::DoDataExchange(pDX);
    for (int i = 0; i < 8; ++i)
        DDX_Control(pDX, int(kFieldIds[i]), m_edtFields[i]);
    for (int i = 0; i < 3; ++i)
        DDX_Control(pDX, int(kRangeIds[i]), m_rdoRange[i]);
    DDX_Text(pDX, IDC_EDT_X_AXIS_NAME, m_strXAxisName);
    DDX_Text(pDX, IDC_EDT_Y_AXIS_NAME, m_strYAxisName);
    DDX_Text(pDX, IDC_EDT_X_START, m_dXStart);
    DDX_Text(pDX, IDC_EDT_X_END, m_dXEnd);
    DDX_Text(pDX, IDC_EDT_Y_START, m_dYStart);
    DDX_Text(pDX, IDC_EDT_Y_END, m_dYEnd);
    DDX_Text(pDX, IDC_EDT_X_INTERVAL, m_dXInterval);
    DDX_Text(pDX, IDC_EDT_Y_INTERVAL, m_dYInterval);
    DDX_Radio(pDX, IDC_RDO_RANGE_DEFAULT, m_nRangeMode);
    DDX_Text(pDX, IDC_STC_CURRENT_POINT, m_strCurrentPoint);
}

BOOL CPlotvane_Attribute_Dlg::OnInitDialog()
{
    CDialog::OnInitDialog();
    m_bBusy = false;
    LoadFromAttribute();
    return TRUE;
}

void CPlotvane_Attribute_Dlg::OnDestroy()
{
    m_bBusy = true;
    CDialog::OnDestroy();
}

BOOL CPlotvane_Attribute_Dlg::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const UINT id = LOWORD(wParam);
    const WORD code = HIWORD(wParam);
    if (code == EN_KILLFOCUS && IsFieldId(id))
        OnKillfocusField();
    else if (code == BN_CLICKED && id == IDC_BTN_SUBMIT)
        OnBtnSubmit();
    else if (code == BN_CLICKED && id == IDC_RDO_RANGE_DEFAULT)
        OnRdoRangeDefault();
    else if (code == BN_CLICKED && id == IDC_RDO_RANGE_BASE)
        OnRdoRangeBase();
    else if (code == BN_CLICKED && id == IDC_RDO_RANGE_USER)
        OnRdoRangeUser();
    else
        return CDialog::OnCommand(wParam, lParam);
    return TRUE;
}

void CPlotvane_Attribute_Dlg::LoadFromAttribute()
{
    if (m_pAttribute == nullptr)
        return;
    const CPlotvane_Attribute& a = *m_pAttribute;
    m_dXInterval = a.m_XAxis.GetGridInterval();
    m_dYInterval = a.m_YAxis.GetGridInterval();
    m_dXEnd = a.m_XAxis.GetEndPoint();
    m_dXStart = a.m_XAxis.GetStartPoint();
    m_dYEnd = a.m_YAxis.GetEndPoint();
    m_dYStart = a.m_YAxis.GetStartPoint();
    m_nRangeMode = a.m_nRangeMode;
    m_strXAxisName = a.m_XAxis.GetAxisName();
    m_strYAxisName = a.m_YAxis.GetAxisName();
    EnableRangeEdits(m_nRangeMode == kUserRange);
    UpdateData(FALSE);
}

BOOL CPlotvane_Attribute_Dlg::StoreToAttribute()
{
    if (m_pAttribute == nullptr || !UpdateData(TRUE))
        return FALSE;
    // A grid interval of 0 lets the chart choose; below 0 it means nothing.
    for (UINT id : {IDC_EDT_X_INTERVAL, IDC_EDT_Y_INTERVAL})
    {
        const double d = id == IDC_EDT_X_INTERVAL ? m_dXInterval : m_dYInterval;
        if (d >= 0.0)
            continue;
        MessageBox("A grid interval cannot be negative. Enter 0 to let the chart choose it.",
                   nullptr, MB_OK | MB_ICONWARNING);
        if (CWnd* pCtrl = GetDlgItem(int(id)))
            pCtrl->SetFocus();
        return FALSE;
    }
    CPlotvane_Attribute& a = *m_pAttribute;
    a.m_XAxis.SetGridInterval(m_dXInterval);
    a.m_YAxis.SetGridInterval(m_dYInterval);
    a.m_XAxis.SetEndPoint(m_dXEnd);
    a.m_XAxis.SetStartPoint(m_dXStart);
    a.m_YAxis.SetEndPoint(m_dYEnd);
    a.m_YAxis.SetStartPoint(m_dYStart);
    a.m_nRangeMode = m_nRangeMode;
    a.m_XAxis.SetAxisName(m_strXAxisName);
    a.m_YAxis.SetAxisName(m_strYAxisName);
    return TRUE;
}

void CPlotvane_Attribute_Dlg::SetCurrentPointText()
{
    if (!HasWindow() || m_pAttribute == nullptr)
        return;
    m_strCurrentPoint = m_pAttribute->m_strCurrentPoint;
    // Only this control: a field being typed in keeps what it holds.
    if (CWnd* pCtrl = GetDlgItem(IDC_STC_CURRENT_POINT))
        pCtrl->SetWindowText(m_strCurrentPoint);
}

void CPlotvane_Attribute_Dlg::OnBtnSubmit()
{
    StoreAndRedraw();
}

void CPlotvane_Attribute_Dlg::OnKillfocusField()
{
    StoreAndRedraw();
}

void CPlotvane_Attribute_Dlg::OnRdoRangeDefault()
{
    SetRangeMode(0);
}

void CPlotvane_Attribute_Dlg::OnRdoRangeBase()
{
    SetRangeMode(1);
}

void CPlotvane_Attribute_Dlg::OnRdoRangeUser()
{
    SetRangeMode(kUserRange);
}

void CPlotvane_Attribute_Dlg::SetRangeMode(int nMode)
{
    if (m_bBusy || m_pAttribute == nullptr)
        return;
    EnableRangeEdits(nMode == kUserRange);
    m_pAttribute->m_nRangeMode = nMode;
    StoreAndRedraw();
}

void CPlotvane_Attribute_Dlg::StoreAndRedraw()
{
    if (m_bBusy)
        return;
    m_bBusy = true;
    const BOOL stored = StoreToAttribute();
    m_bBusy = false;
    if (stored && m_pChartDlg != nullptr)
        m_pChartDlg->RedrawChartView();
}

void CPlotvane_Attribute_Dlg::EnableRangeEdits(BOOL bEnable)
{
    for (UINT id : kRangeEditIds)
    {
        if (CWnd* pCtrl = GetDlgItem(int(id)))
            pCtrl->EnableWindow(bEnable);
    }
}

namespace plotvane
{

DialogResource AttributeDialogResource()
{
    DialogResource r;
    r.id = CPlotvane_Attribute_Dlg::IDD;
    r.title = "Attribute";
    r.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
    r.cx = 207;
    r.cy = 89;
    r.fontName = "Tahoma";
    r.fontPoints = 8;
    const DWORD child = WS_CHILD | WS_VISIBLE;
    const DWORD edit = child | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL;
    const DWORD radio = child | BS_AUTORADIOBUTTON;
    auto add = [&r](UINT id, const char* cls, const char* text, CRect rc, DWORD style) {
        r.controls.push_back({id, cls, text, rc, style});
    };
    add(IDC_STATIC, "STATIC", "Axis Name", CRect(18, 5, 78, 13), child);
    add(IDC_STATIC, "STATIC", "Start", CRect(82, 5, 118, 13), child);
    add(IDC_STATIC, "STATIC", "End", CRect(122, 5, 158, 13), child);
    add(IDC_STATIC, "STATIC", "Interval", CRect(162, 5, 200, 13), child);
    add(IDC_STATIC, "STATIC", "X", CRect(7, 17, 15, 25), child);
    add(IDC_EDT_X_AXIS_NAME, "EDIT", "", CRect(18, 15, 78, 27), edit | WS_GROUP);
    add(IDC_EDT_X_START, "EDIT", "", CRect(82, 15, 118, 27), edit);
    add(IDC_EDT_X_END, "EDIT", "", CRect(122, 15, 158, 27), edit);
    add(IDC_EDT_X_INTERVAL, "EDIT", "", CRect(162, 15, 200, 27), edit);
    add(IDC_STATIC, "STATIC", "Y", CRect(7, 33, 15, 41), child);
    add(IDC_EDT_Y_AXIS_NAME, "EDIT", "", CRect(18, 31, 78, 43), edit);
    add(IDC_EDT_Y_START, "EDIT", "", CRect(82, 31, 118, 43), edit);
    add(IDC_EDT_Y_END, "EDIT", "", CRect(122, 31, 158, 43), edit);
    add(IDC_EDT_Y_INTERVAL, "EDIT", "", CRect(162, 31, 200, 43), edit);
    add(IDC_STATIC, "BUTTON", "Range", CRect(7, 46, 122, 68), child | BS_GROUPBOX);
    add(IDC_RDO_RANGE_DEFAULT, "BUTTON", "Default", CRect(12, 55, 52, 65),
        radio | WS_GROUP | WS_TABSTOP);
    add(IDC_RDO_RANGE_BASE, "BUTTON", "Base", CRect(55, 55, 85, 65), radio);
    add(IDC_RDO_RANGE_USER, "BUTTON", "User", CRect(88, 55, 120, 65), radio);
    add(IDC_STATIC, "BUTTON", "Current Point", CRect(126, 46, 200, 68), child | BS_GROUPBOX);
    add(IDC_STC_CURRENT_POINT, "STATIC", "", CRect(131, 56, 196, 64), child);
    add(IDC_BTN_SUBMIT, "BUTTON", "Submit", CRect(150, 72, 200, 86),
        child | WS_TABSTOP | WS_GROUP | BS_PUSHBUTTON);
    return r;
}

} // namespace plotvane
