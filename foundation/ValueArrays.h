// The named array classes of the component: plain arrays of values, and
// owning pointer arrays that copy deeply and delete what they hold.
#pragma once

#include <plotvane/foundation/ExPtrArray.h>
#include <plotvane/foundation/ValueTypes.h>

class CArrayD : public CArray<double, double>
{
public:
    // Exact comparison: a NaN element makes the arrays unequal, even to
    // themselves.
    bool operator==(const CArrayD& o) const;
    bool operator!=(const CArrayD& o) const { return !(*this == o); }
};

class CArrayN : public CArray<int, int>
{
public:
    bool operator==(const CArrayN& o) const;
    bool operator!=(const CArrayN& o) const { return !(*this == o); }
    bool IsExist(int v) const;
    // Adds v only when it is not present yet; answers whether it added.
    bool AddNotDuplication(int v);
};

class CArrayPointD : public CArray<CPointD, CPointD&>
{
};

class CArrayPointN : public CArray<CPointN, CPointN&>
{
public:
    bool operator==(const CArrayPointN& o) const;
    bool operator!=(const CArrayPointN& o) const { return !(*this == o); }
};

class CArrayPointN_Array : public CArray<CArrayPointN, CArrayPointN&>
{
public:
    bool operator==(const CArrayPointN_Array& o) const;
};

class CArrayArrayD : public CArray<CArrayD, CArrayD&>
{
public:
    bool operator==(const CArrayArrayD& o) const;
    bool operator!=(const CArrayArrayD& o) const { return !(*this == o); }
};

class CArrayArrayN : public CArray<CArrayN, CArrayN&>
{
public:
    bool operator==(const CArrayArrayN& o) const;
    bool operator!=(const CArrayArrayN& o) const { return !(*this == o); }
};

class CArrayArrayPointD : public CArray<CArrayPointD, CArrayPointD&>
{
};

class CArrayRectF : public CArray<CRectF, CRectF&>
{
};

// An owning array of T*: copies clone each element, the destructor deletes.
template <class T> class COwningPtrArray : public CExPtrArray<T*, T*>
{
public:
    COwningPtrArray() = default;
    COwningPtrArray(const COwningPtrArray& o) : CExPtrArray<T*, T*>() { CopyFrom(o); }
    COwningPtrArray& operator=(const COwningPtrArray& o)
    {
        if (this != &o)
        {
            this->DeleteAll();
            CopyFrom(o);
        }
        return *this;
    }
    ~COwningPtrArray() override { this->DeleteAll(); }
    // Same size and equal elements in order; a null equals only a null.
    bool operator==(const COwningPtrArray& o) const
    {
        if (this == &o)
            return true;
        if (this->GetSize() != o.GetSize())
            return false;
        for (INT_PTR i = 0; i < this->GetSize(); ++i)
        {
            T* a = this->GetData()[i];
            T* b = o.GetData()[i];
            if ((a == nullptr) != (b == nullptr) || (a && *a != *b))
                return false;
        }
        return true;
    }
    bool operator!=(const COwningPtrArray& o) const { return !(*this == o); }

private:
    void CopyFrom(const COwningPtrArray& o)
    {
        for (T* p : o)
            this->Add(p ? new T(*p) : nullptr);
    }
};

class CArrayRectD : public COwningPtrArray<CRectD>
{
};

class CArrayPoint3D : public COwningPtrArray<CPoint3D>
{
};

class CDWordArrayArray : public COwningPtrArray<CDWordArray>
{
};

class CDWordArraySet : public CDWordArrayArray
{
public:
    bool operator==(const CDWordArraySet& o) const
    {
        return this == &o || CDWordArrayArray::operator==(o);
    }
    bool operator!=(const CDWordArraySet& o) const { return !(*this == o); }
    void Serialize(CArchive& ar) override;
    static constexpr int nVersion = 1;
};

class CDWordArrayArrayArray : public CArray<CDWordArrayArray, CDWordArrayArray&>
{
public:
    bool operator==(const CDWordArrayArrayArray& o) const;
    bool operator!=(const CDWordArrayArrayArray& o) const { return !(*this == o); }
};

// Element equality for the plain DWORD array, used by the owning arrays.
bool operator==(const CDWordArray& a, const CDWordArray& b);
inline bool operator!=(const CDWordArray& a, const CDWordArray& b) { return !(a == b); }
