// The common controls of the dialogs as window classes whose state lives
// here: a button's check, a combo box's entries and selection. The backend's
// native control mirrors that state (Backend::ControlChanged) and reports
// what the user does through the User... operations, which notify the
// parent as WM_COMMAND, as Windows' controls do. Without a toolkit the state
// is all there is, and tests stand in for the user through the same calls.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/platform/Wnd.h>

#include <vector>

// A control that no member stands for.
constexpr UINT IDC_STATIC = UINT(-1);

constexpr UINT WM_NOTIFY = 0x004E;

// Button styles (the low nibble is the kind) and states.
constexpr DWORD BS_PUSHBUTTON = 0x0000;
constexpr DWORD BS_DEFPUSHBUTTON = 0x0001;
constexpr DWORD BS_CHECKBOX = 0x0002;
constexpr DWORD BS_AUTOCHECKBOX = 0x0003;
constexpr DWORD BS_RADIOBUTTON = 0x0004;
constexpr DWORD BS_GROUPBOX = 0x0007;
constexpr DWORD BS_AUTORADIOBUTTON = 0x0009;
constexpr DWORD BS_TYPEMASK = 0x000F;
constexpr int BST_UNCHECKED = 0;
constexpr int BST_CHECKED = 1;

// Edit and combo box styles.
constexpr DWORD ES_AUTOHSCROLL = 0x0080;
constexpr DWORD ES_READONLY = 0x0800;
constexpr DWORD CBS_DROPDOWNLIST = 0x0003;

// Notification codes in the high word of WM_COMMAND's wParam.
constexpr WORD BN_CLICKED = 0;
constexpr WORD EN_SETFOCUS = 0x0100;
constexpr WORD EN_KILLFOCUS = 0x0200;
constexpr WORD EN_CHANGE = 0x0300;
constexpr WORD CBN_SELCHANGE = 1;
constexpr int CB_ERR = -1;

// The header of a WM_NOTIFY message; lParam points at it.
struct NMHDR
{
    HWND hwndFrom = nullptr;
    UINT idFrom = 0;
    UINT code = 0;
};

// Sends WM_COMMAND with this control's id and a notification code to its
// parent.
void NotifyParentCommand(CWnd& ctrl, WORD code);

// A push button, check box, radio button or group box, by its style.
class CButton : public CWnd
{
public:
    BOOL PreCreateWindow(CREATESTRUCT& cs) override;
    DWORD GetButtonStyle() const { return m_dwStyle & BS_TYPEMASK; }
    DWORD GetStyle() const { return m_dwStyle; }
    bool IsRadio() const;
    int GetCheck() const { return m_nCheck; }
    void SetCheck(int nCheck);

    // The user clicked the button: an automatic radio button is checked and
    // the others of its group cleared, an automatic check box toggles, and
    // the parent hears BN_CLICKED.
    void UserClicked();
    // The radio buttons of this one's group, in creation order: a run of
    // sibling radio buttons, started anew by one with WS_GROUP.
    std::vector<CButton*> GetRadioGroup() const;

private:
    DWORD m_dwStyle = 0;
    int m_nCheck = BST_UNCHECKED;
};

// An edit control whose parent hears of its focus and text changes.
class CEdit : public CWnd
{
public:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    // The user changed the text: the parent hears EN_CHANGE.
    void UserChangedText();
};

// A drop-down list: entries and the selected one.
class CComboBox : public CWnd
{
public:
    int GetCount() const { return int(m_entries.size()); }
    int AddString(LPCTSTR lpszString);
    int InsertString(int nIndex, LPCTSTR lpszString);
    // Answers the count left, or CB_ERR for a bad index.
    int DeleteString(UINT nIndex);
    void ResetContent();
    int GetCurSel() const { return m_nCurSel; }
    // -1 clears the selection; a bad index clears it and answers CB_ERR.
    int SetCurSel(int nSelect);
    void GetLBText(int nIndex, CString& rString) const;
    CString GetLBText(int nIndex) const;
    const std::vector<CString>& GetEntries() const { return m_entries; }

    // The user picked entry nIndex: the parent hears CBN_SELCHANGE.
    void UserSelected(int nIndex);

private:
    void Changed();
    std::vector<CString> m_entries;
    int m_nCurSel = CB_ERR;
};
