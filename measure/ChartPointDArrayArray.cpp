#include <plotvane/measure/ChartPointDArrayArray.h>

#include <plotvane/foundation/ArrayRecord.h>
#include <plotvane/measure/EyeRotation.h>

#include <charconv>
#include <cmath>
#include <cstdio>

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

namespace
{
bool Qualifies(const CChartPointDArray* p, int bVisibleOnly)
{
    return bVisibleOnly == 0 || p->m_bVisible != 0;
}

// The extremes of a collection are those of its last qualifying waveform:
// the waveforms of one chart share their X range.
const CChartPointDArray* LastQualifying(const CChartPointDArrayArray& sets, int bVisibleOnly)
{
    for (INT_PTR i = sets.GetSize(); i-- > 0;)
        if (Qualifies(sets.GetData()[i], bVisibleOnly))
            return sets.GetData()[i];
    return nullptr;
}
} // namespace

void CChartPointDArrayArray::DataRemoveAll()
{
    for (CChartPointDArray* p : *this)
        p->SetSize(0);
}

CChartPointDArray* CChartPointDArrayArray::FindByNetName(const CString& name) const
{
    for (CChartPointDArray* p : *this)
        if (p->m_strNetName == name)
            return p;
    return nullptr;
}

void CChartPointDArrayArray::SetHighlight(int n)
{
    for (CChartPointDArray* p : *this)
        p->m_bHighlight = n;
}

void CChartPointDArrayArray::Shift(double dx, double dy, int bVisibleOnly)
{
    for (CChartPointDArray* p : *this)
        if (Qualifies(p, bVisibleOnly))
            p->Shift(dx, dy);
}

void CChartPointDArrayArray::ShiftEyeData(double dShift, int bVisibleOnly)
{
    for (CChartPointDArray* p : *this)
        if (Qualifies(p, bVisibleOnly))
            p->ShiftEyeData(dShift);
}

// The role queries lend the waveforms: pOut is emptied by its owner with
// SetSize(0). An unclassified waveform (-1) counts among the data signals.
void CChartPointDArrayArray::GetDQDriverDatas(CChartPointDArrayArray* pOut) const
{
    for (CChartPointDArray* p : *this)
        if (p->m_nDataType != 0 && p->m_nPinRole == 0)
            pOut->Add(p);
}

void CChartPointDArrayArray::GetDQReceiverDatas(CChartPointDArrayArray* pOut) const
{
    for (CChartPointDArray* p : *this)
        if (p->m_nDataType != 0 && p->m_nPinRole == 2)
            pOut->Add(p);
}

void CChartPointDArrayArray::GetDQSDriverDatas(CChartPointDArrayArray* pOut) const
{
    for (CChartPointDArray* p : *this)
        if (p->m_nDataType == 0 && p->m_nPinRole == 0)
            pOut->Add(p);
}

void CChartPointDArrayArray::GetDQSReceiverDatas(CChartPointDArrayArray* pOut) const
{
    for (CChartPointDArray* p : *this)
        if (p->m_nDataType == 0 && p->m_nPinRole == 2)
            pOut->Add(p);
}

double CChartPointDArrayArray::GetMaxX(int bVisibleOnly) const
{
    const CChartPointDArray* p = LastQualifying(*this, bVisibleOnly);
    return p ? p->GetMaxX() : 0.0;
}

double CChartPointDArrayArray::GetMinX(int bVisibleOnly) const
{
    const CChartPointDArray* p = LastQualifying(*this, bVisibleOnly);
    return p ? p->GetMinX() : 0.0;
}

double CChartPointDArrayArray::GetMaxY(int bVisibleOnly) const
{
    const CChartPointDArray* p = LastQualifying(*this, bVisibleOnly);
    return p ? p->GetMaxY() : 0.0;
}

double CChartPointDArrayArray::GetMinY(int bVisibleOnly) const
{
    const CChartPointDArray* p = LastQualifying(*this, bVisibleOnly);
    return p ? p->GetMinY() : 0.0;
}

