#include <plotvane/document/TargetImp.h>

CTargetImpWithinFreqRange::CTargetImpWithinFreqRange()
    : m_pLimitPoints(new CArrayPoint3D), m_pLimitLine1(new CArrayPointD),
      m_pLimitLine2(new CArrayPointD)
{
}

CTargetImpWithinFreqRange::CTargetImpWithinFreqRange(const CTargetImpWithinFreqRange& o)
    : m_strRefName(o.m_strRefName), m_arrDataIndex(o.m_arrDataIndex),
      m_pLimitPoints(new CArrayPoint3D(*o.m_pLimitPoints)),
      m_pLimitLine1(new CArrayPointD(*o.m_pLimitLine1)),
      m_pLimitLine2(new CArrayPointD(*o.m_pLimitLine2)), m_nLimitType(o.m_nLimitType)
{
}

CTargetImpWithinFreqRange& CTargetImpWithinFreqRange::operator=(const CTargetImpWithinFreqRange& o)
{
    if (this == &o)
        return *this;
    m_strRefName = o.m_strRefName;
    m_arrDataIndex = o.m_arrDataIndex;
    *m_pLimitPoints = *o.m_pLimitPoints;
    *m_pLimitLine1 = *o.m_pLimitLine1;
    *m_pLimitLine2 = *o.m_pLimitLine2;
    m_nLimitType = o.m_nLimitType;
    return *this;
}

CTargetImpWithinFreqRange::~CTargetImpWithinFreqRange()
{
    delete m_pLimitPoints;
    delete m_pLimitLine1;
    delete m_pLimitLine2;
}

CTargetImpWithinFreqRangeArray::CTargetImpWithinFreqRangeArray(
    const CTargetImpWithinFreqRangeArray& o)
    : CExPtrArray<CTargetImpWithinFreqRange*, CTargetImpWithinFreqRange*>()
{
    *this = o;
}

// clone keeps the dynamic type of limits that hosts derive.
CTargetImpWithinFreqRangeArray&
CTargetImpWithinFreqRangeArray::operator=(const CTargetImpWithinFreqRangeArray& o)
{
    if (this == &o)
        return *this;
    DeleteAll();
    for (const CTargetImpWithinFreqRange* p : o)
        Add(p ? p->clone() : nullptr);
    return *this;
}

CTargetImpWithinFreqRange*
CTargetImpWithinFreqRangeArray::GetTargetImpByDataIndex(const int& nIndex) const
{
    for (CTargetImpWithinFreqRange* p : *this)
        if (p && p->DoesExistDataIndex(nIndex))
            return p;
    return nullptr;
}

CTargetImpWithinFreqRange*
CTargetImpWithinFreqRangeArray::GetTargetImpByRefName(const CString& strName) const
{
    for (CTargetImpWithinFreqRange* p : *this)
        if (p && p->m_strRefName.Compare(strName) == 0)
            return p;
    return nullptr;
}
