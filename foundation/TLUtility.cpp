#include <plotvane/foundation/TLUtility.h>

#include <cstdlib>
#include <sys/stat.h>

TLUtility* TLUtility::GetInstance()
{
    static TLUtility instance;
    return &instance;
}

CString TLUtility::GetDataPath() const
{
    const char* dir = std::getenv("PLOTVANE_DATA_DIR");
    if (dir && *dir)
        return CString(dir);
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    if (xdg && *xdg)
        return TLPathCombine(xdg, "plotvane");
    const char* home = std::getenv("HOME");
    return TLPathCombine(TLPathCombine(home && *home ? home : ".", ".config"), "plotvane");
}

CString TLUtility::TLPathCombine(const CString& strDir, const CString& strName) const
{
    if (strDir.IsEmpty())
        return strName;
    if (strName.IsEmpty())
        return strDir;
    CString dir(strDir);
    dir.TrimRight("/");
    CString name(strName);
    name.TrimLeft("/");
    if (dir.IsEmpty() && strDir.GetLength() > 0)
        return "/" + name;
    return dir + "/" + name;
}

bool TLUtility::IsExistDebugFile(const CString& strName) const
{
    struct stat st;
    return ::stat(TLPathCombine(GetDataPath(), strName).GetString(), &st) == 0;
}
