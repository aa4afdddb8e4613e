#include <plotvane/platform/wx/WxControls.h>

#include <plotvane/dialogs/DialogControls.h>
#include <plotvane/dialogs/XListCtrl.h>
#include <plotvane/platform/wx/WxListCtrl.h>

#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/radiobut.h>
#include <wx/statbox.h>
#include <wx/textctrl.h>

#include <algorithm>

namespace plotvane::wx
{

namespace
{

wxWindow* MakeButton(CWnd* owner, wxWindow* parent, wxWindowID id, const WindowParams& params,
                     const wxPoint& pos, const wxSize& size)
{
    const wxString text = wxString::FromUTF8(params.text.GetString());
    auto* pButton = dynamic_cast<CButton*>(owner);
    switch (params.style & BS_TYPEMASK)
    {
    case BS_GROUPBOX:
        return new wxStaticBox(parent, id, text, pos, size);
    case BS_RADIOBUTTON:
    case BS_AUTORADIOBUTTON:
    {
        auto* radio = new wxRadioButton(parent, id, text, pos, size,
                                        (params.style & WS_GROUP) ? wxRB_GROUP : 0);
        if (pButton != nullptr)
            radio->Bind(wxEVT_RADIOBUTTON, [pButton](wxCommandEvent&) { pButton->UserClicked(); });
        return radio;
    }
    case BS_CHECKBOX:
    case BS_AUTOCHECKBOX:
    {
        auto* check = new wxCheckBox(parent, id, text, pos, size);
        if (pButton != nullptr)
            check->Bind(wxEVT_CHECKBOX, [pButton](wxCommandEvent&) { pButton->UserClicked(); });
        return check;
    }
    default:
        return nullptr;
    }
}

void MirrorCombo(const CComboBox& combo, wxChoice& choice)
{
    const std::vector<CString>& entries = combo.GetEntries();
    bool same = choice.GetCount() == entries.size();
    for (size_t i = 0; same && i < entries.size(); ++i)
        same = choice.GetString(unsigned(i)).utf8_string() == entries[i].str();
    if (!same)
    {
        choice.Clear();
        for (const CString& e : entries)
            choice.Append(wxString::FromUTF8(e.GetString()));
    }
    choice.SetSelection(combo.GetCurSel() >= 0 ? combo.GetCurSel() : wxNOT_FOUND);
}

} // namespace

wxWindow* MakeCoreControl(CWnd* owner, wxWindow* parent, wxWindowID id, const WindowParams& params)
{
    const wxPoint pos(params.rect.left, params.rect.top);
    const wxSize size(std::max(1, int(params.rect.Width())),
                      std::max(1, int(params.rect.Height())));
    const std::string cls = params.className.GetString();
    if (auto* pList = dynamic_cast<CXListCtrl*>(owner))
        return MakeListCtrl(*pList, parent, id, pos, size);
    if (cls == "BUTTON")
        return MakeButton(owner, parent, id, params, pos, size);
    if (cls == "COMBOBOX")
    {
        // The resource's height includes the dropped list; the closed
        // control takes its own.
        auto* choice = new wxChoice(parent, id, pos, wxSize(size.x, -1));
        if (auto* pCombo = dynamic_cast<CComboBox*>(owner))
        {
            MirrorCombo(*pCombo, *choice);
            choice->Bind(wxEVT_CHOICE, [pCombo, choice](wxCommandEvent&)
                         { pCombo->UserSelected(choice->GetSelection()); });
        }
        return choice;
    }
    if (cls == "EDIT")
    {
        auto* pEdit = dynamic_cast<CEdit*>(owner);
        if (pEdit == nullptr)
            return nullptr;
        auto* edit =
            new wxTextCtrl(parent, id, wxString::FromUTF8(params.text.GetString()), pos, size);
        edit->Bind(wxEVT_TEXT, [pEdit](wxCommandEvent&) { pEdit->UserChangedText(); });
        return edit;
    }
    return nullptr;
}

bool MirrorCoreControl(CWnd* owner, wxWindow* window)
{
    if (dynamic_cast<CXListCtrl*>(owner) != nullptr)
        return ListCtrlChanged(window);
    if (auto* pCombo = dynamic_cast<CComboBox*>(owner))
    {
        auto* choice = dynamic_cast<wxChoice*>(window);
        if (choice != nullptr)
            MirrorCombo(*pCombo, *choice);
        return choice != nullptr;
    }
    auto* pButton = dynamic_cast<CButton*>(owner);
    if (pButton == nullptr)
        return false;
    if (auto* radio = dynamic_cast<wxRadioButton*>(window))
    {
        // A radio button is cleared by checking another of its group.
        if (pButton->GetCheck() == BST_CHECKED)
            radio->SetValue(true);
        return true;
    }
    if (auto* check = dynamic_cast<wxCheckBox*>(window))
    {
        check->SetValue(pButton->GetCheck() == BST_CHECKED);
        return true;
    }
    return false;
}

} // namespace plotvane::wx
