#include <plotvane/foundation/ArrayRecord.h>

namespace plotvane
{
void WriteArrayHeader(CArchive& ar, DWORD nVersion, ULONGLONG nCount)
{
    ar << UINT(nVersion | kLongCountFlag) << nCount;
}

ArrayHeader ReadArrayHeader(CArchive& ar)
{
    UINT word = 0;
    ar >> word;
    ArrayHeader h;
    h.nVersion = word & ~kLongCountFlag;
    h.bLongCount = (word & kLongCountFlag) != 0;
    return h;
}

ULONGLONG ReadArrayCount(CArchive& ar, const ArrayHeader& header, ULONGLONG nMinBytesEach)
{
    ULONGLONG nCount = 0;
    if (header.bLongCount)
        ar >> nCount;
    else
    {
        UINT n32 = 0;
        ar >> n32;
        nCount = n32;
    }
    ar.EnsureAvailable(nCount, nMinBytesEach);
    return nCount;
}
} // namespace plotvane
