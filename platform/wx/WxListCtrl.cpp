#include <plotvane/platform/wx/WxListCtrl.h>

#include <plotvane/dialogs/ExXListCtrl.h>

#include <wx/choice.h>
#include <wx/dataview.h>
#include <wx/dc.h>
#include <wx/renderer.h>
#include <wx/settings.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <vector>

// The GtkTreeView settings that wxDataViewCtrl fixes at creation or ties to
// sorting.
extern "C"
{
    void gtk_tree_view_set_grid_lines(GtkWidget* tree_view, int grid_lines);
    void gtk_tree_view_column_set_clickable(GtkWidget* column, int clickable);
}

namespace plotvane::wx
{

namespace
{

constexpr int kGtkGridLinesNone = 0;
constexpr int kGtkGridLinesBoth = 3;
constexpr int kCellMargin = 3;

wxColour ColourOf(COLORREF c)
{
    return wxColour(GetRValue(c), GetGValue(c), GetBValue(c));
}

int AlignmentOf(int nFormat)
{
    switch (nFormat & 3)
    {
    case LVCFMT_RIGHT:
        return wxALIGN_RIGHT | wxALIGN_CENTER_VERTICAL;
    case LVCFMT_CENTER:
        return wxALIGN_CENTER;
    default:
        return wxALIGN_LEFT | wxALIGN_CENTER_VERTICAL;
    }
}

// The rows of the native list are the core list's rows; a value is the row
// number as text, and the renderer reads the cell from the core list.
class CoreRowsModel : public wxDataViewVirtualListModel
{
public:
    CoreRowsModel(CXListCtrl& list, wxEvtHandler& events)
        : wxDataViewVirtualListModel(unsigned(list.GetItemCount())), m_list(list), m_events(events)
    {
    }
    void GetValueByRow(wxVariant& variant, unsigned row, unsigned /*col*/) const override
    {
        variant = wxString::Format("%u", row);
    }
    // Only a finished cell edit sets a value: the new text.
    bool SetValueByRow(const wxVariant& variant, unsigned row, unsigned col) override;

private:
    CXListCtrl& m_list;
    wxEvtHandler& m_events; // the native list: what it defers dies with it
};

// Draws a cell of the core list the way a list view does: the row's check
// box in column 0, a colour swatch for a colour cell, else the text.
class CoreCellRenderer : public wxDataViewCustomRenderer
{
public:
    CoreCellRenderer(CXListCtrl& list, wxEvtHandler& events, int col, wxDataViewCellMode mode,
                     int align)
        : wxDataViewCustomRenderer("string", mode, align), m_list(list), m_events(events),
          m_col(col)
    {
    }

    bool SetValue(const wxVariant& value) override
    {
        long row = -1;
        m_row = value.GetString().ToLong(&row) ? int(row) : -1;
        return true;
    }
    bool GetValue(wxVariant& value) const override
    {
        value = wxString::Format("%d", m_row);
        return true;
    }
    wxSize GetSize() const override;
    bool Render(wxRect cell, wxDC* dc, int state) override;
    bool ActivateCell(const wxRect& cell, wxDataViewModel* model, const wxDataViewItem& item,
                      unsigned col, const wxMouseEvent* mouseEvent) override;

    bool HasEditorCtrl() const override { return Editor() != nullptr; }
    wxWindow* CreateEditorCtrl(wxWindow* parent, wxRect labelRect, const wxVariant& value) override;
    bool GetValueFromEditorCtrl(wxWindow* editor, wxVariant& value) override;

private:
    bool HasCheckBox() const
    {
        return m_col == 0 && (m_list.GetExtendedStyle() & LVS_EX_CHECKBOXES) != 0;
    }
    wxSize CheckBoxSize() const;
    CExXListCtrl* Editor() const;

    CXListCtrl& m_list;
    wxEvtHandler& m_events;
    int m_col;
    int m_row = -1;
};

class NativeList : public wxDataViewCtrl
{
public:
    NativeList(CXListCtrl& list, wxWindow* parent, wxWindowID id, const wxPoint& pos,
               const wxSize& size)
        : wxDataViewCtrl(parent, id, pos, size, StyleOf(list)), m_list(list)
    {
        m_pModel = new CoreRowsModel(list, *this);
        AssociateModel(m_pModel);
        m_pModel->DecRef();
        Bind(wxEVT_DATAVIEW_SELECTION_CHANGED, &NativeList::OnSelection, this);
        Bind(wxEVT_DATAVIEW_COLUMN_HEADER_CLICK, &NativeList::OnHeaderClick, this);
        Bind(wxEVT_DATAVIEW_ITEM_EDITING_DONE, &NativeList::OnEditingDone, this);
        Sync();
    }

