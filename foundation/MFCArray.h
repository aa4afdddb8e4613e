// CArray and the plain MFC arrays. Indexed access out of range raises
// CInvalidArgException, as the framework does.
#pragma once

#include <plotvane/foundation/Exceptions.h>
#include <plotvane/foundation/MFCArchive.h>
#include <plotvane/foundation/MFCObject.h>
#include <plotvane/foundation/Types.h>

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <vector>

// How CArray::Serialize writes its elements: raw little-endian values for the
// arithmetic types, each element's own Serialize otherwise.
template <class TYPE> void SerializeElements(CArchive& ar, TYPE* pElements, INT_PTR nCount)
{
    if constexpr (std::is_arithmetic_v<TYPE>)
    {
        if (nCount <= 0)
            return;
        if (ar.IsStoring())
            ar.Write(pElements, UINT(size_t(nCount) * sizeof(TYPE)));
        else
            ar.ReadExact(pElements, size_t(nCount) * sizeof(TYPE));
    }
    else
    {
        for (INT_PTR i = 0; i < nCount; ++i)
            pElements[i].Serialize(ar);
    }
}

template <class TYPE> constexpr ULONGLONG SerializedElementMinBytes()
{
    if constexpr (std::is_arithmetic_v<TYPE>)
        return sizeof(TYPE);
    else
        return 1;
}

template <class TYPE, class ARG_TYPE = const TYPE&> class CArray : public CObject
{
public:
    CArray() = default;
    CArray(const CArray& other) : CObject(), m_data(other.m_data), m_nGrowBy(other.m_nGrowBy) {}
    CArray& operator=(const CArray& other)
    {
        if (this != &other)
            m_data = other.m_data;
        return *this;
    }
    ~CArray() override = default;

    INT_PTR GetSize() const { return INT_PTR(m_data.size()); }
    INT_PTR GetCount() const { return INT_PTR(m_data.size()); }
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    bool IsEmpty() const { return m_data.empty(); }

    void SetSize(INT_PTR nNewSize, INT_PTR nGrowBy = -1)
    {
        if (nNewSize < 0)
            AfxThrowInvalidArgException();
        if (nGrowBy >= 0)
            m_nGrowBy = nGrowBy;
        if (size_t(nNewSize) > m_data.capacity() && m_nGrowBy > 0)
            m_data.reserve(std::max(size_t(nNewSize), m_data.capacity() + size_t(m_nGrowBy)));
        m_data.resize(size_t(nNewSize));
    }
    void FreeExtra() { m_data.shrink_to_fit(); }
    void RemoveAll() { m_data.clear(); }

    const TYPE& GetAt(INT_PTR i) const { return m_data[CheckIndex(i)]; }
    TYPE& GetAt(INT_PTR i) { return m_data[CheckIndex(i)]; }
    void SetAt(INT_PTR i, ARG_TYPE v) { m_data[CheckIndex(i)] = v; }
    TYPE& ElementAt(INT_PTR i) { return m_data[CheckIndex(i)]; }
    const TYPE& ElementAt(INT_PTR i) const { return m_data[CheckIndex(i)]; }
    const TYPE& operator[](INT_PTR i) const { return m_data[CheckIndex(i)]; }
    TYPE& operator[](INT_PTR i) { return m_data[CheckIndex(i)]; }
    const TYPE* GetData() const { return m_data.data(); }
    TYPE* GetData() { return m_data.data(); }

    void SetAtGrow(INT_PTR i, ARG_TYPE v)
    {
        if (i < 0)
            AfxThrowInvalidArgException();
        if (size_t(i) >= m_data.size())
            m_data.resize(size_t(i) + 1);
        m_data[size_t(i)] = v;
    }
    INT_PTR Add(ARG_TYPE v)
    {
        m_data.push_back(v);
        return GetSize() - 1;
    }
    INT_PTR Append(const CArray& src)
    {
        INT_PTR old = GetSize();
        if (this == &src)
        {
            std::vector<TYPE> copy(src.m_data);
            m_data.insert(m_data.end(), copy.begin(), copy.end());
        }
        else
            m_data.insert(m_data.end(), src.m_data.begin(), src.m_data.end());
        return old;
    }
    void Copy(const CArray& src)
    {
        if (this != &src)
            m_data = src.m_data;
    }
    // An index past the end grows the array, as in the framework.
    void InsertAt(INT_PTR i, ARG_TYPE v, INT_PTR nCount = 1)
    {
        if (i < 0 || nCount < 0)
            AfxThrowInvalidArgException();
        if (nCount == 0)
            return;
        TYPE copy(v);
        if (size_t(i) >= m_data.size())
        {
            m_data.resize(size_t(i));
            m_data.insert(m_data.end(), size_t(nCount), copy);
        }
        else
            m_data.insert(m_data.begin() + i, size_t(nCount), copy);
    }
    void InsertAt(INT_PTR nStartIndex, const CArray* pNewArray)
    {
        if (!pNewArray || nStartIndex < 0)
            AfxThrowInvalidArgException();
        std::vector<TYPE> copy(pNewArray->m_data);
        if (size_t(nStartIndex) > m_data.size())
            m_data.resize(size_t(nStartIndex));
        m_data.insert(m_data.begin() + nStartIndex, copy.begin(), copy.end());
    }
    void RemoveAt(INT_PTR i, INT_PTR nCount = 1)
    {
        if (i < 0 || nCount < 0 || size_t(i) + size_t(nCount) > m_data.size())
            AfxThrowInvalidArgException();
        m_data.erase(m_data.begin() + i, m_data.begin() + i + nCount);
    }

    void Serialize(CArchive& ar) override
    {
        // Pointers have no archive form of their own; the owning arrays
        // write their elements as records.
        if constexpr (std::is_pointer_v<TYPE>)
            AfxThrowArchiveException(CArchiveException::badClass, ar.m_strFileName);
        else if (ar.IsStoring())
        {
            ar.WriteCount(ULONGLONG(m_data.size()));
            SerializeElements<TYPE>(ar, m_data.data(), GetSize());
        }
        else
        {
            ULONGLONG n = ar.ReadCount();
            ar.EnsureAvailable(n, SerializedElementMinBytes<TYPE>());
            m_data.clear();
            m_data.resize(size_t(n));
            SerializeElements<TYPE>(ar, m_data.data(), GetSize());
        }
    }

    // Range-for over the elements.
    auto begin() { return m_data.begin(); }
    auto end() { return m_data.end(); }
    auto begin() const { return m_data.begin(); }
    auto end() const { return m_data.end(); }

protected:
    size_t CheckIndex(INT_PTR i) const
    {
        if (i < 0 || size_t(i) >= m_data.size())
            AfxThrowInvalidArgException();
        return size_t(i);
    }
    // Storage for the derived arrays that walk elements without a check.
    std::vector<TYPE>& Storage() { return m_data; }
    const std::vector<TYPE>& Storage() const { return m_data; }

private:
    std::vector<TYPE> m_data;
    INT_PTR m_nGrowBy = 0;
};

// Strings are serialised with their own length prefixes.
template <> inline void SerializeElements<CString>(CArchive& ar, CString* p, INT_PTR n)
{
    for (INT_PTR i = 0; i < n; ++i)
    {
        if (ar.IsStoring())
            ar << p[i];
        else
            ar >> p[i];
    }
}

class CDWordArray : public CArray<DWORD, DWORD>
{
public:
    const char* GetRuntimeClassName() const override { return "CDWordArray"; }
};

class CStringArray : public CArray<CString, const CString&>
{
public:
    const char* GetRuntimeClassName() const override { return "CStringArray"; }
};
