// The header of an archived array of records: a version word whose high bit
// says that an 8-byte count follows (a 4-byte count when clear).
#pragma once

#include <plotvane/foundation/MFCArchive.h>

namespace plotvane
{
constexpr DWORD kLongCountFlag = 0x80000000u;

// Writes version | high bit, then the count as 8 bytes.
void WriteArrayHeader(CArchive& ar, DWORD nVersion, ULONGLONG nCount);

struct ArrayHeader
{
    DWORD nVersion = 0; // low 31 bits
    bool bLongCount = false;
};

// Reads the version word only; a reader that rejects the version stops here.
ArrayHeader ReadArrayHeader(CArchive& ar);

// Reads the count that follows the word. It is checked against what the stream
// can still hold (nMinBytesEach per element) before anyone allocates for it.
ULONGLONG ReadArrayCount(CArchive& ar, const ArrayHeader& header, ULONGLONG nMinBytesEach);
} // namespace plotvane

namespace plotvane
{
// Reads or writes an owning pointer array as a header and one record per
// element. Loading first deletes what the array holds; a version other than
// nVersion leaves it empty with the rest of the record unread. A null element
// is written as a default-constructed one.
template <class ELEMENT, class ARRAY>
void SerializeRecordArray(CArchive& ar, ARRAY& arr, DWORD nVersion, ULONGLONG nMinBytesEach)
{
    if (ar.IsStoring())
    {
        WriteArrayHeader(ar, nVersion, ULONGLONG(arr.GetSize()));
        for (ELEMENT* p : arr)
        {
            if (p)
                p->Serialize(ar);
            else
                ELEMENT().Serialize(ar);
        }
        return;
    }
    arr.DeleteAll();
    const ArrayHeader h = ReadArrayHeader(ar);
    if (h.nVersion != nVersion)
        return;
    const ULONGLONG n = ReadArrayCount(ar, h, nMinBytesEach);
    for (ULONGLONG i = 0; i < n; ++i)
    {
        ELEMENT* p = new ELEMENT;
        arr.Add(p);
        p->Serialize(ar);
    }
}
} // namespace plotvane
