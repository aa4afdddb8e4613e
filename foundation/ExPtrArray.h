// CExPtrArray: a CArray of pointers with ownership operations. It never
// deletes on its own: RemoveAll, RemoveAt, SetSize and the destructor drop
// pointers and leave the objects alive; an owner calls DeleteAll.
#pragma once

#include <plotvane/foundation/MFCArray.h>

#include <unordered_set>

template <class TYPE, class ARG_TYPE = TYPE> class CExPtrArray : public CArray<TYPE, ARG_TYPE>
{
    using Base = CArray<TYPE, ARG_TYPE>;

public:
    CExPtrArray() = default;
    CExPtrArray(const CExPtrArray&) = default;
    CExPtrArray& operator=(const CExPtrArray&) = default;
    ~CExPtrArray() override = default;

    // Unlike the plain array, out-of-range access answers null or is ignored.
    TYPE GetAt(long long i) const { return IsInRange(i) ? this->Storage()[size_t(i)] : nullptr; }
    void SetAt(long long i, TYPE p)
    {
        if (IsInRange(i))
            this->Storage()[size_t(i)] = p;
    }
    bool IsValidIndex(const int& i) const { return IsInRange(i); }

    INT_PTR Add_if_only_do_not_exists(TYPE p)
    {
        if (Exists(p))
            return -1;
        return this->Add(p);
    }
    bool Exists(TYPE p) const { return FindIndex(p) >= 0; }
    INT_PTR FindIndex(TYPE p) const
    {
        const auto& v = this->Storage();
        for (size_t i = 0; i < v.size(); ++i)
            if (v[i] == p)
                return INT_PTR(i);
        return -1;
    }
    TYPE GetLastElement() const { return this->IsEmpty() ? nullptr : this->Storage().back(); }
    INT_PTR GetLastIndex() const { return this->GetSize() - 1; }

    bool Delete(TYPE p)
    {
        INT_PTR i = FindIndex(p);
        if (i < 0)
            return false;
        delete p;
        Base::RemoveAt(i);
        return true;
    }
    void DeleteAll()
    {
        for (TYPE p : this->Storage())
            delete p;
        Base::SetSize(0);
    }
    void DeleteAt(int i, int n = 1)
    {
        for (int k = 0; k < n; ++k)
        {
            delete Base::GetAt(i);
            Base::RemoveAt(i);
        }
    }
    bool DeleteLastElement()
    {
        if (this->IsEmpty())
            return false;
        delete this->Storage().back();
        this->Storage().pop_back();
        return true;
    }
    bool Remove(TYPE p)
    {
        INT_PTR i = FindIndex(p);
        if (i < 0)
            return false;
        Base::RemoveAt(i);
        return true;
    }
    TYPE RemoveLastElement()
    {
        if (this->IsEmpty())
            return nullptr;
        TYPE p = this->Storage().back();
        this->Storage().pop_back();
        return p;
    }
    virtual void RemoveNullElement()
    {
        auto& v = this->Storage();
        for (size_t i = v.size(); i-- > 0;)
            if (v[i] == nullptr)
                v.erase(v.begin() + INT_PTR(i));
    }
    virtual void RemoveDuplicatedElements()
    {
        auto& v = this->Storage();
        std::unordered_set<TYPE> seen;
        size_t out = 0;
        for (size_t i = 0; i < v.size(); ++i)
            if (seen.insert(v[i]).second)
                v[out++] = v[i];
        v.resize(out);
    }
    void Reverse() { std::reverse(this->Storage().begin(), this->Storage().end()); }
    void Subtract(const Base& other)
    {
        for (INT_PTR i = 0; i < other.GetSize(); ++i)
            Remove(other.GetData()[i]);
    }
    bool IsElementEqual(const Base& other) const
    {
        return this->GetSize() == other.GetSize() &&
               std::equal(this->Storage().begin(), this->Storage().end(), other.GetData());
    }
    bool MoveElementTo(Base& dest, const int& first, const int& last)
    {
        if (last < first)
            return false;
        for (int i = last; i >= first; --i)
        {
            dest.Add(Base::GetAt(i));
            Base::RemoveAt(i);
        }
        return true;
    }

private:
    bool IsInRange(long long i) const { return i >= 0 && i < (long long)this->GetSize(); }
};
