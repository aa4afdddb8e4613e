#include <plotvane/foundation/MFCString.h>

#include <plotvane/foundation/Exceptions.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <strings.h>

namespace
{
const char* const kWhitespace = " \t\r\n\v\f";
}

char CString::GetAt(int i) const
{
    if (i < 0 || i >= GetLength())
        AfxThrowInvalidArgException();
    return m_str[size_t(i)];
}

void CString::SetAt(int i, char ch)
{
    if (i < 0 || i >= GetLength())
        AfxThrowInvalidArgException();
    m_str[size_t(i)] = ch;
}

int CString::Compare(const char* psz) const
{
    int r = std::strcmp(m_str.c_str(), psz ? psz : "");
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

int CString::CompareNoCase(const char* psz) const
{
    int r = strcasecmp(m_str.c_str(), psz ? psz : "");
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

int CString::Find(char ch, int nStart) const
{
    if (nStart < 0 || nStart > GetLength())
        return -1;
    size_t p = m_str.find(ch, size_t(nStart));
    return p == std::string::npos ? -1 : int(p);
}

int CString::Find(const char* psz, int nStart) const
{
    if (!psz || nStart < 0 || nStart > GetLength())
        return -1;
    size_t p = m_str.find(psz, size_t(nStart));
    return p == std::string::npos ? -1 : int(p);
}

int CString::ReverseFind(char ch) const
{
    size_t p = m_str.rfind(ch);
    return p == std::string::npos ? -1 : int(p);
}

int CString::FindOneOf(const char* pszCharSet) const
{
    size_t p = m_str.find_first_of(pszCharSet ? pszCharSet : "");
    return p == std::string::npos ? -1 : int(p);
}

CString CString::Left(int nCount) const
{
    nCount = std::clamp(nCount, 0, GetLength());
    return CString(m_str.substr(0, size_t(nCount)));
}

CString CString::Right(int nCount) const
{
    nCount = std::clamp(nCount, 0, GetLength());
    return CString(m_str.substr(m_str.size() - size_t(nCount)));
}

CString CString::Mid(int nFirst) const
{
    return Mid(nFirst, GetLength());
}

CString CString::Mid(int nFirst, int nCount) const
{
    nFirst = std::clamp(nFirst, 0, GetLength());
    nCount = std::clamp(nCount, 0, GetLength() - nFirst);
    return CString(m_str.substr(size_t(nFirst), size_t(nCount)));
}

CString& CString::MakeUpper()
{
    for (char& c : m_str)
        c = char(std::toupper((unsigned char)c));
    return *this;
}

CString& CString::MakeLower()
{
    for (char& c : m_str)
        c = char(std::tolower((unsigned char)c));
    return *this;
}

CString& CString::MakeReverse()
{
    std::reverse(m_str.begin(), m_str.end());
    return *this;
}

CString& CString::Trim()
{
    return TrimRight().TrimLeft();
}

CString& CString::Trim(const char* pszTargets)
{
    return TrimRight(pszTargets).TrimLeft(pszTargets);
}

CString& CString::TrimLeft()
{
    return TrimLeft(kWhitespace);
}

CString& CString::TrimLeft(const char* pszTargets)
{
    size_t p = m_str.find_first_not_of(pszTargets ? pszTargets : "");
    m_str.erase(0, p == std::string::npos ? m_str.size() : p);
    return *this;
}

CString& CString::TrimRight()
{
    return TrimRight(kWhitespace);
}

CString& CString::TrimRight(const char* pszTargets)
{
    size_t p = m_str.find_last_not_of(pszTargets ? pszTargets : "");
    m_str.erase(p == std::string::npos ? 0 : p + 1);
    return *this;
}

int CString::Replace(char chOld, char chNew)
{
    int n = 0;
    for (char& c : m_str)
        if (c == chOld)
        {
            c = chNew;
            ++n;
        }
    return n;
}

int CString::Replace(const char* pszOld, const char* pszNew)
{
    if (!pszOld || !*pszOld)
        return 0;
    const std::string from(pszOld), to(pszNew ? pszNew : "");
    int n = 0;
    for (size_t p = m_str.find(from); p != std::string::npos; p = m_str.find(from, p + to.size()))
    {
        m_str.replace(p, from.size(), to);
        ++n;
    }
    return n;
}

int CString::Remove(char ch)
{
    size_t before = m_str.size();
    m_str.erase(std::remove(m_str.begin(), m_str.end(), ch), m_str.end());
    return int(before - m_str.size());
}

int CString::Insert(int nIndex, const char* psz)
{
    nIndex = std::clamp(nIndex, 0, GetLength());
    m_str.insert(size_t(nIndex), psz ? psz : "");
    return GetLength();
}

int CString::Insert(int nIndex, char ch)
{
    nIndex = std::clamp(nIndex, 0, GetLength());
    m_str.insert(size_t(nIndex), 1, ch);
    return GetLength();
}

int CString::Delete(int nIndex, int nCount)
{
    nIndex = std::max(nIndex, 0);
    if (nCount > 0 && nIndex < GetLength())
        m_str.erase(size_t(nIndex), size_t(nCount));
    return GetLength();
}

CString CString::Tokenize(const char* pszTokens, int& iStart) const
{
    if (iStart < 0 || iStart >= GetLength())
    {
        iStart = -1;
        return CString();
    }
    const char* tokens = pszTokens ? pszTokens : "";
    size_t from = m_str.find_first_not_of(tokens, size_t(iStart));
    if (from == std::string::npos)
    {
        iStart = -1;
        return CString();
    }
    size_t to = m_str.find_first_of(tokens, from);
    if (to == std::string::npos)
        to = m_str.size();
    iStart = int(to) + 1;
    return CString(m_str.substr(from, to - from));
}

void CString::Format(const char* pszFormat, ...)
{
    va_list args;
    va_start(args, pszFormat);
    FormatV(pszFormat, args);
    va_end(args);
}

void CString::AppendFormat(const char* pszFormat, ...)
{
    va_list args;
    va_start(args, pszFormat);
    AppendFormatV(pszFormat, args);
    va_end(args);
}

void CString::FormatV(const char* pszFormat, va_list args)
{
    m_str.clear();
    AppendFormatV(pszFormat, args);
}

void CString::AppendFormatV(const char* pszFormat, va_list args)
{
    char small[256];
    va_list copy;
    va_copy(copy, args);
    int n = std::vsnprintf(small, sizeof small, pszFormat, copy);
    va_end(copy);
    if (n < 0)
        return;
    if (size_t(n) < sizeof small)
    {
        m_str.append(small, size_t(n));
        return;
    }
    std::string big(size_t(n) + 1, '\0');
    std::vsnprintf(&big[0], big.size(), pszFormat, args);
    big.resize(size_t(n));
    m_str += big;
}