    // wxDataViewCtrl ends an open edit and clears its rows as it goes; the
    // events of that must not reach this part of the object, gone by then.
    ~NativeList() override
    {
        Unbind(wxEVT_DATAVIEW_SELECTION_CHANGED, &NativeList::OnSelection, this);
        Unbind(wxEVT_DATAVIEW_COLUMN_HEADER_CLICK, &NativeList::OnHeaderClick, this);
        Unbind(wxEVT_DATAVIEW_ITEM_EDITING_DONE, &NativeList::OnEditingDone, this);
    }

    void ScheduleSync()
    {
        if (m_bSyncPending)
            return;
        m_bSyncPending = true;
        CallAfter(
            [this]
            {
                m_bSyncPending = false;
                Sync();
            });
    }

    wxDataViewItem ItemOf(int row) const
    {
        return row >= 0 && row < int(m_pModel->GetCount()) ? m_pModel->GetItem(unsigned(row))
                                                           : wxDataViewItem();
    }
    int RowOf(const wxDataViewItem& item) const
    {
        return item.IsOk() ? int(m_pModel->GetRow(item)) : -1;
    }

private:
    static long StyleOf(const CXListCtrl& list)
    {
        return (list.GetStyle() & LVS_SINGLESEL) ? wxDV_SINGLE : wxDV_MULTIPLE;
    }

    void Sync();
    void SyncColumns();
    void SyncSelection();
    void OnSelection(wxDataViewEvent& e);
    void OnHeaderClick(wxDataViewEvent& e);
    void OnEditingDone(wxDataViewEvent& e);

    CXListCtrl& m_list;
    CoreRowsModel* m_pModel = nullptr;
    bool m_bSyncPending = false;
    // Set while the native list is brought up to the core's state: the
    // native events that causes are not the user's.
    bool m_bMirroring = false;
    unsigned m_nColumnsSeen = ~0u;
    unsigned m_nRowsSeen = ~0u;
    unsigned m_nStateSeen = ~0u;
    unsigned m_nEnsureVisibleSeen = 0;
    unsigned m_nEditSeen = 0;
};

// ---------------------------------------------------------------------------
// Model and renderer

bool CoreRowsModel::SetValueByRow(const wxVariant& variant, unsigned row, unsigned col)
{
    auto* pList = dynamic_cast<CExXListCtrl*>(&m_list);
    if (pList == nullptr)
        return false;
    const CString text(variant.GetString().utf8_string());
    m_events.CallAfter([pList, row, col, text]
                       { pList->UserEditedCell(int(row), int(col), text); });
    return true;
}

CExXListCtrl* CoreCellRenderer::Editor() const
{
    auto* pList = dynamic_cast<CExXListCtrl*>(&m_list);
    return pList != nullptr && pList->GetColumnEditor(m_col) != XLIST_EDITOR_NONE ? pList : nullptr;
}

wxSize CoreCellRenderer::CheckBoxSize() const
{
    wxWindow* owner = GetOwner() != nullptr ? GetOwner()->GetOwner() : nullptr;
    return owner != nullptr ? wxRendererNative::Get().GetCheckBoxSize(owner) : wxSize(16, 16);
}

wxSize CoreCellRenderer::GetSize() const
{
    if (m_list.GetCellColor(m_row, m_col) != CLR_NONE)
    {
        // A swatch takes the column's width.
        const int width = GetOwner() != nullptr ? GetOwner()->GetWidth() : 40;
        return wxSize(std::max(8, width - 4 * kCellMargin),
                      GetTextExtent("Xg").y + 2 * kCellMargin);
    }
    const wxString text = wxString::FromUTF8(m_list.GetItemText(m_row, m_col).GetString());
    wxSize size = GetTextExtent(text.empty() ? wxString("Xg") : text);
    if (HasCheckBox())
    {
        const wxSize box = CheckBoxSize();
        size.x += box.x + 2 * kCellMargin;
        size.y = std::max(size.y, box.y);
    }
    size.x += 2 * kCellMargin;
    size.y += 2 * kCellMargin;
    return size;
}

bool CoreCellRenderer::Render(wxRect cell, wxDC* dc, int state)
{
    if (HasCheckBox())
    {
        const wxSize box = CheckBoxSize();
        const wxRect boxRect(cell.x + kCellMargin, cell.y + (cell.height - box.y) / 2, box.x,
                             box.y);
        const int flags = m_list.GetCheck(m_row) ? int(wxCONTROL_CHECKED) : 0;
        wxRendererNative::Get().DrawCheckBox(GetOwner()->GetOwner(), *dc, boxRect, flags);
        cell.x += box.x + 2 * kCellMargin;
        cell.width -= box.x + 2 * kCellMargin;
    }
    const COLORREF color = m_list.GetCellColor(m_row, m_col);
    if (color != CLR_NONE)
    {
        // The swatch covers the cell, so that a selected row shows it too.
        const wxRect swatch = cell.Deflate(kCellMargin, kCellMargin / 2 + 1);
        dc->SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT)));
        dc->SetBrush(wxBrush(ColourOf(color)));
        dc->DrawRectangle(swatch);
        return true;
    }
    RenderText(wxString::FromUTF8(m_list.GetItemText(m_row, m_col).GetString()), 0, cell, dc,
               state);
    return true;
}

