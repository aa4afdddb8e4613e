// CString: a byte string (UTF-8 text on Linux) with the MFC interface the
// component is written against. Format follows printf.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>

class CString
{
public:
    CString() = default;
    CString(const char* psz) : m_str(psz ? psz : "") {}
    CString(const char* pch, int nLength) : m_str(pch, nLength > 0 ? size_t(nLength) : 0) {}
    CString(char ch, int nRepeat = 1) : m_str(nRepeat > 0 ? size_t(nRepeat) : 0, ch) {}
    CString(const std::string& s) : m_str(s) {}
    CString(std::string&& s) : m_str(std::move(s)) {}

    int GetLength() const { return int(m_str.size()); }
    bool IsEmpty() const { return m_str.empty(); }
    void Empty() { m_str.clear(); }
    char GetAt(int i) const;
    void SetAt(int i, char ch);
    char operator[](int i) const { return GetAt(i); }
    const char* GetString() const { return m_str.c_str(); }
    operator const char*() const { return m_str.c_str(); }
    const std::string& str() const { return m_str; }

    CString& operator=(const char* psz)
    {
        m_str = psz ? psz : "";
        return *this;
    }
    CString& operator=(char ch)
    {
        m_str.assign(1, ch);
        return *this;
    }
    CString& operator+=(const CString& s)
    {
        m_str += s.m_str;
        return *this;
    }
    CString& operator+=(const char* psz)
    {
        if (psz)
            m_str += psz;
        return *this;
    }
    CString& operator+=(char ch)
    {
        m_str += ch;
        return *this;
    }

    int Compare(const char* psz) const;
    int CompareNoCase(const char* psz) const;

    int Find(char ch, int nStart = 0) const;
    int Find(const char* psz, int nStart = 0) const;
    int ReverseFind(char ch) const;
    int FindOneOf(const char* pszCharSet) const;

    CString Left(int nCount) const;
    CString Right(int nCount) const;
    CString Mid(int nFirst) const;
    CString Mid(int nFirst, int nCount) const;

    CString& MakeUpper();
    CString& MakeLower();
    CString& MakeReverse();
    CString& Trim();
    CString& Trim(const char* pszTargets);
    CString& TrimLeft();
    CString& TrimLeft(const char* pszTargets);
    CString& TrimRight();
    CString& TrimRight(const char* pszTargets);

    int Replace(char chOld, char chNew);
    int Replace(const char* pszOld, const char* pszNew);
    int Remove(char ch);
    int Insert(int nIndex, const char* psz);
    int Insert(int nIndex, char ch);
    int Delete(int nIndex, int nCount = 1);

    // Next token after position iStart, skipping leading delimiters; iStart is
    // -1 once the text is exhausted.
    CString Tokenize(const char* pszTokens, int& iStart) const;

    void Format(const char* pszFormat, ...) __attribute__((format(printf, 2, 3)));
    void AppendFormat(const char* pszFormat, ...) __attribute__((format(printf, 2, 3)));
    void FormatV(const char* pszFormat, va_list args);
    void AppendFormatV(const char* pszFormat, va_list args);

    friend bool operator==(const CString& a, const CString& b) { return a.m_str == b.m_str; }
    friend bool operator==(const CString& a, const char* b) { return a.m_str == (b ? b : ""); }
    friend bool operator==(const char* a, const CString& b) { return b == a; }
    friend bool operator!=(const CString& a, const CString& b) { return !(a == b); }
    friend bool operator!=(const CString& a, const char* b) { return !(a == b); }
    friend bool operator!=(const char* a, const CString& b) { return !(b == a); }
    friend bool operator<(const CString& a, const CString& b) { return a.m_str < b.m_str; }
    friend bool operator>(const CString& a, const CString& b) { return b.m_str < a.m_str; }
    friend bool operator<=(const CString& a, const CString& b) { return !(b < a); }
    friend bool operator>=(const CString& a, const CString& b) { return !(a < b); }

    friend CString operator+(const CString& a, const CString& b) { return CString(a.m_str + b.m_str); }
    friend CString operator+(const CString& a, const char* b) { return CString(a.m_str + (b ? b : "")); }
    friend CString operator+(const char* a, const CString& b) { return CString((a ? a : "") + b.m_str); }
    friend CString operator+(const CString& a, char b) { return CString(a.m_str + b); }
    friend CString operator+(char a, const CString& b) { return CString(a + b.m_str); }

private:
    std::string m_str;
};

using LPCTSTR = const char*;
using LPCSTR = const char*;
