#include <plotvane/dialogs/Plotvane_InputData_Dlg.h>

#include <plotvane/dialogs/DialogResources.h>
#include <plotvane/dialogs/Plotvane_Dlg.h>
#include <plotvane/document/Plotvane_InputData.h>
#include <plotvane/view/GLChartView.h>

namespace
{

// The controls that edit points, enabled by "Edit Set".
constexpr UINT kPointControls[] = {IDC_BTN_TLC_MAIN_INPUT,  IDC_BTN_TLC_MAIN_CLEARALL,
                                   IDC_BTN_TLC_MAIN_DELETE, IDC_BTN_TLC_MAIN_MODIFY,
                                   IDC_EDT_TLC_MAIN_X,      IDC_EDT_TLC_MAIN_Y,
                                   IDC_EDT_TLC_MAIN_SETNAME};
// The buttons that need points in the edit set.
constexpr UINT kPointButtons[] = {IDC_BTN_TLC_MAIN_CLEARALL, IDC_BTN_TLC_MAIN_DELETE,
                                  IDC_BTN_TLC_MAIN_MODIFY};

constexpr DWORD kSetListExStyle = 37;   // check boxes, full row select, grid lines
constexpr DWORD kPointListExStyle = 33; // full row select, grid lines

} // namespace

CPlotvane_InputData_Dlg::CPlotvane_InputData_Dlg(CWnd* pParent) : CDialog(IDD, pParent) {}

void CPlotvane_InputData_Dlg::DoDataExchange(CDataExchange* pDX)
{
    CDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_LIST_TLC_MAIN_SETNAME, m_ctrlSetList);
    DDX_Control(pDX, IDC_LIST_TLC_MAIN_POINTD, m_ctrlPointList);
    DDX_Control(pDX, IDC_EDT_TLC_MAIN_SETNAME, m_edtSetName);
    DDX_Text(pDX, IDC_EDT_TLC_MAIN_X, m_dX);
    DDX_Text(pDX, IDC_EDT_TLC_MAIN_Y, m_dY);
    DDX_Text(pDX, IDC_EDT_TLC_MAIN_SETNAME, m_strSetName);
}

BOOL CPlotvane_InputData_Dlg::OnInitDialog()
{
    CDialog::OnInitDialog();
    m_bBusy = false;
    if (m_pInputData == nullptr)
        return TRUE;
    if (m_pInputData->GetDataSetSize() == 0)
    {
        m_pInputData->AddNewDataSet();
        m_pInputData->SetCurrentEditSet(0);
        m_pInputData->SetCurrentEditSetName("NoData");
        m_pInputData->AddDrawDataSetIndex(0);
    }
    InitListCtrl();
    InitDataSetListCtrl();
    return TRUE;
}

void CPlotvane_InputData_Dlg::OnDestroy()
{
    m_bBusy = true;
    CDialog::OnDestroy();
}

BOOL CPlotvane_InputData_Dlg::OnCommand(WPARAM wParam, LPARAM lParam)
{
    const UINT id = LOWORD(wParam);
    const WORD code = HIWORD(wParam);
    if (id == IDC_EDT_TLC_MAIN_SETNAME)
    {
        if (code == EN_CHANGE)
            OnChangeEdtTlcMainSetname();
        else if (code == EN_KILLFOCUS)
            OnKillfocusEdtTlcMainSetname();
        return TRUE;
    }
    if (code != BN_CLICKED)
        return CDialog::OnCommand(wParam, lParam);
    switch (id)
    {
    case IDC_BTN_TLC_MAIN_INPUT:
        OnBtnTlcMainInput();
        return TRUE;
    case IDC_BTN_TLC_MAIN_MODIFY:
        OnBtnTlcMainModify();
        return TRUE;
    case IDC_BTN_TLC_MAIN_DELETE:
        OnBtnTlcMainDelete();
        return TRUE;
    case IDC_BTN_TLC_MAIN_CLEARALL:
        OnBtnTlcMainClearall();
        return TRUE;
    case IDC_BTN_TLC_MAIN_ADDSET:
        OnBtnTlcMainAddset();
        return TRUE;
    case IDC_BTN_TLC_MAIN_DELETESET:
        OnBtnTlcMainDeleteset();
        return TRUE;
    case IDC_BTN_TLC_MAIN_EDITSET:
        OnBtnTlcMainEditset();
        return TRUE;
    default:
        return CDialog::OnCommand(wParam, lParam);
    }
}

