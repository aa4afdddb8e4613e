// What the dialog tests share: the headless backend's message boxes, a
// private data directory for "Chart.uis", and typing into a control.
#pragma once

#include "common/scoped_data_dir.h"
#include <plotvane/platform/headless/HeadlessBackend.h>
#include <plotvane/plotvane.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace plotvane_test
{

inline plotvane::HeadlessBackend& Headless()
{
    return plotvane::HeadlessBackend::Default();
}

// The message boxes shown since the last call, and the log emptied.
inline std::vector<CString> TakeMessages()
{
    std::vector<CString> log = Headless().GetMessageBoxLog();
    Headless().ClearMessageBoxLog();
    return log;
}

// The control's text, as the user typed it.
inline void Type(CWnd& dlg, int nID, const char* text)
{
    CWnd* pCtrl = static_cast<CDialog&>(dlg).GetDlgItem(nID);
    ASSERT_NE(pCtrl, nullptr) << nID;
    pCtrl->SetWindowText(text);
}

inline CString TextOf(const CDialog& dlg, int nID)
{
    CString text;
    if (CWnd* pCtrl = dlg.GetDlgItem(nID))
        pCtrl->GetWindowText(text);
    return text;
}

inline bool IsEnabled(const CDialog& dlg, int nID)
{
    CWnd* pCtrl = dlg.GetDlgItem(nID);
    return pCtrl != nullptr && pCtrl->IsWindowEnabled();
}

// "Chart.uis" goes to a directory of the test's own while the object lives.
class PrivateDataDir : public ScopedDataDir
{
public:
    std::string File() const { return Path() + "/Chart.uis"; }
};

class DataDirTest : public ::testing::Test
{
protected:
    void SetUp() override { TakeMessages(); }
    void TearDown() override { Headless().SetModalHandler(nullptr); }
    bool HasSettingsFile() const { return std::filesystem::exists(m_dir.File()); }

    PrivateDataDir m_dir;
};

} // namespace plotvane_test