double CChartPointDArrayArray::GetMaxPeriod(int bVisibleOnly) const
{
    bool bFound = false;
    double dMax = 0.0;
    for (const CChartPointDArray* p : *this)
    {
        if (!Qualifies(p, bVisibleOnly))
            continue;
        if (!bFound || p->m_dPeriod > dMax)
            dMax = p->m_dPeriod;
        bFound = true;
    }
    return dMax;
}

// ---- select rows

void CChartPointDArrayArray::AddAllDataSetSelectRowByIndex(int nRow)
{
    for (CChartPointDArray* p : *this)
        p->AddSelectRow(nRow);
}

void CChartPointDArrayArray::AddAllDataSetSelectRowByValue(double x, double y)
{
    for (CChartPointDArray* p : *this)
        p->AddSelectRowByValue(x, y);
}

void CChartPointDArrayArray::AddAllDataSetSelectRowByValueX(double x)
{
    for (CChartPointDArray* p : *this)
        p->AddSelectRowByValueX(x);
}

void CChartPointDArrayArray::AddAllDataSetSelectRowByValueY(double y)
{
    for (CChartPointDArray* p : *this)
        p->AddSelectRowByValueY(y);
}

// Despite its name this one replaces the set's selection; hosts rely on it.
void CChartPointDArrayArray::AddSelectRowByIndex(int nSet, int nRow)
{
    if (nSet >= 0 && nSet < GetSize())
        GetData()[nSet]->SetSelectRow(nRow);
}

void CChartPointDArrayArray::AddSelectRowByIndex(int nSet, double x, double y)
{
    if (nSet >= 0 && nSet < GetSize())
        GetData()[nSet]->AddSelectRowByValue(x, y);
}

void CChartPointDArrayArray::AddSelectRowByIndexAndX(int nSet, double x)
{
    if (nSet >= 0 && nSet < GetSize())
        GetData()[nSet]->AddSelectRowByValueX(x);
}

void CChartPointDArrayArray::AddSelectRowByIndexAndY(int nSet, double y)
{
    if (nSet >= 0 && nSet < GetSize())
        GetData()[nSet]->AddSelectRowByValueY(y);
}

void CChartPointDArrayArray::AddSelectRowByValue(CString name, int nRow)
{
    for (CChartPointDArray* p : *this)
        if (p->m_strName == name)
            p->AddSelectRow(nRow);
}

void CChartPointDArrayArray::AddSelectRowByValue(CString name, double x, double y)
{
    for (CChartPointDArray* p : *this)
        if (p->m_strName == name)
            p->AddSelectRowByValue(x, y);
}

void CChartPointDArrayArray::AddSelectRowByValueX(CString name, double x)
{
    for (CChartPointDArray* p : *this)
        if (p->m_strName == name)
            p->AddSelectRowByValueX(x);
}

void CChartPointDArrayArray::AddSelectRowByValueY(CString name, double y)
{
    for (CChartPointDArray* p : *this)
        if (p->m_strName == name)
            p->AddSelectRowByValueY(y);
}

void CChartPointDArrayArray::SetAllDataSetSelectRowByIndex(int nRow)
{
    RemoveSelectRow();
    for (CChartPointDArray* p : *this)
        p->SetSelectRow(nRow);
}

void CChartPointDArrayArray::SetAllDataSetSelectRowByValue(double x, double y)
{
    RemoveSelectRow();
    for (CChartPointDArray* p : *this)
        p->SetSelectRowByValue(x, y);
}

void CChartPointDArrayArray::SetAllDataSetSelectRowByValueX(double x)
{
    RemoveSelectRow();
    for (CChartPointDArray* p : *this)
        p->SetSelectRowByValueX(x);
}

