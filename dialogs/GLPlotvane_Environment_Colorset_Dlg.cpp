#include <plotvane/dialogs/GLPlotvane_Environment_Colorset_Dlg.h>

#include <plotvane/dialogs/ColorDialog.h>
#include <plotvane/dialogs/DialogResources.h>

namespace
{

constexpr int kColorColumns[2] = {1, 3};

CString Number(int n)
{
    CString text;
    text.Format("%d", n);
    return text;
}

} // namespace

CGLPlotvane_Environment_Colorset_Dlg::CGLPlotvane_Environment_Colorset_Dlg(CWnd* pParent)
    : CDialog(IDD, pParent)
{
}

void CGLPlotvane_Environment_Colorset_Dlg::DoDataExchange(CDataExchange* pDX)
{
    CDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_LIST_TLC_COLOR, m_ctrlColorList);
    DDX_Control(pDX, IDOK, m_btnOK);
}

BOOL CGLPlotvane_Environment_Colorset_Dlg::OnInitDialog()
{
    CDialog::OnInitDialog();
    CExXListCtrl& list = m_ctrlColorList;
    list.InsertColumn(0, "Item", LVCFMT_CENTER, 50);
    list.InsertColumn(1, "Color", LVCFMT_CENTER, 90);
    list.InsertColumn(2, "Item", LVCFMT_CENTER, 50);
    list.InsertColumn(3, "Color", LVCFMT_CENTER, 90);
    if (m_pColorSet != nullptr)
    {
        const int size = int(m_pColorSet->GetSize());
        const DWORD* colors = m_pColorSet->GetData();
        if (size > 1)
        {
            list.InsertItem(0, "BG");
            list.SetItemColor(0, 1, colors[0]);
            list.SetItemText(0, 2, "Label");
            list.SetItemColor(0, 3, colors[1]);
        }
        // The curve colours: the first half down columns 0 and 1, the rest
        // down columns 2 and 3.
        const int half = (size + 1) / 2;
        for (int i = 1; i < half; ++i)
        {
            list.InsertItem(i, Number(i));
            list.SetItemColor(i, 1, colors[i + 1]);
            if (half + i < size)
            {
                list.SetItemText(i, 2, Number(half + i - 1));
                list.SetItemColor(i, 3, colors[half + i]);
            }
        }
    }
    list.SetCallbackMask(LVIS_SELECTED | LVIS_FOCUSED);
    if (m_bReadOnly)
        m_btnOK.EnableWindow(FALSE);
    return TRUE;
}

LRESULT CGLPlotvane_Environment_Colorset_Dlg::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_NOTIFY)
        return CDialog::WindowProc(message, wParam, lParam);
    auto* pHdr = reinterpret_cast<NMHDR*>(lParam);
    LRESULT result = 0;
    if (pHdr->idFrom == IDC_LIST_TLC_COLOR && pHdr->code == NM_CLICK)
        OnNMClickListTlcColor(pHdr, &result);
    return result;
}

void CGLPlotvane_Environment_Colorset_Dlg::OnNMClickListTlcColor(NMHDR* pNMHDR, LRESULT* pResult)
{
    *pResult = 0;
    const auto* pNM = reinterpret_cast<const NMITEMACTIVATE*>(pNMHDR);
    const int row = pNM->iItem;
    const int col = pNM->iSubItem;
    if (m_bReadOnly || row < 0 || row >= m_ctrlColorList.GetItemCount() ||
        (col != kColorColumns[0] && col != kColorColumns[1]))
        return;
    const COLORREF current = m_ctrlColorList.GetItemColor(row, col);
    CColorDialog dlg(current == CLR_NONE ? 0 : current, CC_FULLOPEN, this);
    if (dlg.DoModal() == IDOK)
        m_ctrlColorList.SetItemColor(row, col, dlg.GetColor());
}

void CGLPlotvane_Environment_Colorset_Dlg::OnOK()
{
    // Enter cannot get past a disabled "OK" either.
    if (m_bReadOnly)
        return;
    if (m_pColorSet != nullptr)
    {
        // Row by row: each OK interleaves the two halves of the set.
        m_pColorSet->RemoveAll();
        for (int row = 0; row < m_ctrlColorList.GetItemCount(); ++row)
        {
            m_pColorSet->Add(m_ctrlColorList.GetItemColor(row, 1));
            if (!m_ctrlColorList.GetItemText(row, 2).IsEmpty())
                m_pColorSet->Add(m_ctrlColorList.GetItemColor(row, 3));
        }
    }
    CDialog::OnOK();
}

namespace plotvane
{

DialogResource ColorsetDialogResource()
{
    DialogResource r;
    r.id = CGLPlotvane_Environment_Colorset_Dlg::IDD;
    r.title = "Color";
    r.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
    r.cx = 207;
    r.cy = 156;
    r.fontName = "Tahoma";
    r.fontPoints = 8;
    const DWORD child = WS_CHILD | WS_VISIBLE;
    r.controls.push_back({IDC_LIST_TLC_COLOR, "SysListView32", "", CRect(7, 7, 200, 129),
                          child | WS_BORDER | WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL});
    r.controls.push_back(
        {IDOK, "BUTTON", "OK", CRect(96, 135, 146, 149), child | WS_TABSTOP | BS_DEFPUSHBUTTON});
    r.controls.push_back({IDCANCEL, "BUTTON", "Cancel", CRect(150, 135, 200, 149),
                          child | WS_TABSTOP | BS_PUSHBUTTON});
    return r;
}

} // namespace plotvane
