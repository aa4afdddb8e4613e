// Insertion-ordered sets of integers kept in plain arrays: small, and walked
// in the order the values were added.
#pragma once

#include <plotvane/foundation/ExPtrArray.h>

#include <climits>

class CNSet : public CArray<int, int>
{
public:
    const char* GetRuntimeClassName() const override { return "CNSet"; }

    // Appends v when absent: 1 if added, 0 if already there.
    int Add(int v);
    int Add(const CNSet& s);
    bool IsExist(int v) const;
    int GetMaxVal() const;
    int GetMinVal() const;
    void Sorting();
    static void Intersection(const CNSet& a, const CNSet& b, CNSet& out) { a.IntersectionWith(b, out); }
    // Adds to out, without clearing it, each value of s that is also here.
    void IntersectionWith(const CNSet& s, CNSet& out) const;
    bool IsIntersectionExist(const CNSet& s) const;
    bool operator==(const CNSet& o) const;
    bool operator!=(const CNSet& o) const { return !(*this == o); }
};

class CNSetArray : public CExPtrArray<CNSet*, CNSet*>
{
public:
    CNSetArray() = default;
    CNSetArray(const CNSetArray& o);
    CNSetArray& operator=(const CNSetArray& o);
    ~CNSetArray() override { DeleteAll(); }
    const char* GetRuntimeClassName() const override { return "CNSetArray"; }
    void Serialize(CArchive& ar) override;
    static constexpr int nVersion = 1;
};

class CDWSet : public CDWordArray
{
public:
    CDWSet() = default;
    CDWSet(const CDWSet&) = default;
    CDWSet& operator=(const CDWSet& o) = default;
    CDWSet& operator=(const CDWordArray& o)
    {
        Copy(o);
        return *this;
    }
    int Add(unsigned long v);
    bool IsExist(unsigned long v) const;
};
