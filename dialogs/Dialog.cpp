#include <plotvane/dialogs/Dialog.h>

#include <plotvane/dialogs/DialogControls.h>
#include <plotvane/dialogs/DialogResources.h>

#include <plotvane/platform/Backend.h>

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>

namespace plotvane
{

const DialogResource* FindDialogResource(UINT id)
{
    static const std::vector<DialogResource> resources = LibraryDialogResources();
    for (const DialogResource& r : resources)
    {
        if (r.id == id)
            return &r;
    }
    return nullptr;
}

} // namespace plotvane

CDialog::CDialog(UINT nIDTemplate, CWnd* pParentWnd)
    : m_pParentWnd(pParentWnd), m_nIDTemplate(nIDTemplate)
{
}

CDialog::~CDialog()
{
    // The controls go before the member objects they may be bound to.
    if (m_hWnd != nullptr)
        DestroyWindow();
}

const plotvane::DialogResource* CDialog::GetResource() const
{
    return plotvane::FindDialogResource(m_nIDTemplate);
}

BOOL CDialog::Create(UINT nIDTemplate, CWnd* pParentWnd)
{
    const plotvane::DialogResource* res = plotvane::FindDialogResource(nIDTemplate);
    if (res == nullptr || m_hWnd != nullptr)
        return FALSE;
    m_nIDTemplate = nIDTemplate;
    if (pParentWnd != nullptr)
        m_pParentWnd = pParentWnd;

    plotvane::Backend& backend = plotvane::GetBackend();
    HWND parent = m_pParentWnd != nullptr ? m_pParentWnd->GetSafeHwnd() : nullptr;
    DWORD style = res->style;
    if (parent == nullptr)
        style &= ~WS_CHILD;
    const CRect rc = backend.MapDialogRect(parent, CRect(0, 0, res->cx, res->cy));
    if (!CWnd::CreateEx(0, "#32770", res->title, style, rc, m_pParentWnd, 0))
        return FALSE;
    // Dialog units follow the window's own font, which exists only now; a
    // top-level dialog takes the size its controls are laid out in.
    const CRect rcFont = backend.MapDialogRect(m_hWnd, CRect(0, 0, res->cx, res->cy));
    if (parent == nullptr && rcFont.Size() != rc.Size())
        SetWindowPos(nullptr, 0, 0, rcFont.Width(), rcFont.Height(), SWP_NOMOVE | SWP_NOZORDER);

    std::vector<std::pair<int, CWnd*>> bindings;
    CDataExchange binder(this, FALSE);
    binder.m_pBindings = &bindings;
    DoDataExchange(&binder);

    for (const plotvane::DialogControl& c : res->controls)
    {
        CWnd* pCtrl = nullptr;
        for (const auto& b : bindings)
        {
            if (UINT(b.first) == c.id)
                pCtrl = b.second;
        }
        if (pCtrl == nullptr)
        {
            m_ownControls.push_back(std::make_unique<CWnd>());
            pCtrl = m_ownControls.back().get();
        }
        const CRect rcCtrl = backend.MapDialogRect(m_hWnd, c.rect);
        pCtrl->CreateEx(0, c.className, c.caption, c.style | WS_CHILD, rcCtrl, this, c.id);
    }
    OnInitDialog();
    return TRUE;
}

INT_PTR CDialog::DoModal()
{
    CWnd* pParent = m_pParentWnd;
    m_pParentWnd = nullptr; // a top-level window, owned by nobody
    const BOOL bMade = Create(m_nIDTemplate);
    m_pParentWnd = pParent;
    if (!bMade)
        return -1;
    m_bModal = 1;
    const int result = plotvane::GetBackend().RunModalLoop(m_hWnd);
    m_bModal = 0;
    DestroyWindow();
    return result;
}

void CDialog::EndDialog(int nResult)
{
    if (m_hWnd == nullptr)
        return;
    if (m_bModal)
        plotvane::GetBackend().EndModalLoop(m_hWnd, nResult);
    else
        ShowWindow(SW_HIDE);
}

void CDialog::OnOK()
{
    if (UpdateData(TRUE))
        EndDialog(IDOK);
}

void CDialog::OnCancel()
{
    EndDialog(IDCANCEL);
}

BOOL CDialog::OnCommand(WPARAM wParam, LPARAM /*lParam*/)
{
    switch (LOWORD(wParam))
    {
    case IDOK:
        OnOK();
        return TRUE;
    case IDCANCEL:
        OnCancel();
        return TRUE;
    default:
        return FALSE;
    }
}

BOOL CDialog::OnInitDialog()
{
    UpdateData(FALSE);
    return TRUE;
}

void CDialog::DoDataExchange(CDataExchange* /*pDX*/) {}

BOOL CDialog::UpdateData(BOOL bSaveAndValidate)
{
    CDataExchange dx(this, bSaveAndValidate);
    try
    {
        DoDataExchange(&dx);
    }
    catch (const plotvane::DataExchangeFailure&)
    {
        return FALSE;
    }
    return TRUE;
}

