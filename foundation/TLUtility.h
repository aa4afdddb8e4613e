// Process-wide helpers: the data directory where settings and marker files
// live, and path joining.
#pragma once

#include <plotvane/foundation/MFCString.h>

class TLUtility
{
public:
    static TLUtility* GetInstance();

    // $PLOTVANE_DATA_DIR, else $XDG_CONFIG_HOME/plotvane, else
    // ~/.config/plotvane. Not created here: writers create it when they write.
    CString GetDataPath() const;
    // Joins two path pieces with exactly one '/' between them.
    CString TLPathCombine(const CString& strDir, const CString& strName) const;
    // Whether a file of that name exists in the data directory.
    bool IsExistDebugFile(const CString& strName) const;

private:
    TLUtility() = default;
};
