// CDialog: a window class built from a resource description. The description
// (dialog id, title, style, size in dialog units, font, and each control with
// its id, class, caption, rectangle and style) lives here in the core; the
// installed backend turns it into a native window with the same control ids.
// Handlers are public and can be called directly, with or without a window.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/platform/Wnd.h>

#include <memory>
#include <utility>
#include <vector>

namespace plotvane
{

struct DialogControl
{
    UINT id = 0;
    CString className; // "STATIC", "BUTTON", "EDIT", ...
    CString caption;
    CRect rect;        // dialog units, in the dialog's client area
    DWORD style = 0;
};

struct DialogResource
{
    UINT id = 0;
    CString title;
    DWORD style = 0;
    int cx = 0; // dialog units
    int cy = 0;
    CString fontName;
    int fontPoints = 0;
    std::vector<DialogControl> controls;
};

// The dialog resources of the library by id; null for an unknown id.
const DialogResource* FindDialogResource(UINT id);

} // namespace plotvane

// A child control of a dialog, bound to a member by data exchange.
class CStatic : public CWnd
{
};

// Moves values between a dialog's members and its controls.
class CDataExchange
{
public:
    CDataExchange(CWnd* pDlgWnd, BOOL bSaveAndValidate)
        : m_bSaveAndValidate(bSaveAndValidate), m_pDlgWnd(pDlgWnd)
    {
    }
    BOOL m_bSaveAndValidate;
    CWnd* m_pDlgWnd;
    // Set while the dialog's window is being made: DDX_Control then records
    // which member stands for which control instead of exchanging values.
    std::vector<std::pair<int, CWnd*>>* m_pBindings = nullptr;
};

class CDialog : public CWnd
{
public:
    explicit CDialog(UINT nIDTemplate, CWnd* pParentWnd = nullptr);
    ~CDialog() override;

    UINT GetTemplateId() const { return m_nIDTemplate; }
    const plotvane::DialogResource* GetResource() const;

    // Makes the window and its controls from the resource, as a child of
    // pParentWnd (top-level when null), then runs data exchange and
    // OnInitDialog. FALSE for an unknown resource or a failed window.
    virtual BOOL Create(UINT nIDTemplate, CWnd* pParentWnd = nullptr);
    // Makes the dialog as a top-level window, runs it until EndDialog and
    // destroys it; answers the result given to EndDialog (IDOK, IDCANCEL),
    // or -1 when the window could not be made. The members hold what OK
    // exchanged.
    virtual INT_PTR DoModal();
    // Ends a modal run with this result; a dialog that is not modal just
    // hides.
    void EndDialog(int nResult);
    // OK: controls to members, then EndDialog(IDOK). Cancel: EndDialog
    // (IDCANCEL), members untouched.
    virtual void OnOK();
    virtual void OnCancel();
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    // Initialises the controls from the members.
    virtual BOOL OnInitDialog();
    virtual void DoDataExchange(CDataExchange* pDX);
    // TRUE: controls to members; FALSE: members to controls.
    BOOL UpdateData(BOOL bSaveAndValidate = TRUE);

    // The control with this id, or null.
    CWnd* GetDlgItem(int nID) const;
    // Dialog units to pixels, with the font of this dialog's window.
    void MapDialogRect(LPRECT lpRect) const;

    CWnd* m_pParentWnd;

private:
    using CWnd::Create;
    UINT m_nIDTemplate;
    int m_bModal = 0;
    // Controls that no member is bound to.
    std::vector<std::unique_ptr<CWnd>> m_ownControls;
};

void DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rCtrl);
// The control's text to value (saving) or back.
void DDX_Text(CDataExchange* pDX, int nIDC, CString& value);

// ---------------------------------------------------------------------------
// Data exchange of numbers, radio groups and check boxes. A text that is not
// a number gets a message box and the focus, the exchange stops there, and
// UpdateData answers FALSE with the members from that control on untouched.

namespace plotvane
{

// What a failed exchange throws; UpdateData catches it.
struct DataExchangeFailure
{
};
// Shows the message, gives the control the focus and ends the exchange.
[[noreturn]] void FailDataExchange(CDataExchange* pDX, int nIDC, LPCTSTR lpszMessage);
// The whole text as a finite number (spaces around it allowed); false for an
// empty text, trailing characters, infinities and NaN.
bool ParseDouble(const CString& text, double& value);
bool ParseInt(const CString& text, int& value);

} // namespace plotvane

void DDX_Text(CDataExchange* pDX, int nIDC, double& value);
void DDX_Text(CDataExchange* pDX, int nIDC, int& value);
// The radio group that starts at control nIDC: the index of the checked
// button, -1 for none.
void DDX_Radio(CDataExchange* pDX, int nIDC, int& value);
void DDX_Check(CDataExchange* pDX, int nIDC, int& value);

// The resizable dialog base of the chart host dialogs. The host lays these
// dialogs out, so the only thing wanted of it is the size grip switch.
class CExtResizableDialog : public CDialog
{
public:
    explicit CExtResizableDialog(UINT nIDTemplate, CWnd* pParentWnd = nullptr)
        : CDialog(nIDTemplate, pParentWnd)
    {
    }
    void ShowSizeGrip(BOOL bShow) { m_bShowSizeGrip = bShow; }
    BOOL IsSizeGripShown() const { return m_bShowSizeGrip; }

private:
    BOOL m_bShowSizeGrip = TRUE;
};
