#include <plotvane/document/GLPlotvane_Environment.h>

#include <plotvane/foundation/Exceptions.h>
#include <plotvane/foundation/MFCFile.h>
#include <plotvane/foundation/TLUtility.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
constexpr int kPresetCount = 2;
constexpr int kPresetSize = 22;

// Entry 0 is the background, entry 1 labels, axes and grid, then the curves.
constexpr COLORREF kDarkPreset[kPresetSize] = {
    0x000000, 0xFFFFFF, 0x0000FF, 0xCCCC00, 0x00CCFF, 0xFF00FF, 0x33FF33, 0xCC6600,
    0x00FFFF, 0xFF4080, 0x99FF99, 0x990066, 0x6666FF, 0x666600, 0x99FFFF, 0xFF3333,
    0xFFFF66, 0x0099FF, 0x003399, 0xFF99FF, 0x00CC33, 0x6C00F0};

constexpr COLORREF kLightPreset[kPresetSize] = {
    0xFFFFFF, 0x000000, 0x0000FF, 0xCCCC00, 0xCC00CC, 0x006699, 0x00C800, 0xCC6600,
    0x00CCFF, 0x663399, 0x99990F, 0x990066, 0x6666FF, 0x666600, 0xFF00FF, 0xFF3333,
    0x003399, 0x0099FF, 0xFFCC66, 0xFF99FF, 0x00CC33, 0x6C00F0};

CDWordArray* MakeSet(const COLORREF (&values)[kPresetSize])
{
    CDWordArray* p = new CDWordArray;
    p->SetSize(kPresetSize);
    for (int i = 0; i < kPresetSize; ++i)
        p->GetData()[i] = values[i];
    return p;
}

// mkdir -p: creates every missing directory on the way.
bool MakeDirectories(const std::string& dir)
{
    if (dir.empty())
        return true;
    struct stat st;
    if (::stat(dir.c_str(), &st) == 0)
        return S_ISDIR(st.st_mode);
    const size_t slash = dir.find_last_of('/');
    if (slash != std::string::npos && slash > 0 && !MakeDirectories(dir.substr(0, slash)))
        return false;
    return ::mkdir(dir.c_str(), 0755) == 0 || errno == EEXIST;
}

bool WriteAll(int fd, const BYTE* p, size_t n)
{
    while (n > 0)
    {
        const ssize_t w = ::write(fd, p, n);
        if (w < 0 && errno == EINTR)
            continue;
        if (w <= 0)
            return false;
        p += w;
        n -= size_t(w);
    }
    return true;
}