LRESULT CPlotvane_InputData_Dlg::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_NOTIFY)
        return CDialog::WindowProc(message, wParam, lParam);
    auto* pHdr = reinterpret_cast<NMHDR*>(lParam);
    LRESULT result = 0;
    if (pHdr->idFrom == IDC_LIST_TLC_MAIN_SETNAME && pHdr->code == NM_CLICK)
        OnClickListTlcMainSetname(pHdr, &result);
    else if (pHdr->idFrom == IDC_LIST_TLC_MAIN_POINTD && pHdr->code == LVN_COLUMNCLICK)
        OnColumnclickListTlcMainPointd(pHdr, &result);
    else if (pHdr->idFrom == IDC_LIST_TLC_MAIN_POINTD && pHdr->code == LVN_ITEMCHANGED)
        OnItemchangedListTlcMainPointd(pHdr, &result);
    return result;
}

BOOL CPlotvane_InputData_Dlg::PreTranslateMessage(MSG* pMsg)
{
    if (pMsg->message == WM_KEYDOWN && pMsg->wParam == WPARAM(VK_DELETE))
        OnBtnTlcMainDelete();
    return CDialog::PreTranslateMessage(pMsg);
}

// ---------------------------------------------------------------------------
// The lists

void CPlotvane_InputData_Dlg::InitListCtrl()
{
    while (m_ctrlSetList.DeleteColumn(0))
    {
    }
    while (m_ctrlPointList.DeleteColumn(0))
    {
    }
    m_ctrlSetList.InsertColumn(0, "Set Name", LVCFMT_LEFT, 160);
    m_ctrlSetList.SetExtendedStyle(kSetListExStyle);
    m_ctrlPointList.InsertColumn(0, "X", LVCFMT_LEFT, 80);
    m_ctrlPointList.InsertColumn(1, "Y", LVCFMT_LEFT, 80);
    m_ctrlPointList.SetExtendedStyle(kPointListExStyle);
    // The point list starts empty, so no row of it is selected.
    if (m_pInputData != nullptr)
        m_pInputData->SetSelectRow(-1);
}

void CPlotvane_InputData_Dlg::InitDataSetListCtrl()
{
    FillDataSetList();
    m_ctrlSetList.Invalidate();
    m_ctrlSetList.SetFocus();
}

void CPlotvane_InputData_Dlg::FillDataSetList()
{
    m_ctrlSetList.DeleteAllItems();
    if (m_pInputData == nullptr)
        return;
    const int count = int(m_pInputData->GetDataSetSize());
    for (int i = 0; i < count; ++i)
        m_ctrlSetList.InsertItem(i, m_pInputData->GetChartPointDArray(i)->m_strName);
    for (int i = 0; i < count; ++i)
        m_ctrlSetList.SetCheck(i, FALSE);
    CArrayN drawn;
    m_pInputData->GetDrawlDataSetIndexArray(drawn);
    for (int i = 0; i < drawn.GetSize(); ++i)
        m_ctrlSetList.SetCheck(drawn.GetAt(i), TRUE);
}

void CPlotvane_InputData_Dlg::InputDataToListCtrl()
{
    m_ctrlPointList.DeleteAllItems();
    if (!HasEditSet())
        return;
    const int n = EditSetSize();
    CString text;
    for (int i = 0; i < n; ++i)
    {
        text.Format("%.5f", m_pInputData->GetDataX(i));
        m_ctrlPointList.InsertItem(i, text);
        text.Format("%.5f", m_pInputData->GetDataY(i));
        m_ctrlPointList.SetItemText(i, 1, text);
    }
}

