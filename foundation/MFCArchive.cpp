#include <plotvane/foundation/MFCArchive.h>

#include <plotvane/foundation/Exceptions.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

CArchive::CArchive(CFile* pFile, UINT nMode, int nBufSize, void* lpBuf)
    : m_strFileName(pFile ? pFile->GetFilePath() : CString()), m_pFile(pFile), m_nMode(nMode)
{
    m_nBufSize = size_t(std::max(nBufSize, 128));
    if (lpBuf)
        m_pBufStart = static_cast<BYTE*>(lpBuf);
    else
    {
        m_ownBuffer.resize(m_nBufSize);
        m_pBufStart = m_ownBuffer.data();
    }
    m_pCur = m_pBufStart;
    // A storing archive fills up to the end; a loading one starts empty.
    m_pEnd = IsLoading() ? m_pBufStart : m_pBufStart + m_nBufSize;
}

CArchive::~CArchive()
{
    if (!m_bClosed && !(m_nMode & bNoFlushOnDelete))
    {
        try
        {
            Close();
        }
        catch (...)
        {
        }
    }
}

void CArchive::Close()
{
    if (m_bClosed)
        return;
    Flush();
    m_bClosed = true;
}

void CArchive::Abort()
{
    m_bClosed = true;
}

void CArchive::Flush()
{
    if (IsStoring() && m_pFile && m_pCur != m_pBufStart)
    {
        m_pFile->Write(m_pBufStart, UINT(m_pCur - m_pBufStart));
        m_pCur = m_pBufStart;
    }
    if (IsStoring() && m_pFile)
        m_pFile->Flush();
}

void CArchive::CheckStoring() const
{
    if (IsLoading())
        AfxThrowArchiveException(CArchiveException::readOnly, m_strFileName);
}

void CArchive::CheckLoading() const
{
    if (IsStoring())
        AfxThrowArchiveException(CArchiveException::writeOnly, m_strFileName);
}

void CArchive::ThrowEndOfFile() const
{
    AfxThrowArchiveException(CArchiveException::endOfFile, m_strFileName);
}

void CArchive::FillBuffer()
{
    m_pCur = m_pBufStart;
    m_pEnd = m_pBufStart + (m_pFile ? m_pFile->Read(m_pBufStart, UINT(m_nBufSize)) : 0);
}

UINT CArchive::Read(void* lpBuf, UINT nMax)
{
    CheckLoading();
    BYTE* out = static_cast<BYTE*>(lpBuf);
    size_t done = 0;
    while (done < nMax)
    {
        if (m_pCur == m_pEnd)
        {
            // Large reads bypass the buffer.
            if (nMax - done >= m_nBufSize && m_pFile)
            {
                done += m_pFile->Read(out + done, UINT(nMax - done));
                break;
            }
            FillBuffer();
            if (m_pCur == m_pEnd)
                break;
        }
        size_t n = std::min(size_t(m_pEnd - m_pCur), nMax - done);
        std::memcpy(out + done, m_pCur, n);
        m_pCur += n;
        done += n;
    }
    return UINT(done);
}

void CArchive::ReadExact(void* lpBuf, size_t nCount)
{
    BYTE* out = static_cast<BYTE*>(lpBuf);
    while (nCount > 0)
    {
        UINT chunk = UINT(std::min<size_t>(nCount, 1u << 30));
        if (Read(out, chunk) != chunk)
            ThrowEndOfFile();
        out += chunk;
        nCount -= chunk;
    }
}

void CArchive::Write(const void* lpBuf, UINT nMax)
{
    CheckStoring();
    const BYTE* in = static_cast<const BYTE*>(lpBuf);
    size_t left = nMax;
    while (left > 0)
    {
        if (m_pCur == m_pEnd)
        {
            Flush();
            if (left >= m_nBufSize && m_pFile)
            {
                m_pFile->Write(in, UINT(left));
                return;
            }
        }
        size_t n = std::min(size_t(m_pEnd - m_pCur), left);
        std::memcpy(m_pCur, in, n);
        m_pCur += n;
        in += n;
        left -= n;
    }
}

void CArchive::EnsureAvailable(ULONGLONG nCount, ULONGLONG nBytesEach)
{
    CheckLoading();
    if (!m_pFile || !m_pFile->HasKnownLength() || nCount == 0)
        return;
    ULONGLONG length = m_pFile->GetLength();
    ULONGLONG pos = m_pFile->GetPosition();
    ULONGLONG remaining = (length > pos ? length - pos : 0) + ULONGLONG(m_pEnd - m_pCur);
    if (nBytesEach != 0 && nCount > remaining / nBytesEach)
        ThrowEndOfFile();
}