// A fresh file beside the target, so that the final rename stays within
// one file system. The name is unique to this process and attempt.
int CreateTemporary(const std::string& target, std::string& tmpPath)
{
    for (int attempt = 0; attempt < 100; ++attempt)
    {
        tmpPath = target + ".tmp." + std::to_string(::getpid()) + "." + std::to_string(attempt);
        const int fd = ::open(tmpPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (fd >= 0 || errno != EEXIST)
            return fd;
    }
    return -1;
}

// The directory entry of a rename is durable only once the directory is.
void SyncDirectory(const std::string& dir)
{
    const int fd = ::open(dir.empty() ? "." : dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    ::fsync(fd);
    ::close(fd);
}

// Writes the bytes to a temporary file, syncs it and renames it over the
// target: a reader sees the old file or the new one, never a part of one.
bool ReplaceFileAtomically(const std::string& dir, const std::string& target, const BYTE* p,
                           size_t n)
{
    if (!MakeDirectories(dir))
        return false;
    std::string tmpPath;
    const int fd = CreateTemporary(target, tmpPath);
    if (fd < 0)
        return false;
    bool ok = WriteAll(fd, p, n) && ::fsync(fd) == 0;
    ok = (::close(fd) == 0) && ok;
    if (!ok || ::rename(tmpPath.c_str(), target.c_str()) != 0)
    {
        ::unlink(tmpPath.c_str());
        return false;
    }
    SyncDirectory(dir);
    return true;
}

// Frees the block that a CMemFile hands over.
struct FreeBlock
{
    BYTE* p;
    ~FreeBlock() { std::free(p); }
};
} // namespace

namespace plotvane
{
CString EnvironmentFilePath()
{
    TLUtility* pUtil = TLUtility::GetInstance();
    return pUtil->TLPathCombine(pUtil->GetDataPath(), "Chart.uis");
}
} // namespace plotvane

CGLPlotvane_Environment::CGLPlotvane_Environment()
{
    Init();
}

CGLPlotvane_Environment::CGLPlotvane_Environment(const CGLPlotvane_Environment& o)
{
    Init();
    *this = o;
}

CGLPlotvane_Environment::~CGLPlotvane_Environment() = default;

CGLPlotvane_Environment& CGLPlotvane_Environment::operator=(const CGLPlotvane_Environment& o)
{
    if (this == &o)
        return *this;
    m_nGridLine = o.m_nGridLine;
    m_nLineWidth = o.m_nLineWidth;
    m_nHighlightedLineWidth = o.m_nHighlightedLineWidth;
    m_nFontSizeLabel = o.m_nFontSizeLabel;
    m_nFontSizeValue = o.m_nFontSizeValue;
    m_nFontSizeMeasure = o.m_nFontSizeMeasure;
    m_nCurColorIndex = o.m_nCurColorIndex;
    m_arrColorSet = o.m_arrColorSet;
    return *this;
}

bool CGLPlotvane_Environment::operator==(const CGLPlotvane_Environment& o) const
{
    return m_nGridLine == o.m_nGridLine && m_nLineWidth == o.m_nLineWidth &&
           m_nHighlightedLineWidth == o.m_nHighlightedLineWidth &&
           m_nFontSizeLabel == o.m_nFontSizeLabel && m_nFontSizeValue == o.m_nFontSizeValue &&
           m_nFontSizeMeasure == o.m_nFontSizeMeasure && m_nCurColorIndex == o.m_nCurColorIndex &&
           m_arrColorSet == o.m_arrColorSet;
}

// Callers rely on it answering 1 for any two distinct objects.
bool CGLPlotvane_Environment::operator!=(const CGLPlotvane_Environment& o) const
{
    return this != &o;
}

void CGLPlotvane_Environment::Init()
{
    m_nGridLine = 0;
    m_nLineWidth = 1;
    m_nHighlightedLineWidth = 6;
    m_nFontSizeLabel = 12;
    m_nFontSizeValue = 12;
    m_nFontSizeMeasure = 20;
    m_nCurColorIndex = 0;
    m_arrColorSet.Add(MakeSet(kDarkPreset));
    m_arrColorSet.Add(MakeSet(kLightPreset));
}

int CGLPlotvane_Environment::AddColorSet(CDWordArray* pSet)
{
    CDWordArray* pCopy = new CDWordArray;
    if (pSet)
        pCopy->Copy(*pSet);
    return int(m_arrColorSet.Add(pCopy));
}

int CGLPlotvane_Environment::DeleteColorSet(int i)
{
    if (i < 0 || i >= GetColorSetCount())
        return 0;
    m_arrColorSet.DeleteAt(i);
    return 1;
}

void CGLPlotvane_Environment::SetColorSet(CDWordArray* pSet, int i)
{
    if (!pSet || i < 0 || i >= GetColorSetCount())
        return;
    CDWordArray*& pDest = m_arrColorSet.GetData()[i];
    if (!pDest)
        pDest = new CDWordArray;
    pDest->Copy(*pSet);
}

CDWordArray* CGLPlotvane_Environment::GetColorSet()
{
    return m_arrColorSet.GetAt(m_nCurColorIndex);
}

unsigned long CGLPlotvane_Environment::GetBackgroundColor()
{
    if (GetColorSetCount() < kPresetCount)
        Init();
    CDWordArray* pSet = GetColorSet();
    if (!pSet)
        AfxThrowInvalidArgException();
    return pSet->GetAt(0);
}

unsigned long CGLPlotvane_Environment::GetLabelColor()
{
    if (GetColorSetCount() < kPresetCount)
        Init();
    CDWordArray* pSet = GetColorSet();
    if (!pSet)
        AfxThrowInvalidArgException();
    return pSet->GetAt(1);
}

void CGLPlotvane_Environment::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar << int(nVersion) << m_nGridLine << m_nLineWidth << m_nHighlightedLineWidth
           << m_nFontSizeLabel << m_nFontSizeValue << m_nFontSizeMeasure << m_nCurColorIndex
           << GetColorSetCount();
        // The presets are built in and never written.
        for (INT_PTR i = kPresetCount; i < m_arrColorSet.GetSize(); ++i)
        {
            CDWordArray* pSet = m_arrColorSet.GetData()[i];
            if (pSet)
                pSet->Serialize(ar);
            else
                CDWordArray().Serialize(ar);
        }
        return;
    }
    int nFileVersion = 0;
    ar >> nFileVersion;
    if (nFileVersion < 1 || nFileVersion > 3)
        return;
    ar >> m_nGridLine >> m_nLineWidth >> m_nHighlightedLineWidth >> m_nFontSizeLabel >>
        m_nFontSizeValue;
    if (nFileVersion <= 2)
    {
        // Two settings that later versions dropped.
        int nDiscard = 0;
        ar >> nDiscard >> nDiscard;
    }
    if (nFileVersion >= 2)
        ar >> m_nFontSizeMeasure;
    if (nFileVersion == 3)
    {
        int nCount = 0;
        ar >> m_nCurColorIndex >> nCount;
        // Appended after what is held: a second load adds the sets again.
        for (int i = kPresetCount; i < nCount; ++i)
        {
            CDWordArray* pSet = new CDWordArray;
            m_arrColorSet.Add(pSet);
            pSet->Serialize(ar);
        }
    }
}

int CGLPlotvane_Environment::LoadEnvironmentFIle()
{
    CFile file;
    if (!file.Open(plotvane::EnvironmentFilePath(), CFile::modeRead))
        return 0;
    CArchive ar(&file, CArchive::load, 4096);
    Serialize(ar);
    ar.Close();
    return 1;
}

// The settings are written to memory first, so a failing write can only
// lose the new settings, never damage the file that is there.
int CGLPlotvane_Environment::SaveEnvironmentFIle()
{
    CMemFile mem;
    {
        CArchive ar(&mem, CArchive::store, 4096);
        Serialize(ar);
        ar.Close();
    }
    const size_t nLength = size_t(mem.GetLength());
    FreeBlock block{mem.Detach()};
    const std::string dir = TLUtility::GetInstance()->GetDataPath().str();
    const std::string target = plotvane::EnvironmentFilePath().str();
    return ReplaceFileAtomically(dir, target, block.p, nLength) ? 1 : 0;
}
