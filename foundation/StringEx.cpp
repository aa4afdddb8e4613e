#include <plotvane/foundation/StringEx.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

double CStringEx::ToDouble() const
{
    return std::atof(GetString());
}

int CStringEx::ToInteger() const
{
    return std::atoi(GetString());
}

CStringEx::operator unsigned long() const
{
    return std::strtoul(GetString(), nullptr, 10);
}

bool CStringExArray::bStringInArray(const CString& s) const
{
    return std::find(begin(), end(), s) != end();
}

void CTokenizer::GetTokenArray(CStringArray& out, const CString& text, const CString& delimiters)
{
    out.RemoveAll();
    const std::string& t = text.str();
    const char* delims = delimiters.GetString();
    size_t from = t.find_first_not_of(delims);
    while (from != std::string::npos)
    {
        size_t to = t.find_first_of(delims, from);
        out.Add(CString(t.substr(from, to == std::string::npos ? std::string::npos : to - from)));
        from = to == std::string::npos ? to : t.find_first_not_of(delims, to);
    }
}

namespace
{
bool ParseWholeNumber(const CString& s, double& v)
{
    const char* p = s.GetString();
    char* end = nullptr;
    v = std::strtod(p, &end);
    if (end == p)
        return false;
    while (*end == ' ' || *end == '\t')
        ++end;
    return *end == '\0';
}
} // namespace

int CStringSorter::Compare(const CString& a, const CString& b) const
{
    double va = 0.0, vb = 0.0;
    int r;
    if (ParseWholeNumber(a, va) && ParseWholeNumber(b, vb))
        r = va < vb ? -1 : (va > vb ? 1 : 0);
    else
        r = a.CompareNoCase(b);
    return m_bAscending ? r : -r;
}

void CStringSorter::Sort(CStringArray& arr) const
{
    std::stable_sort(arr.begin(), arr.end(),
                     [this](const CString& a, const CString& b) { return Compare(a, b) < 0; });
}