bool CoreCellRenderer::ActivateCell(const wxRect& /*cell*/, wxDataViewModel* /*model*/,
                                    const wxDataViewItem& /*item*/, unsigned /*col*/,
                                    const wxMouseEvent* mouseEvent)
{
    // A click left of the check box's right edge toggles it; the keyboard
    // (Space, Enter) toggles it too.
    const int row = m_row;
    const int col = m_col;
    const bool onCheckBox =
        HasCheckBox() &&
        (mouseEvent == nullptr || mouseEvent->GetX() < CheckBoxSize().x + 2 * kCellMargin);
    CXListCtrl* pList = &m_list;
    m_events.CallAfter(
        [pList, row, col, onCheckBox]
        {
            if (onCheckBox)
                pList->UserToggledCheck(row);
            else
                pList->UserClickedCell(row, col);
        });
    return true;
}

wxWindow* CoreCellRenderer::CreateEditorCtrl(wxWindow* parent, wxRect labelRect,
                                             const wxVariant& /*value*/)
{
    CExXListCtrl* pList = Editor();
    if (pList == nullptr)
        return nullptr;
    const wxString text = wxString::FromUTF8(pList->GetItemText(m_row, m_col).GetString());
    if (pList->GetColumnEditor(m_col) == XLIST_EDITOR_TEXT)
        return new wxTextCtrl(parent, wxID_ANY, text, labelRect.GetTopLeft(), labelRect.GetSize(),
                              wxTE_PROCESS_ENTER);
    wxArrayString choices;
    for (const CString& c : pList->GetColumnChoices(m_col))
        choices.Add(wxString::FromUTF8(c.GetString()));
    auto* choice =
        new wxChoice(parent, wxID_ANY, labelRect.GetTopLeft(), labelRect.GetSize(), choices);
    choice->SetStringSelection(text);
    return choice;
}

bool CoreCellRenderer::GetValueFromEditorCtrl(wxWindow* editor, wxVariant& value)
{
    if (auto* text = dynamic_cast<wxTextCtrl*>(editor))
        value = text->GetValue();
    else if (auto* choice = dynamic_cast<wxChoice*>(editor))
        value = choice->GetStringSelection();
    else
        return false;
    return true;
}

// ---------------------------------------------------------------------------
// The list

void NativeList::Sync()
{
    m_bMirroring = true;
    if (m_list.GetColumnsRevision() != m_nColumnsSeen)
        SyncColumns();
    const bool rowsChanged = m_list.GetRowsRevision() != m_nRowsSeen;
    if (rowsChanged)
    {
        m_nRowsSeen = m_list.GetRowsRevision();
        if (int(m_pModel->GetCount()) != m_list.GetItemCount())
            m_pModel->Reset(unsigned(m_list.GetItemCount()));
        Refresh();
    }
    if (rowsChanged || m_list.GetStateRevision() != m_nStateSeen)
        SyncSelection();
    if (auto* pEx = dynamic_cast<CExXListCtrl*>(&m_list);
        pEx != nullptr && pEx->GetEditRevision() != m_nEditSeen)
    {
        m_nEditSeen = pEx->GetEditRevision();
        const CEdit4ExXListCtrl& edit = pEx->GetCellEdit();
        const CXComboList& combo = pEx->GetComboList();
        const int row = edit.IsActive() ? edit.GetItem() : combo.GetItem();
        const int col = edit.IsActive() ? edit.GetSubItem() : combo.GetSubItem();
        if (row >= 0 && col < int(GetColumnCount()))
            EditItem(ItemOf(row), GetColumn(unsigned(col)));
    }
    m_bMirroring = false;
}

