#include <plotvane/dialogs/Dialog.h>

#include <plotvane/platform/Backend.h>

namespace plotvane
{

namespace
{

// The chart host dialog: a child holding the "View" placeholder, which the
// chart view covers, and a small static in its corner.
DialogResource ChartDialogResource()
{
    DialogResource r;
    r.id = 20502;
    r.style = 0x50000040;
    r.cx = 338;
    r.cy = 304;
    r.fontName = "Tahoma";
    r.fontPoints = 9;
    r.controls.push_back({11008, "STATIC", "View", CRect(0, 0, 338, 304), WS_CHILD | WS_VISIBLE});
    r.controls.push_back({11018, "STATIC", "", CRect(0, 0, 97, 25), WS_CHILD | WS_VISIBLE});
    return r;
}

} // namespace

const DialogResource* FindDialogResource(UINT id)
{
    static const std::vector<DialogResource> resources = {ChartDialogResource()};
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

BOOL CDialog::OnInitDialog()
{
    UpdateData(FALSE);
    return TRUE;
}

void CDialog::DoDataExchange(CDataExchange* /*pDX*/) {}

BOOL CDialog::UpdateData(BOOL bSaveAndValidate)
{
    CDataExchange dx(this, bSaveAndValidate);
    DoDataExchange(&dx);
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
