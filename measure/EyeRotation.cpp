#include <plotvane/measure/EyeRotation.h>

namespace plotvane
{
namespace
{
// Fold mode 3: the eye is shown twice, the second copy turned by half the
// waveform's own period, and both are stored one after the other.
void SerializeDoubleFold(CChartPointDArray& set, CChartPointDArrayArray& periods, double dPeriod)
{
    CChartPointDArrayArray halfTurned;
    halfTurned = periods;
    halfTurned.ShiftChartDataOnXAxisToLeftSide(set.m_dPeriod * 0.5, dPeriod);

    // The set is empty here, so the copy takes over only its attributes.
    CChartPointDArray* pSecond = new CChartPointDArray(set);
    set.SerializeWaveDataFromEachPeriod(&periods, dPeriod);
    pSecond->SerializeWaveDataFromEachPeriod(&halfTurned, dPeriod);
    set.Append(*pSecond);
    pSecond->SetSize(0);
    delete pSecond;
}
} // namespace

void ShiftEyeSetsToLeft(CChartPointDArrayArray& sets, double dShift, double dPeriod)
{
    const double dTurn = dShift < 0.0 ? dPeriod * 0.5 + dShift : dShift;
    for (CChartPointDArray* pSet : sets)
    {
        // Two points are a line, not an eye.
        if (pSet->GetSize() == 2)
            continue;
        const double dMinX = pSet->GetMinX();
        const double dMaxX = pSet->GetMaxX();

        // The periods take over the points; the set is filled again below.
        CChartPointDArrayArray periods;
        pSet->CollectWaveDataPerPeriod(&periods);
        pSet->SetSize(0);

        if (dTurn != 0.0 && dTurn >= dMinX && dTurn <= dMaxX)
            periods.ShiftChartDataOnXAxisToLeftSide(dTurn, dPeriod);

        if (pSet->m_nFoldMode == 3)
            SerializeDoubleFold(*pSet, periods, dPeriod);
        else
            pSet->SerializeWaveDataFromEachPeriod(&periods, dPeriod);
    }
}
} // namespace plotvane
