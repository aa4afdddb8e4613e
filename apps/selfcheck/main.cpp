// plotvane-selfcheck: exercises the installed library end to end on built-in
// data and says what it checked. Exit status 0 when every check holds.
#include <plotvane/plotvane.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace
{
int g_failures = 0;

void Check(bool ok, const char* what)
{
    std::printf("  [%s] %s\n", ok ? " ok " : "FAIL", what);
    if (!ok)
        ++g_failures;
}

void CheckArchiveRoundTrip()
{
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        CArrayD values;
        for (int i = 0; i < 1000; ++i)
            values.Add(std::sin(i * 0.01));
        CString name("DQ0_RX");
        CPointD pt(1.5e-9, 0.6);
        ar << 4 << name;
        values.Serialize(ar);
        pt.Serialize(ar);
        ar.Close();
    }
    file.SeekToBegin();
    CArchive ar(&file, CArchive::load);
    int version = 0;
    CString name;
    CArrayD values;
    CPointD pt;
    ar >> version >> name;
    values.Serialize(ar);
    pt.Serialize(ar);
    Check(version == 4 && name == "DQ0_RX", "archive: int and string round trip");
    Check(values.GetSize() == 1000 && values[999] == std::sin(999 * 0.01),
          "archive: 1000 doubles round trip exactly");
    Check(pt == CPointD(1.5e-9, 0.6), "archive: point record round trip");
    bool threw = false;
    try
    {
        ar << 1;
    }
    catch (const CArchiveException& e)
    {
        threw = e.m_cause == CArchiveException::readOnly;
    }
    Check(threw, "archive: writing a loading archive raises code 2");
}

void CheckDecimalExponent()
{
    Check(plotvane::dec(1234.0) == 4 && plotvane::dec(0.05) == -1 && plotvane::dec(0.0) == 0,
          "dec: 1234 -> 4, 0.05 -> -1, 0 -> 0");
    Check(plotvane::dec(9999999999.6) == 11, "dec: rounding to ten digits carries a decade");
}

void CheckGeometry()
{
    double out[2] = {0, 0};
    int hit = CLumigrid_Math::GetIntersectionLineLine(0, 0, 2, 2, 0, 2, 2, 0, out);
    Check(hit > 0 && out[0] == 1.0 && out[1] == 1.0, "segments: crossing diagonals meet at (1,1)");
    Check(CLumigrid_Math::GetIntersectionLineLine(0, 0, 1, 0, 0, 1, 1, 1, out) == 0,
          "segments: parallel segments do not meet");
}

void CheckContainers()
{
    CNSet set;
    set.Add(5);
    set.Add(2);
    set.Add(5);
    Check(set.GetSize() == 2 && set[0] == 5, "sets: insertion order kept, duplicates refused");
    CRectF rc;
    rc.SetData(0, 0, 10, 10);
    rc.Inflate(140.0f);
    Check(rc.Left() == -2.0f && rc.Right() == 12.0f, "rectangles: 140% about the centre");
}
} // namespace

int main()
{
    std::printf("plotvane self-check\n");
    CheckArchiveRoundTrip();
    CheckDecimalExponent();
    CheckGeometry();
    CheckContainers();
    std::printf(g_failures ? "%d check(s) failed\n" : "all checks passed\n", g_failures);
    return g_failures ? EXIT_FAILURE : EXIT_SUCCESS;
}