void CPlotvane_InputData_Dlg::SetCurrentSetListCtrl(int i)
{
    m_ctrlSetList.EnsureVisible(i, FALSE);
    m_ctrlSetList.SetItemState(i, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    m_ctrlSetList.SetFocus();
    UpdateData(FALSE);
}

void CPlotvane_InputData_Dlg::SetCurrentPointListCtrl(int i)
{
    m_ctrlPointList.SetItemState(-1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    m_ctrlPointList.EnsureVisible(i, FALSE);
    m_ctrlPointList.SetItemState(i, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    m_ctrlPointList.SetFocus();
}

// ---------------------------------------------------------------------------
// Sets

void CPlotvane_InputData_Dlg::OnBtnTlcMainAddset()
{
    if (m_pInputData == nullptr)
        return;
    const int n = m_ctrlSetList.GetItemCount();
    m_pInputData->AddNewDataSet();
    m_pInputData->SetCurrentEditSet(n);
    m_pInputData->SetCurrentEditSetName("New Set");
    m_pInputData->AddDrawDataSetIndex(n);
    InitDataSetListCtrl();
    SetCurrentSetListCtrl(m_ctrlSetList.GetItemCount() - 1);
}

void CPlotvane_InputData_Dlg::OnBtnTlcMainDeleteset()
{
    if (m_pInputData == nullptr)
        return;
    if (m_pInputData->GetDataSetSize() < 2)
    {
        m_bBusy = true;
        MessageBox("Can't delete last Item In List");
        m_bBusy = false;
        return;
    }
    const int row = m_ctrlSetList.GetNextItem(-1, LVNI_SELECTED);
    if (row < 0)
        return;
    m_pInputData->DeleteDataSet(row);
    m_pInputData->SetCurrentEditSet(0);
    m_pInputData->AddDrawDataSetIndex(0);
    InitDataSetListCtrl();
    // The deleted set must leave the chart as well.
    RedrawChart();
}

void CPlotvane_InputData_Dlg::OnBtnTlcMainEditset()
{
    if (m_pInputData == nullptr)
        return;
    for (UINT id : kPointControls)
        EnableControl(id, TRUE);
    const int row = m_ctrlSetList.GetNextItem(-1, LVNI_SELECTED);
    if (row >= 0)
        m_pInputData->SetCurrentEditSet(row);
    m_strSetName = HasEditSet() ? m_pInputData->GetCurrentSetName() : CString();
    // A row selected in the old set's points means nothing in this one.
    m_pInputData->SetSelectRow(-1);
    InputDataToListCtrl();
    m_ctrlPointList.Invalidate();
    FocusControl(IDC_EDT_TLC_MAIN_X);
    UpdateData(FALSE);
}

void CPlotvane_InputData_Dlg::OnChangeEdtTlcMainSetname()
{
    if (m_bBusy || m_pInputData == nullptr || !HasEditSet())
        return;
    m_edtSetName.GetWindowText(m_strSetName);
    // An empty name is not applied; leaving the field empty is refused.
    if (m_strSetName.IsEmpty())
        return;
    m_pInputData->SetCurrentEditSetName(m_strSetName);
    // The list is rebuilt under the typing without taking the focus from
    // the field, and the renamed set stays selected.
    FillDataSetList();
    const int row = m_pInputData->GetCurrentEditSet();
    m_ctrlSetList.SetItemState(row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
}

void CPlotvane_InputData_Dlg::OnKillfocusEdtTlcMainSetname()
{
    if (m_bBusy || m_pInputData == nullptr || !HasEditSet())
        return;
    CString text;
    m_edtSetName.GetWindowText(text);
    if (!text.IsEmpty())
        return;
    m_bBusy = true;
    MessageBox("A data set needs a name. The set keeps its old name.", nullptr,
               MB_OK | MB_ICONWARNING);
    m_strSetName = m_pInputData->GetCurrentSetName();
    m_edtSetName.SetWindowText(m_strSetName);
    m_bBusy = false;
}

void CPlotvane_InputData_Dlg::OnClickListTlcMainSetname(NMHDR* /*pNMHDR*/, LRESULT* pResult)
{
    *pResult = 0;
    if (m_pInputData == nullptr)
        return;
    m_pInputData->RemoveAllDrawDataSetIndex();
    for (int row = 0; row < m_ctrlSetList.GetItemCount(); ++row)
    {
        if (m_ctrlSetList.GetCheck(row))
            m_pInputData->AddDrawDataSetIndex(row);
    }
    RedrawChart();
}

// ---------------------------------------------------------------------------
// Points

void CPlotvane_InputData_Dlg::OnBtnTlcMainInput()
{
    if (!HasEditSet() || !UpdateData(TRUE))
        return;
    const int row = m_pInputData->GetSelectRow();
    if (row >= 0 && row <= EditSetSize())
        m_pInputData->InsertData(row, m_dX, m_dY);
    else
        m_pInputData->AddData(m_dX, m_dY);
    if (EditSetSize() > 0)
    {
        for (UINT id : kPointButtons)
            EnableControl(id, TRUE);
        if (EditSetSize() > 1)
            RedrawChart();
    }
    InputDataToListCtrl();
    m_dX = 0.0;
    m_dY = 0.0;
    UpdateData(FALSE);
    m_pInputData->SetSelectRow(-1);
    FocusControl(IDC_EDT_TLC_MAIN_X);
}

void CPlotvane_InputData_Dlg::OnBtnTlcMainModify()
{
    if (!HasEditSet())
        return;
    const int row = m_pInputData->GetSelectRow();
    if (row < 0 || row >= EditSetSize())
        return;
    m_ctrlPointList.DeleteItem(row);
    if (!UpdateData(TRUE))
    {
        InputDataToListCtrl();
        return;
    }
    m_pInputData->ModifyData(row, m_dX, m_dY);
    InputDataToListCtrl();
    InvalidateChart();
    m_pInputData->SetSelectRow(-1);
}

void CPlotvane_InputData_Dlg::OnBtnTlcMainDelete()
{
    if (!HasEditSet())
        return;
    if (EditSetSize() > 0)
    {
        for (int row = m_ctrlPointList.GetNextItem(-1, LVNI_SELECTED); row >= 0;
             row = m_ctrlPointList.GetNextItem(-1, LVNI_SELECTED))
        {
            m_ctrlPointList.DeleteItem(row);
            if (row < EditSetSize())
                m_pInputData->DeleteData(row);
        }
        m_pInputData->SetSelectRow(-1);
    }
    if (EditSetSize() == 0)
    {
        for (UINT id : kPointButtons)
            EnableControl(id, FALSE);
    }
    InputDataToListCtrl();
    InvalidateChart();
}

void CPlotvane_InputData_Dlg::OnBtnTlcMainClearall()
{
    if (!HasEditSet())
        return;
    m_pInputData->ClearAllData();
    m_pInputData->SetSelectRow(-1);
    InputDataToListCtrl();
    RedrawChart();
}

void CPlotvane_InputData_Dlg::OnItemchangedListTlcMainPointd(NMHDR* pNMHDR, LRESULT* pResult)
{
    *pResult = 0;
    const auto* pNM = reinterpret_cast<const NMLISTVIEW*>(pNMHDR);
    if (pNM->uNewState != (LVIS_SELECTED | LVIS_FOCUSED) || pNM->iItem < 0 ||
        pNM->iItem >= m_ctrlPointList.GetItemCount() || pNM->iSubItem < 0 || !HasEditSet())
        return;
    if (!UpdateData(TRUE))
        return;
    m_pInputData->SetSelectRow(pNM->iItem);
    if (EditSetSize() < 2 || pNM->iItem >= EditSetSize())
        return;
    m_dX = m_pInputData->GetDataX(pNM->iItem);
    m_dY = m_pInputData->GetDataY(pNM->iItem);
    UpdateData(FALSE);
    RedrawChart();
}

void CPlotvane_InputData_Dlg::OnColumnclickListTlcMainPointd(NMHDR* pNMHDR, LRESULT* pResult)
{
    *pResult = 0;
    if (!HasEditSet())
        return;
    const auto* pNM = reinterpret_cast<const NMLISTVIEW*>(pNMHDR);
    m_pInputData->SetSelectRow(-1);
    if (pNM->iSubItem == 0)
    {
        m_pInputData->SetSortStateX((m_pInputData->GetSortStateX() + 1) % 3);
        m_pInputData->SortArrayX();
    }
    else if (pNM->iSubItem == 1)
    {
        m_pInputData->SetSortStateY((m_pInputData->GetSortStateY() + 1) % 3);
        m_pInputData->SortArrayY();
    }
    InputDataToListCtrl();
    InvalidateChart();
}

// ---------------------------------------------------------------------------
// Helpers

bool CPlotvane_InputData_Dlg::HasEditSet() const
{
    return m_pInputData != nullptr &&
           m_pInputData->GetChartPointDArray(m_pInputData->GetCurrentEditSet()) != nullptr;
}

int CPlotvane_InputData_Dlg::EditSetSize() const
{
    return m_pInputData->GetDataSize(m_pInputData->GetCurrentEditSet());
}

void CPlotvane_InputData_Dlg::EnableControl(UINT nID, BOOL bEnable)
{
    if (CWnd* pCtrl = GetDlgItem(int(nID)))
        pCtrl->EnableWindow(bEnable);
}

void CPlotvane_InputData_Dlg::FocusControl(UINT nID)
{
    if (CWnd* pCtrl = GetDlgItem(int(nID)))
        pCtrl->SetFocus();
}

void CPlotvane_InputData_Dlg::RedrawChart()
{
    if (m_pChartDlg != nullptr)
        m_pChartDlg->RedrawChartView();
}

void CPlotvane_InputData_Dlg::InvalidateChart()
{
    if (m_pChartDlg != nullptr && m_pChartDlg->GetGLChartView() != nullptr)
        m_pChartDlg->GetGLChartView()->Invalidate();
}

// ---------------------------------------------------------------------------
// Resource

namespace plotvane
{

DialogResource InputDataDialogResource()
{
    DialogResource r;
    r.id = CPlotvane_InputData_Dlg::IDD;
    r.title = "Dialog";
    r.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
    r.cx = 262;
    r.cy = 147;
    r.fontName = "Tahoma";
    r.fontPoints = 8;
    const DWORD child = WS_CHILD | WS_VISIBLE;
    const DWORD list = child | WS_BORDER | WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS;
    const DWORD edit = child | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL;
    const DWORD button = child | WS_TABSTOP | BS_PUSHBUTTON;
    auto add = [&r](UINT id, const char* cls, const char* text, CRect rc, DWORD style) {
        r.controls.push_back({id, cls, text, rc, style});
    };
    add(IDC_LIST_TLC_MAIN_SETNAME, "SysListView32", "", CRect(7, 7, 120, 91),
        list | LVS_SINGLESEL | WS_GROUP);
    add(IDC_STATIC, "STATIC", "Name", CRect(7, 98, 30, 106), child);
    add(IDC_EDT_TLC_MAIN_SETNAME, "EDIT", "", CRect(31, 96, 120, 108), edit | WS_DISABLED);
    add(IDC_BTN_TLC_MAIN_ADDSET, "BUTTON", "Add Set", CRect(7, 112, 42, 126), button);
    add(IDC_BTN_TLC_MAIN_DELETESET, "BUTTON", "Del Set", CRect(45, 112, 80, 126), button);
    add(IDC_BTN_TLC_MAIN_EDITSET, "BUTTON", "Edit Set", CRect(83, 112, 120, 126), button);
    add(IDC_LIST_TLC_MAIN_POINTD, "SysListView32", "", CRect(127, 7, 255, 91), list);
    add(IDC_STATIC, "STATIC", "X", CRect(127, 98, 134, 106), child);
    add(IDC_EDT_TLC_MAIN_X, "EDIT", "", CRect(135, 96, 189, 108), edit | WS_DISABLED);
    add(IDC_STATIC, "STATIC", "Y", CRect(193, 98, 200, 106), child);
    add(IDC_EDT_TLC_MAIN_Y, "EDIT", "", CRect(201, 96, 255, 108), edit | WS_DISABLED);
    add(IDC_BTN_TLC_MAIN_INPUT, "BUTTON", "Input", CRect(127, 112, 155, 126), button | WS_DISABLED);
    add(IDC_BTN_TLC_MAIN_MODIFY, "BUTTON", "Modify", CRect(157, 112, 187, 126),
        button | WS_DISABLED);
    add(IDC_BTN_TLC_MAIN_DELETE, "BUTTON", "Delete", CRect(189, 112, 219, 126),
        button | WS_DISABLED);
    add(IDC_BTN_TLC_MAIN_CLEARALL, "BUTTON", "Clear All", CRect(221, 112, 255, 126),
        button | WS_DISABLED);
    add(IDOK, "BUTTON", "OK", CRect(205, 130, 255, 144), child | WS_TABSTOP | BS_DEFPUSHBUTTON);
    return r;
}

} // namespace plotvane