void NativeList::SyncColumns()
{
    m_nColumnsSeen = m_list.GetColumnsRevision();
    ClearColumns();
    const auto& columns = m_list.GetHeader().GetColumns();
    auto* pEx = dynamic_cast<CExXListCtrl*>(&m_list);
    for (size_t i = 0; i < columns.size(); ++i)
    {
        const int col = int(i);
        const bool editable = pEx != nullptr && pEx->GetColumnEditor(col) != XLIST_EDITOR_NONE;
        const int align = AlignmentOf(columns[i].format);
        auto* renderer = new CoreCellRenderer(
            m_list, *this, col, editable ? wxDATAVIEW_CELL_EDITABLE : wxDATAVIEW_CELL_ACTIVATABLE,
            align);
        auto* column = new wxDataViewColumn(wxString::FromUTF8(columns[i].heading.GetString()),
                                            renderer, unsigned(col), std::max(1, columns[i].width),
                                            wxAlignment(align & ~wxALIGN_CENTER_VERTICAL),
                                            wxDATAVIEW_COL_RESIZABLE);
        AppendColumn(column);
        // Header clicks reach the dialog (a list view sorts by them there).
        gtk_tree_view_column_set_clickable(column->GetGtkHandle(), 1);
    }
    const bool grid = (m_list.GetExtendedStyle() & LVS_EX_GRIDLINES) != 0;
    gtk_tree_view_set_grid_lines(GtkGetTreeView(), grid ? kGtkGridLinesBoth : kGtkGridLinesNone);
}

void NativeList::SyncSelection()
{
    m_nStateSeen = m_list.GetStateRevision();
    const int focus = m_list.GetNextItem(-1, LVNI_FOCUSED);
    if (focus >= 0 && RowOf(GetCurrentItem()) != focus)
        SetCurrentItem(ItemOf(focus));
    wxDataViewItemArray selected;
    for (int row = m_list.GetNextItem(-1, LVNI_SELECTED); row >= 0;
         row = m_list.GetNextItem(row, LVNI_SELECTED))
        selected.Add(ItemOf(row));
    SetSelections(selected);
    const int visible = m_list.GetEnsureVisibleItem();
    if (visible >= 0 && m_list.GetEnsureVisibleRevision() != m_nEnsureVisibleSeen)
    {
        m_nEnsureVisibleSeen = m_list.GetEnsureVisibleRevision();
        EnsureVisible(ItemOf(visible));
    }
}

void NativeList::OnSelection(wxDataViewEvent& e)
{
    e.Skip();
    if (m_bMirroring)
        return;
    // The selection is read when the core hears of it, after any sync still
    // due, so that a change GTK made on its own (the first row selected as
    // the list takes the focus) cannot undo one the program made since.
    CallAfter(
        [this]
        {
            wxDataViewItemArray items;
            GetSelections(items);
            std::vector<int> rows;
            for (const wxDataViewItem& item : items)
                rows.push_back(RowOf(item));
            m_list.UserSelected(rows, RowOf(GetCurrentItem()));
        });
}

void NativeList::OnHeaderClick(wxDataViewEvent& e)
{
    const int col = e.GetColumn();
    CXListCtrl* pList = &m_list;
    CallAfter([pList, col] { pList->UserClickedColumn(col); });
}

void NativeList::OnEditingDone(wxDataViewEvent& e)
{
    e.Skip();
    auto* pEx = dynamic_cast<CExXListCtrl*>(&m_list);
    if (pEx != nullptr && e.IsEditCancelled())
        CallAfter([pEx] { pEx->CancelEdit(); });
}

} // namespace

wxWindow* MakeListCtrl(CXListCtrl& list, wxWindow* parent, wxWindowID id, const wxPoint& pos,
                       const wxSize& size)
{
    return new NativeList(list, parent, id, pos, size);
}

bool ListCtrlChanged(wxWindow* window)
{
    auto* native = dynamic_cast<NativeList*>(window);
    if (native == nullptr)
        return false;
    native->ScheduleSync();
    return true;
}

wxRect ListCellScreenRect(wxWindow* window, int nItem, int nSubItem)
{
    auto* native = dynamic_cast<NativeList*>(window);
    if (native == nullptr || nSubItem < 0 || nSubItem >= int(native->GetColumnCount()))
        return wxRect();
    const wxDataViewItem item = native->ItemOf(nItem);
    if (!item.IsOk())
        return wxRect();
    wxRect rc = native->GetItemRect(item, native->GetColumn(unsigned(nSubItem)));
    if (rc.IsEmpty())
        return rc;
    rc.SetPosition(native->ClientToScreen(rc.GetPosition()));
    return rc;
}

} // namespace plotvane::wx
