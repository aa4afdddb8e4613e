// String helpers: numeric conversions, string arrays, a tokenizer and a
// sorter for list columns.
#pragma once

#include <plotvane/foundation/MFCArray.h>
#include <plotvane/foundation/MFCString.h>

class CStringEx : public CString
{
public:
    CStringEx() = default;
    CStringEx(const CString& s) : CString(s) {}
    CStringEx(const char* psz) : CString(psz) {}
    CStringEx& operator=(const CString& s)
    {
        CString::operator=(s);
        return *this;
    }
    CStringEx& operator=(const char* psz)
    {
        CString::operator=(psz);
        return *this;
    }
    // atof and atoi: leading blanks skipped, trailing text ignored, 0 when
    // nothing numeric leads.
    double ToDouble() const;
    int ToInteger() const;
    explicit operator int() const { return ToInteger(); }
    explicit operator unsigned long() const;
    explicit operator float() const { return float(ToDouble()); }
    explicit operator double() const { return ToDouble(); }
};

class CStringExArray : public CArray<CStringEx, const CStringEx&>
{
public:
    bool bStringInArray(const CString& s) const;
};

class CTokenizer
{
public:
    // Splits text at any of the delimiter characters into out (emptied
    // first); runs of delimiters give no empty tokens.
    static void GetTokenArray(CStringArray& out, const CString& text, const CString& delimiters);
};

// Orders strings for list columns: numbers by value when both are numeric,
// otherwise text without regard to case.
class CStringSorter
{
public:
    explicit CStringSorter(bool bAscending = true) : m_bAscending(bAscending) {}
    int Compare(const CString& a, const CString& b) const;
    void Sort(CStringArray& arr) const;
    bool IsAscending() const { return m_bAscending; }
    void SetAscending(bool b) { m_bAscending = b; }

private:
    bool m_bAscending;
};