void CArchive::WriteCount(ULONGLONG dwCount)
{
    if (dwCount < 0xFFFF)
    {
        *this << WORD(dwCount);
        return;
    }
    *this << WORD(0xFFFF);
    if (dwCount < 0xFFFFFFFFull)
    {
        *this << DWORD(dwCount);
        return;
    }
    *this << DWORD(0xFFFFFFFF) << ULONGLONG(dwCount);
}

ULONGLONG CArchive::ReadCount()
{
    WORD w;
    *this >> w;
    if (w != 0xFFFF)
        return w;
    DWORD dw;
    *this >> dw;
    if (dw != 0xFFFFFFFF)
        return dw;
    ULONGLONG q;
    *this >> q;
    return q;
}

CArchive& CArchive::operator<<(const CString& s)
{
    const ULONGLONG n = ULONGLONG(s.GetLength());
    if (n < 255)
        *this << BYTE(n);
    else
    {
        *this << BYTE(0xFF);
        if (n < 0xFFFE)
            *this << WORD(n);
        else
        {
            *this << WORD(0xFFFF);
            if (n < 0xFFFFFFFFull)
                *this << DWORD(n);
            else
                *this << DWORD(0xFFFFFFFF) << ULONGLONG(n);
        }
    }
    Write(s.GetString(), UINT(n));
    return *this;
}

// The prefix is one byte, or 0xFF and a word, or 0xFF, 0xFFFF and a dword,
// or 0xFF, 0xFFFF, 0xFFFFFFFF and a quad word. A word of 0xFFFE marks the
// wide form, after which the whole rule starts again.
ULONGLONG CArchive::ReadStringLength(bool& bWide)
{
    bWide = false;
    for (;;)
    {
        BYTE b;
        *this >> b;
        if (b < 0xFF)
            return b;
        WORD w;
        *this >> w;
        if (w == 0xFFFE)
        {
            bWide = true;
            continue;
        }
        if (w != 0xFFFF)
            return w;
        DWORD dw;
        *this >> dw;
        if (dw != 0xFFFFFFFF)
            return dw;
        ULONGLONG q;
        *this >> q;
        return q;
    }
}

namespace
{
void AppendUtf8(std::string& out, uint32_t cp)
{
    if (cp < 0x80)
        out += char(cp);
    else if (cp < 0x800)
    {
        out += char(0xC0 | (cp >> 6));
        out += char(0x80 | (cp & 0x3F));
    }
    else if (cp < 0x10000)
    {
        out += char(0xE0 | (cp >> 12));
        out += char(0x80 | ((cp >> 6) & 0x3F));
        out += char(0x80 | (cp & 0x3F));
    }
    else
    {
        out += char(0xF0 | (cp >> 18));
        out += char(0x80 | ((cp >> 12) & 0x3F));
        out += char(0x80 | ((cp >> 6) & 0x3F));
        out += char(0x80 | (cp & 0x3F));
    }
}

// UTF-16LE to UTF-8; an unpaired surrogate becomes U+FFFD.
std::string WideToUtf8(const std::vector<WORD>& units)
{
    std::string out;
    out.reserve(units.size());
    for (size_t i = 0; i < units.size(); ++i)
    {
        uint32_t u = units[i];
        if (u >= 0xD800 && u < 0xDC00 && i + 1 < units.size() && units[i + 1] >= 0xDC00 &&
            units[i + 1] < 0xE000)
        {
            u = 0x10000 + ((u - 0xD800) << 10) + (units[i + 1] - 0xDC00);
            ++i;
        }
        else if (u >= 0xD800 && u < 0xE000)
            u = 0xFFFD;
        AppendUtf8(out, u);
    }
    return out;
}
} // namespace

CArchive& CArchive::operator>>(CString& s)
{
    bool bWide = false;
    ULONGLONG n = ReadStringLength(bWide);
    const ULONGLONG nBytesEach = bWide ? 2 : 1;
    EnsureAvailable(n, nBytesEach);
    // Read in slices so that a stream of unknown length with a bogus prefix
    // runs out of data long before memory.
    std::string bytes;
    ULONGLONG left = n * nBytesEach;
    if (n > std::numeric_limits<ULONGLONG>::max() / nBytesEach)
        ThrowEndOfFile();
    constexpr size_t kSlice = size_t(1) << 20;
    while (left > 0)
    {
        size_t chunk = size_t(std::min<ULONGLONG>(left, kSlice));
        size_t at = bytes.size();
        bytes.resize(at + chunk);
        ReadExact(&bytes[at], chunk);
        left -= chunk;
    }
    if (bWide)
    {
        std::vector<WORD> units(bytes.size() / 2);
        if (!units.empty())
            std::memcpy(units.data(), bytes.data(), units.size() * 2);
        s = CString(WideToUtf8(units));
    }
    else
        s = CString(std::move(bytes));
    return *this;
}
