// Target impedance limits that the host supplies for frequency charts. Not
// archived.
#pragma once

#include <plotvane/foundation/ExPtrArray.h>
#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/ValueArrays.h>

class CTargetImpWithinFreqRange
{
public:
    CTargetImpWithinFreqRange();
    CTargetImpWithinFreqRange(const CTargetImpWithinFreqRange& o);
    CTargetImpWithinFreqRange& operator=(const CTargetImpWithinFreqRange& o);
    virtual ~CTargetImpWithinFreqRange();
    virtual CTargetImpWithinFreqRange* clone() const
    {
        return new CTargetImpWithinFreqRange(*this);
    }

    // Adds the data set index unless it is already there.
    void AddDataIndex(int nIndex) { m_arrDataIndex.AddNotDuplication(nIndex); }
    bool DoesExistDataIndex(const int& nIndex) const { return m_arrDataIndex.IsExist(nIndex); }

    CString m_strRefName;
    CArrayN m_arrDataIndex;
    // Steps: x frequency start, y frequency end, z impedance.
    CArrayPoint3D* m_pLimitPoints;
    // Polylines of (frequency, impedance), for limit types 1 and 2.
    CArrayPointD* m_pLimitLine1;
    CArrayPointD* m_pLimitLine2;
    int m_nLimitType = 0;
};

class CTargetImpWithinFreqRangeArray
    : public CExPtrArray<CTargetImpWithinFreqRange*, CTargetImpWithinFreqRange*>
{
public:
    CTargetImpWithinFreqRangeArray() = default;
    CTargetImpWithinFreqRangeArray(const CTargetImpWithinFreqRangeArray& o);
    // Empties itself, then fills with clones of the source's limits.
    CTargetImpWithinFreqRangeArray& operator=(const CTargetImpWithinFreqRangeArray& o);
    ~CTargetImpWithinFreqRangeArray() override { DeleteAll(); }

    // The first limit that applies to the data set, or null.
    CTargetImpWithinFreqRange* GetTargetImpByDataIndex(const int& nIndex) const;
    // The first limit with that reference name, or null.
    CTargetImpWithinFreqRange* GetTargetImpByRefName(const CString& strName) const;
};
