#include <plotvane/foundation/MFCFile.h>

#include <plotvane/foundation/Exceptions.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
int CauseFromErrno(int err)
{
    switch (err)
    {
    case ENOENT:
        return CFileException::fileNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
        return CFileException::accessDenied;
    case ENOTDIR:
    case ENAMETOOLONG:
        return CFileException::badPath;
    default:
        return CFileException::genericException;
    }
}
} // namespace

CFile::CFile(const char* pszFileName, UINT nOpenFlags)
{
    CFileException error;
    if (!Open(pszFileName, nOpenFlags, &error))
        throw error;
}

CFile::~CFile()
{
    if (m_hFile >= 0)
        ::close(m_hFile);
}

BOOL CFile::Open(const char* pszFileName, UINT nOpenFlags, CFileException* pError)
{
    if (m_hFile >= 0)
        Close();
    m_strFileName = pszFileName ? pszFileName : "";
    int flags = O_CLOEXEC;
    switch (nOpenFlags & 3)
    {
    case modeWrite:
        flags |= O_WRONLY;
        break;
    case modeReadWrite:
        flags |= O_RDWR;
        break;
    default:
        flags |= O_RDONLY;
        break;
    }
    if (nOpenFlags & modeCreate)
    {
        flags |= O_CREAT;
        if (!(nOpenFlags & modeNoTruncate))
            flags |= O_TRUNC;
    }
    m_hFile = ::open(m_strFileName.GetString(), flags, 0644);
    if (m_hFile < 0)
    {
        if (pError)
            *pError = CFileException(CauseFromErrno(errno), m_strFileName, errno);
        return FALSE;
    }
    return TRUE;
}

void CFile::Close()
{
    if (m_hFile >= 0)
    {
        int rc = ::close(m_hFile);
        m_hFile = -1;
        if (rc != 0)
            AfxThrowFileException(CauseFromErrno(errno), errno, m_strFileName);
    }
}

void CFile::Abort()
{
    if (m_hFile >= 0)
        ::close(m_hFile);
    m_hFile = -1;
}

UINT CFile::Read(void* lpBuf, UINT nCount)
{
    size_t done = 0;
    while (done < nCount)
    {
        ssize_t n = ::read(m_hFile, static_cast<char*>(lpBuf) + done, nCount - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            AfxThrowFileException(CauseFromErrno(errno), errno, m_strFileName);
        if (n == 0)
            break;
        done += size_t(n);
    }
    return UINT(done);
}

void CFile::Write(const void* lpBuf, UINT nCount)
{
    size_t done = 0;
    while (done < nCount)
    {
        ssize_t n = ::write(m_hFile, static_cast<const char*>(lpBuf) + done, nCount - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            AfxThrowFileException(CauseFromErrno(errno), errno, m_strFileName);
        done += size_t(n);
    }
}

ULONGLONG CFile::Seek(LONGLONG lOff, UINT nFrom)
{
    int whence = nFrom == end ? SEEK_END : (nFrom == current ? SEEK_CUR : SEEK_SET);
    off_t r = ::lseek(m_hFile, off_t(lOff), whence);
    if (r < 0)
        AfxThrowFileException(CauseFromErrno(errno), errno, m_strFileName);
    return ULONGLONG(r);
}

ULONGLONG CFile::GetLength() const
{
    struct stat st;
    if (m_hFile < 0 || ::fstat(m_hFile, &st) != 0)
        return 0;
    return ULONGLONG(st.st_size);
}

ULONGLONG CFile::GetPosition() const
{
    off_t r = m_hFile < 0 ? -1 : ::lseek(m_hFile, 0, SEEK_CUR);
    return r < 0 ? 0 : ULONGLONG(r);
}

bool CFile::HasKnownLength() const
{
    struct stat st;
    return m_hFile >= 0 && ::fstat(m_hFile, &st) == 0 && S_ISREG(st.st_mode);
}

CString CFile::GetFileName() const
{
    int slash = m_strFileName.ReverseFind('/');
    return slash < 0 ? m_strFileName : m_strFileName.Mid(slash + 1);
}

CMemFile::CMemFile(UINT nGrowBytes) : m_nGrowBytes(nGrowBytes) {}

CMemFile::CMemFile(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes) : m_nGrowBytes(nGrowBytes)
{
    Attach(lpBuffer, nBufferSize, nGrowBytes);
}

CMemFile::~CMemFile()
{
    Close();
}

void CMemFile::Attach(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes)
{
    Close();
    m_lpBuffer = lpBuffer;
    m_nBufferSize = nBufferSize;
    m_nGrowBytes = nGrowBytes;
    m_nFileSize = nGrowBytes == 0 ? nBufferSize : 0;
    m_nPosition = 0;
    m_bAutoDelete = false;
}

BYTE* CMemFile::Detach()
{
    BYTE* p = m_lpBuffer;
    m_lpBuffer = nullptr;
    m_nBufferSize = m_nFileSize = m_nPosition = 0;
    m_bAutoDelete = true;
    return p;
}

void CMemFile::Close()
{
    if (m_bAutoDelete)
        std::free(m_lpBuffer);
    m_lpBuffer = nullptr;
    m_nBufferSize = m_nFileSize = m_nPosition = 0;
    m_bAutoDelete = true;
}

UINT CMemFile::Read(void* lpBuf, UINT nCount)
{
    if (m_nPosition >= m_nFileSize)
        return 0;
    size_t n = std::min<size_t>(nCount, m_nFileSize - m_nPosition);
    std::memcpy(lpBuf, m_lpBuffer + m_nPosition, n);
    m_nPosition += n;
    return UINT(n);
}

void CMemFile::Write(const void* lpBuf, UINT nCount)
{
    if (nCount == 0)
        return;
    size_t need = m_nPosition + nCount;
    if (need > m_nBufferSize)
        GrowTo(need);
    std::memcpy(m_lpBuffer + m_nPosition, lpBuf, nCount);
    m_nPosition = need;
    m_nFileSize = std::max(m_nFileSize, m_nPosition);
}

void CMemFile::GrowTo(size_t nNewSize)
{
    if (m_nGrowBytes == 0)
        AfxThrowFileException(CFileException::genericException, ENOSPC, m_strFileName);
    // Geometric growth keeps a long series of small writes linear.
    size_t cap = std::max<size_t>(m_nBufferSize + m_nBufferSize / 2, nNewSize);
    cap = (cap + m_nGrowBytes - 1) / m_nGrowBytes * m_nGrowBytes;
    BYTE* p = static_cast<BYTE*>(std::realloc(m_lpBuffer, cap));
    if (!p)
        throw std::bad_alloc();
    m_lpBuffer = p;
    m_nBufferSize = cap;
}

ULONGLONG CMemFile::Seek(LONGLONG lOff, UINT nFrom)
{
    LONGLONG base = nFrom == end ? LONGLONG(m_nFileSize) : (nFrom == current ? LONGLONG(m_nPosition) : 0);
    LONGLONG pos = base + lOff;
    if (pos < 0)
        AfxThrowFileException(CFileException::badPath, EINVAL, m_strFileName);
    m_nPosition = size_t(pos);
    return ULONGLONG(pos);
}

void CMemFile::SetLength(ULONGLONG nNewLen)
{
    if (nNewLen > m_nBufferSize)
        GrowTo(size_t(nNewLen));
    if (nNewLen > m_nFileSize)
        std::memset(m_lpBuffer + m_nFileSize, 0, size_t(nNewLen) - m_nFileSize);
    m_nFileSize = size_t(nNewLen);
    m_nPosition = std::min(m_nPosition, m_nFileSize);
}