void CChartPointDArrayArray::SetAllDataSetSelectRowByValueY(double y)
{
    RemoveSelectRow();
    for (CChartPointDArray* p : *this)
        p->SetSelectRowByValueY(y);
}

void CChartPointDArrayArray::SetSelectRowByIndex(int nSet, int nRow)
{
    RemoveSelectRow();
    if (nSet >= 0 && nSet < GetSize())
        GetData()[nSet]->SetSelectRow(nRow);
}

void CChartPointDArrayArray::SetSelectRowByIndex(int nSet, double x, double y)
{
    RemoveSelectRow();
    if (nSet >= 0 && nSet < GetSize())
        GetData()[nSet]->SetSelectRowByValue(x, y);
}

void CChartPointDArrayArray::SetSelectRowByIndexAndX(int nSet, double x)
{
    RemoveSelectRow();
    if (nSet >= 0 && nSet < GetSize())
        GetData()[nSet]->SetSelectRowByValueX(x);
}

void CChartPointDArrayArray::SetSelectRowByIndexAndY(int nSet, double y)
{
    RemoveSelectRow();
    if (nSet >= 0 && nSet < GetSize())
        GetData()[nSet]->SetSelectRowByValueY(y);
}

void CChartPointDArrayArray::SetSelectRowByValue(CString name, int nRow)
{
    RemoveSelectRow();
    for (CChartPointDArray* p : *this)
        if (p->m_strName == name)
            p->SetSelectRow(nRow);
}

void CChartPointDArrayArray::SetSelectRowByValue(CString name, double x, double y)
{
    RemoveSelectRow();
    for (CChartPointDArray* p : *this)
        if (p->m_strName == name)
            p->SetSelectRowByValue(x, y);
}

void CChartPointDArrayArray::SetSelectRowByValueX(CString name, double x)
{
    RemoveSelectRow();
    for (CChartPointDArray* p : *this)
        if (p->m_strName == name)
            p->SetSelectRowByValueX(x);
}

void CChartPointDArrayArray::SetSelectRowByValueY(CString name, double y)
{
    RemoveSelectRow();
    for (CChartPointDArray* p : *this)
        if (p->m_strName == name)
            p->SetSelectRowByValueY(y);
}

void CChartPointDArrayArray::RemoveSelectRow()
{
    for (CChartPointDArray* p : *this)
        p->RemoveSelectRow();
}

// The range test below can never hold (an index cannot be negative and past
// the end at once); hosts have always had to pass a valid nSet here, and a
// bad one reaches a null waveform, as it always has.
void CChartPointDArrayArray::GetSelectRowDataByIndex(int nSet, CArrayD* xs, CArrayD* ys) const
{
    if (nSet < 0 && nSet >= GetSize())
        return;
    GetAt(nSet)->GetSelectRowData(xs, ys);
}

// Every match refills xs and ys, so the last waveform of that name stands.
void CChartPointDArrayArray::GetSelectRowDataByValue(CString name, CArrayD* xs, CArrayD* ys) const
{
    for (const CChartPointDArray* p : *this)
        if (p->m_strName == name)
            p->GetSelectRowData(xs, ys);
}

// Same never-holding range test as GetSelectRowDataByIndex.
void CChartPointDArrayArray::GetSortByXValueArray(int nSet, CArrayD& xs, CArrayD& ys) const
{
    if (nSet < 0 && nSet >= GetSize())
        return;
    GetAt(nSet)->GetSortByXValueArray(xs, ys);
}

// ---- text export

namespace
{
// Writes "%e" text through a buffer: to_chars in scientific form with six
// digits gives the same characters as printf, at a fraction of its cost on
// exports of millions of samples.
class AsciiWriter
{
public:
    explicit AsciiWriter(std::FILE* f) : m_f(f) {}
    ~AsciiWriter() { Flush(); }

