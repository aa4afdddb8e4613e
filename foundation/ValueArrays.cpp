#include <plotvane/foundation/ValueArrays.h>

#include <plotvane/foundation/ArrayRecord.h>

#include <algorithm>

namespace
{
template <class A> bool SameElements(const A& a, const A& b)
{
    return a.GetSize() == b.GetSize() && std::equal(a.begin(), a.end(), b.begin());
}
} // namespace

bool CArrayD::operator==(const CArrayD& o) const
{
    return SameElements(*this, o);
}

bool CArrayN::operator==(const CArrayN& o) const
{
    return SameElements(*this, o);
}

bool CArrayN::IsExist(int v) const
{
    return std::find(begin(), end(), v) != end();
}

bool CArrayN::AddNotDuplication(int v)
{
    if (IsExist(v))
        return false;
    Add(v);
    return true;
}

bool CArrayPointN::operator==(const CArrayPointN& o) const
{
    return SameElements(*this, o);
}

bool CArrayPointN_Array::operator==(const CArrayPointN_Array& o) const
{
    return SameElements(*this, o);
}

bool CArrayArrayD::operator==(const CArrayArrayD& o) const
{
    return SameElements(*this, o);
}

bool CArrayArrayN::operator==(const CArrayArrayN& o) const
{
    return SameElements(*this, o);
}

bool CDWordArrayArrayArray::operator==(const CDWordArrayArrayArray& o) const
{
    return SameElements(*this, o);
}

bool operator==(const CDWordArray& a, const CDWordArray& b)
{
    return SameElements(a, b);
}

void CDWordArraySet::Serialize(CArchive& ar)
{
    // Each element is at least its 2-byte count.
    plotvane::SerializeRecordArray<CDWordArray>(ar, *this, nVersion, 2);
}
