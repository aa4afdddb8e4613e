#include <plotvane/foundation/NSet.h>

#include <plotvane/foundation/ArrayRecord.h>

#include <algorithm>

int CNSet::Add(int v)
{
    if (IsExist(v))
        return 0;
    CArray<int, int>::Add(v);
    return 1;
}

int CNSet::Add(const CNSet& s)
{
    for (int v : s)
        Add(v);
    return 1;
}

bool CNSet::IsExist(int v) const
{
    return std::find(begin(), end(), v) != end();
}

int CNSet::GetMaxVal() const
{
    int best = INT_MIN;
    for (int v : *this)
        best = std::max(best, v);
    return best;
}

int CNSet::GetMinVal() const
{
    int best = INT_MAX;
    for (int v : *this)
        best = std::min(best, v);
    return best;
}

void CNSet::Sorting()
{
    std::sort(begin(), end());
}

void CNSet::IntersectionWith(const CNSet& s, CNSet& out) const
{
    for (int v : s)
        if (IsExist(v))
            out.Add(v);
}

bool CNSet::IsIntersectionExist(const CNSet& s) const
{
    for (int v : s)
        if (IsExist(v))
            return true;
    return false;
}

bool CNSet::operator==(const CNSet& o) const
{
    return GetSize() == o.GetSize() && std::equal(begin(), end(), o.begin());
}

CNSetArray::CNSetArray(const CNSetArray& o) : CExPtrArray<CNSet*, CNSet*>()
{
    *this = o;
}

CNSetArray& CNSetArray::operator=(const CNSetArray& o)
{
    if (this == &o)
        return *this;
    DeleteAll();
    for (CNSet* p : o)
        Add(p ? new CNSet(*p) : nullptr);
    return *this;
}

void CNSetArray::Serialize(CArchive& ar)
{
    // Each element is at least its 2-byte count.
    plotvane::SerializeRecordArray<CNSet>(ar, *this, nVersion, 2);
}

int CDWSet::Add(unsigned long v)
{
    if (IsExist(v))
        return 0;
    CDWordArray::Add(DWORD(v));
    return 1;
}

bool CDWSet::IsExist(unsigned long v) const
{
    return std::find(begin(), end(), DWORD(v)) != end();
}