CWnd* CDialog::GetDlgItem(int nID) const
{
    if (m_hWnd == nullptr)
        return nullptr;
    for (HWND child : plotvane::GetBackend().GetChildWindows(m_hWnd))
    {
        CWnd* pWnd = CWnd::FromHandle(child);
        if (pWnd != nullptr && pWnd->GetDlgCtrlID() == nID)
            return pWnd;
    }
    return nullptr;
}

void CDialog::MapDialogRect(LPRECT lpRect) const
{
    *lpRect = plotvane::GetBackend().MapDialogRect(m_hWnd, CRect(*lpRect));
}

void DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rCtrl)
{
    if (pDX->m_pBindings != nullptr)
        pDX->m_pBindings->emplace_back(nIDC, &rCtrl);
}

void DDX_Text(CDataExchange* pDX, int nIDC, CString& value)
{
    if (pDX->m_pBindings != nullptr)
        return;
    CDialog* pDlg = static_cast<CDialog*>(pDX->m_pDlgWnd);
    CWnd* pCtrl = pDlg->GetDlgItem(nIDC);
    if (pCtrl == nullptr)
        return;
    if (pDX->m_bSaveAndValidate)
        pCtrl->GetWindowText(value);
    else
        pCtrl->SetWindowText(value);
}

// ---------------------------------------------------------------------------
// Data exchange of numbers, radio groups and check boxes

namespace
{

// The control of an exchange of values; null while the window is being
// made (bindings only) or when the control does not exist.
CWnd* ExchangeControl(CDataExchange* pDX, int nIDC)
{
    if (pDX->m_pBindings != nullptr)
        return nullptr;
    return static_cast<CDialog*>(pDX->m_pDlgWnd)->GetDlgItem(nIDC);
}

} // namespace

namespace plotvane
{

void FailDataExchange(CDataExchange* pDX, int nIDC, LPCTSTR lpszMessage)
{
    pDX->m_pDlgWnd->MessageBox(lpszMessage, nullptr, MB_OK | MB_ICONWARNING);
    if (CWnd* pCtrl = ExchangeControl(pDX, nIDC))
        pCtrl->SetFocus();
    throw DataExchangeFailure();
}

bool ParseDouble(const CString& text, double& value)
{
    const char* begin = text.GetString();
    char* end = nullptr;
    errno = 0;
    const double d = std::strtod(begin, &end);
    if (end == begin || errno == ERANGE || !std::isfinite(d))
        return false;
    while (*end == ' ' || *end == '\t')
        ++end;
    if (*end != '\0')
        return false;
    value = d;
    return true;
}

bool ParseInt(const CString& text, int& value)
{
    const char* begin = text.GetString();
    char* end = nullptr;
    errno = 0;
    const long n = std::strtol(begin, &end, 10);
    if (end == begin || errno == ERANGE || n < INT_MIN || n > INT_MAX)
        return false;
    while (*end == ' ' || *end == '\t')
        ++end;
    if (*end != '\0')
        return false;
    value = int(n);
    return true;
}

} // namespace plotvane

namespace
{

CString FormatNumber(double value)
{
    CString text;
    text.Format("%.15g", value);
    return text;
}

CString FormatNumber(int value)
{
    CString text;
    text.Format("%d", value);
    return text;
}

template <class T>
void ExchangeNumber(CDataExchange* pDX, int nIDC, T& value, bool (*parse)(const CString&, T&),
                    LPCTSTR lpszMessage)
{
    CWnd* pCtrl = ExchangeControl(pDX, nIDC);
    if (pCtrl == nullptr)
        return;
    if (!pDX->m_bSaveAndValidate)
    {
        pCtrl->SetWindowText(FormatNumber(value));
        return;
    }
    CString text;
    pCtrl->GetWindowText(text);
    if (!parse(text, value))
        plotvane::FailDataExchange(pDX, nIDC, lpszMessage);
}

} // namespace

void DDX_Text(CDataExchange* pDX, int nIDC, double& value)
{
    ExchangeNumber(pDX, nIDC, value, &plotvane::ParseDouble, "Please enter a number.");
}

void DDX_Text(CDataExchange* pDX, int nIDC, int& value)
{
    ExchangeNumber(pDX, nIDC, value, &plotvane::ParseInt, "Please enter an integer.");
}

void DDX_Radio(CDataExchange* pDX, int nIDC, int& value)
{
    auto* pFirst = dynamic_cast<CButton*>(ExchangeControl(pDX, nIDC));
    if (pFirst == nullptr)
        return;
    const std::vector<CButton*> group = pFirst->GetRadioGroup();
    if (pDX->m_bSaveAndValidate)
        value = -1;
    for (size_t i = 0; i < group.size(); ++i)
    {
        if (pDX->m_bSaveAndValidate && group[i]->GetCheck() == BST_CHECKED)
            value = int(i);
        else if (!pDX->m_bSaveAndValidate)
            group[i]->SetCheck(int(i) == value ? BST_CHECKED : BST_UNCHECKED);
    }
}

void DDX_Check(CDataExchange* pDX, int nIDC, int& value)
{
    auto* pButton = dynamic_cast<CButton*>(ExchangeControl(pDX, nIDC));
    if (pButton == nullptr)
        return;
    if (pDX->m_bSaveAndValidate)
        value = pButton->GetCheck();
    else
        pButton->SetCheck(value);
}
