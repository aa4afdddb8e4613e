#include "measure/ChartPointDArrayArray.h"

#include "foundation/ArrayRecord.h"

CChartPointDArrayArray::CChartPointDArrayArray(const CChartPointDArrayArray& other)
    : CExPtrArray<CChartPointDArray*, CChartPointDArray*>()
{
    *this = other;
}

CChartPointDArrayArray& CChartPointDArrayArray::operator=(const CChartPointDArrayArray& other)
{
    if (this == &other)
        return *this;
    DeleteAll();
    for (CChartPointDArray* p : other)
        Add(new CChartPointDArray(*p));
    return *this;
}

CChartPointDArrayArray::~CChartPointDArrayArray()
{
    DeleteAll();
}

bool CChartPointDArrayArray::operator==(const CChartPointDArrayArray& other) const
{
    if (this == &other)
        return true;
    if (GetSize() != other.GetSize())
        return false;
    for (INT_PTR i = 0; i < GetSize(); ++i)
        if (*GetData()[i] != *other.GetData()[i])
            return false;
    return true;
}

void CChartPointDArrayArray::Serialize(CArchive& ar)
{
    // A waveform record is at least its header word and a 4-byte count.
    plotvane::SerializeRecordArray<CChartPointDArray>(ar, *this, nVersion, 8);
}