    void Point(double x, double y)
    {
        Reserve(2 * 32 + 3);
        Number(x);
        m_buf[m_n++] = ' ';
        Number(y);
        m_buf[m_n++] = ' ';
        m_buf[m_n++] = '\n';
    }
    void Closing(int nWave)
    {
        Reserve(32);
        m_n += size_t(std::snprintf(m_buf + m_n, 32, "<%d> \n", nWave));
    }

private:
    void Number(double v)
    {
        m_n = size_t(
            std::to_chars(m_buf + m_n, m_buf + sizeof(m_buf), v, std::chars_format::scientific, 6)
                .ptr -
            m_buf);
    }
    void Reserve(size_t n)
    {
        if (m_n + n > sizeof(m_buf))
            Flush();
    }
    void Flush()
    {
        std::fwrite(m_buf, 1, m_n, m_f);
        m_n = 0;
    }

    std::FILE* m_f;
    size_t m_n = 0;
    char m_buf[1 << 16];
};
} // namespace

void CChartPointDArrayArray::SaveToASCIIFile(const CString& path) const
{
    std::FILE* f = std::fopen(path.GetString(), "w");
    if (!f)
        return;
    {
        AsciiWriter out(f);
        for (INT_PTR k = 0; k < GetSize(); ++k)
        {
            for (const CChartPointD* p : *GetData()[k])
                out.Point(p->X, p->Y);
            out.Closing(int(k + 1));
        }
    }
    std::fclose(f);
}

// ---- rotation of periods

// Each period is cut at dShift: the piece from dShift on moves to the start
// of its own period, the piece before it moves to the end of the previous
// period (a new one in front of the first). Both ends are joined by a sample
// interpolated across the cut, so that a rotated period runs from exactly 0
// to exactly dPeriod; that is how whole periods are told from fragments when
// they are put back together.
void CChartPointDArrayArray::ShiftChartDataOnXAxisToLeftSide(double dShift, double dPeriod)
{
    if (IsEmpty())
        return;
    const double dTol = plotvane::PeriodEdgeTolerance();
    const double dLeftMove = dPeriod - dShift;
    for (INT_PTR i = 0; i < GetSize(); ++i)
    {
        CChartPointDArray* pCur = GetData()[i];
        CChartPointDArray left;
        CChartPointDArray right;
        // The samples move over as they are: cur gives them up.
        for (CChartPointD* p : *pCur)
        {
            if (p->X < dShift)
                left.Add(p);
            else
            {
                p->Shift(-dShift, 0.0);
                right.Add(p);
            }
        }
        pCur->SetSize(0);

        CChartPointDArray* pPrev = nullptr;
        const CChartPointD* pLastLeft = nullptr;
        const CChartPointD* pFirstRight = nullptr;
        if (!left.IsEmpty())
        {
            if (i == 0)
            {
                pPrev = new CChartPointDArray;
                InsertAt(0, pPrev);
                i = 1;
            }
            else
                pPrev = GetData()[i - 1];
            for (CChartPointD* p : left)
                p->Shift(dLeftMove, 0.0);
            pLastLeft = left.GetData()[left.GetSize() - 1];
            pPrev->Append(left);
        }
        if (!right.IsEmpty())
            pFirstRight = right.GetData()[0];

        if (pLastLeft && pFirstRight)
        {
            const double x0 = pFirstRight->X;
            const double y0 = pFirstRight->Y;
            const double x1 = pLastLeft->X;
            const double y1 = pLastLeft->Y;
            if (x1 > x0 && dPeriod >= x1)
            {
                const double d = x0 + dPeriod - x1;
                const double y = d == 0.0 ? 0.0 : (y0 - y1) * (dPeriod - x1) / d + y1;
                if (pPrev && std::fabs(x1 - dPeriod) > dTol)
                    pPrev->Add(new CChartPointD(dPeriod, y));
                if (std::fabs(x0) > dTol)
                    pCur->Add(new CChartPointD(0.0, y));
            }
        }
        pCur->Append(right);
        left.SetSize(0);
        right.SetSize(0);
    }
}
