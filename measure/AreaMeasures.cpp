#include <plotvane/measure/ChartPointDArray.h>

#include <plotvane/measure/ChartPointDArrayArray.h>

#include <cmath>
#include <utility>
#include <vector>

namespace plotvane
{
namespace
{

enum class AreaSide
{
    Above,
    Below
};

// Directions in the crossing list.
constexpr int kRising = 0;
constexpr int kFalling = 1;

// The crossing list and the interior list of one measurement. The forms over
// eye lines reuse one set for every line, so the lists grow once per call.
struct AreaLists
{
    std::vector<double> crossX;
    std::vector<int> crossDir;
    std::vector<double> innerX;
    std::vector<INT_PTR> innerIndex;
};

// Adjacent keys in order, NaN excluded. With a transitive order this means
// no i < j has keys[i] > keys[j], so the exchange sort would swap nothing.
bool IsInOrder(const std::vector<double>& keys)
{
    for (size_t i = 0; i + 1 < keys.size(); ++i)
    {
        if (!(keys[i] <= keys[i + 1]))
            return false;
    }
    return true;
}

// Exchange sort of keys, carrying the parallel payload along. It is not
// stable, and the order of equal keys decides which crossings pair up later,
// so it is kept as it is; lists already in order (every single run) skip it.
template <class T> void ExchangeSortByX(std::vector<double>& keys, std::vector<T>& payload)
{
    if (IsInOrder(keys))
        return;
    const size_t n = keys.size();
    for (size_t i = 0; i + 1 < n; ++i)
    {
        for (size_t j = i + 1; j < n; ++j)
        {
            if (keys[i] > keys[j])
            {
                std::swap(keys[i], keys[j]);
                std::swap(payload[i], payload[j]);
            }
        }
    }
}

bool IsOutside(double x, double dXMin, double dXMax)
{
    return x < dXMin || x > dXMax;
}

// Every strict crossing of dLevel between neighbours, seams skipped, and
// pairs whose two ends both lie outside the window skipped (which drops a
// pair spanning the window too). A sample on the level makes no crossing.
void FindLevelCrossings(CChartPointD* const* pts, INT_PTR n, double dScaleX, double dScaleY,
                        double dXMin, double dXMax, double dLevel, AreaLists& lists)
{
    lists.crossX.clear();
    lists.crossDir.clear();
    for (INT_PTR i = 0; i + 1 < n; ++i)
    {
        const CChartPointD& a = *pts[i];
        const CChartPointD& b = *pts[i + 1];
        if (a.X > b.X)
            continue;
        if (IsOutside(a.X, dXMin, dXMax) && IsOutside(b.X, dXMin, dXMax))
            continue;
        int nDir;
        if (a.Y < dLevel && b.Y > dLevel)
            nDir = kRising;
        else if (a.Y > dLevel && b.Y < dLevel)
            nDir = kFalling;
        else
            continue;
        const double da = std::fabs(dLevel - a.Y) * dScaleY;
        const double db = std::fabs(dLevel - b.Y) * dScaleY;
        const double x = ((b.X - a.X) * dScaleX * da / (db + da) + a.X * dScaleX) / dScaleX;
        lists.crossX.push_back(x);
        lists.crossDir.push_back(nDir);
    }
}

// Walks the sorted crossings keeping opener/closer pairs. After each
// completed pair the next entry is let through unexamined, and the last
// entry is never examined; a trailing odd entry is dropped. Removing an entry
// leaves the walk at the same position, so a single compacting pass over all
// but the last entry gives the same list as removing in place.
void KeepOpenerCloserPairs(int nOpener, AreaLists& lists)
{
    std::vector<double>& xs = lists.crossX;
    std::vector<int>& dirs = lists.crossDir;
    const int nCloser = nOpener == kRising ? kFalling : kRising;
    const size_t n = xs.size();
    if (n == 0)
        return;
    bool bFirst = false;
    bool bSecond = false;
    size_t w = 0;
    for (size_t r = 0; r + 1 < n; ++r)
    {
        bool bKeep;
        if (bFirst && bSecond)
        {
            bFirst = bSecond = false;
            bKeep = true;
        }
        else if (!bFirst)
        {
            bKeep = dirs[r] == nOpener;
            bFirst = bKeep;
        }
        else
        {
            bKeep = dirs[r] == nCloser;
            bSecond = bKeep;
        }
        if (bKeep)
        {
            xs[w] = xs[r];
            dirs[w] = dirs[r];
            ++w;
        }
    }
    xs[w] = xs[n - 1];
    dirs[w] = dirs[n - 1];
    ++w;
    if (w % 2 != 0)
        --w;
    xs.resize(w);
    dirs.resize(w);
}

// Points of the whole array strictly between x1 and x2, sorted by X. The
// whole array is scanned since a folded eye puts samples of one X range in
// every run.
void CollectInterior(CChartPointD* const* pts, INT_PTR n, double x1, double x2, AreaLists& lists)
{
    lists.innerX.clear();
    lists.innerIndex.clear();
    for (INT_PTR i = 0; i < n; ++i)
    {
        const double x = pts[i]->X;
        if (x1 < x && x < x2)
        {
            lists.innerX.push_back(x);
            lists.innerIndex.push_back(i);
        }
    }
    ExchangeSortByX(lists.innerX, lists.innerIndex);
}

// Trapezoid integral from x1 to x2 through the interior points, less the
// rectangle under the level. Below takes the rectangle and every term by
// absolute value, which only measures a true excursion at or below zero.
// With one interior point the stretch from it to x2 is not added.
double PairArea(CChartPointD* const* pts, const AreaLists& lists, double x1, double x2,
                double dScaleX, double dScaleY, double dLevel, AreaSide side)
{
    const bool bAbs = side == AreaSide::Below;
    auto term = [bAbs](double v) { return bAbs ? std::fabs(v) : v; };

    const double rect = term((x2 - x1) * (dScaleY * dLevel) * dScaleX);
    double sum = 0.0;
    const size_t m = lists.innerX.size();
    double xp = 0.0;
    double yp = 0.0;
    for (size_t t = 0; t < m; ++t)
    {
        const double x = lists.innerX[t];
        const double y = pts[lists.innerIndex[t]]->Y;
        if (t == 0)
        {
            sum += term((y + dLevel) * 0.5 * dScaleY * (x - x1) * dScaleX);
        }
        else
        {
            sum += term((yp + y) * 0.5 * dScaleY * (x - xp) * dScaleX);
            if (t == m - 1)
                sum += term((y + dLevel) * 0.5 * dScaleY * (x2 - x) * dScaleX);
        }
        xp = x;
        yp = y;
    }
    return sum - rect;
}

void FillOutline(CChartPointD* const* pts, const AreaLists& lists, double x1, double x2,
                 double dLevel, CChartPointDArray* pPoints)
{
    pPoints->DeleteAll();
    pPoints->Add(new CChartPointD(x1, dLevel));
    for (INT_PTR i : lists.innerIndex)
        pPoints->Add(new CChartPointD(pts[i]->X, pts[i]->Y));
    pPoints->Add(new CChartPointD(x2, dLevel));
}

void MaxArea(const CChartPointDArray& wave, double dScaleX, double dScaleY, double dXMin,
             double dXMax, double dLevel, AreaSide side, double& dArea, CChartPointDArray* pPoints,
             AreaLists& lists)
{
    if (pPoints)
        pPoints->DeleteAll();
    const INT_PTR n = wave.GetSize();
    if (n == 0)
        return;
    dArea = 0.0;

    CChartPointD* const* pts = wave.GetData();
    FindLevelCrossings(pts, n, dScaleX, dScaleY, dXMin, dXMax, dLevel, lists);
    ExchangeSortByX(lists.crossX, lists.crossDir);
    KeepOpenerCloserPairs(side == AreaSide::Above ? kRising : kFalling, lists);

    // Pairs by position: after the first pair they need not be opener and
    // closer any more (see KeepOpenerCloserPairs).
    for (size_t k = 0; k + 1 < lists.crossX.size(); k += 2)
    {
        const double x1 = lists.crossX[k];
        const double x2 = lists.crossX[k + 1];
        CollectInterior(pts, n, x1, x2, lists);
        const double area = PairArea(pts, lists, x1, x2, dScaleX, dScaleY, dLevel, side);
        if (area > dArea)
        {
            dArea = area;
            if (pPoints)
                FillOutline(pts, lists, x1, x2, dLevel, pPoints);
        }
    }
}

// The eye lines borrow the waveform's points: they are emptied before the
// collection deletes its arrays, on every way out.
struct BorrowedLines
{
    CChartPointDArrayArray lines;
    ~BorrowedLines() { lines.DataRemoveAll(); }
};

void MaxAreaOverEyeLines(const CChartPointDArray& wave, double dScaleX, double dScaleY,
                         double dXMin, double dXMax, double dLevel, AreaSide side, double& dArea,
                         CChartPointDArray* pPoints)
{
    BorrowedLines eye;
    wave.ExtractEyeLinePointArray(&eye.lines);
    dArea = 0.0;
    AreaLists lists;
    for (CChartPointDArray* pLine : eye.lines)
    {
        double dLineArea = 0.0;
        if (pPoints)
        {
            // A fresh waveform per line: its constructor draws a colour from
            // rand, which later waveforms' colours depend on, and pPoints
            // takes over the best outline's attributes along with its points.
            CChartPointDArray outline;
            MaxArea(*pLine, dScaleX, dScaleY, dXMin, dXMax, dLevel, side, dLineArea, &outline,
                    lists);
            if (dLineArea > dArea)
            {
                dArea = dLineArea;
                pPoints->DeleteAll();
                *pPoints = outline;
            }
        }
        else
        {
            MaxArea(*pLine, dScaleX, dScaleY, dXMin, dXMax, dLevel, side, dLineArea, nullptr,
                    lists);
            if (dLineArea > dArea)
                dArea = dLineArea;
        }
    }
    dArea /= dScaleY;
}

} // namespace
} // namespace plotvane

using plotvane::AreaSide;

void CChartPointDArray::GetMaxAreaAboveYValue(double dScaleX, double dScaleY, double dXMin,
                                              double dXMax, double dLevel, double& dArea) const
{
    plotvane::AreaLists lists;
    plotvane::MaxArea(*this, dScaleX, dScaleY, dXMin, dXMax, dLevel, AreaSide::Above, dArea,
                      nullptr, lists);
}

void CChartPointDArray::GetMaxAreaAboveYValueAndAllPointsInArea(double dScaleX, double dScaleY,
                                                                double dXMin, double dXMax,
                                                                double dLevel, double& dArea,
                                                                CChartPointDArray* pPoints) const
{
    plotvane::AreaLists lists;
    plotvane::MaxArea(*this, dScaleX, dScaleY, dXMin, dXMax, dLevel, AreaSide::Above, dArea,
                      pPoints, lists);
}

void CChartPointDArray::GetMaxAreaAboveYValueWithExtractEyeLinePoints(double dScaleX,
                                                                      double dScaleY, double dXMin,
                                                                      double dXMax, double dLevel,
                                                                      double& dArea) const
{
    plotvane::MaxAreaOverEyeLines(*this, dScaleX, dScaleY, dXMin, dXMax, dLevel, AreaSide::Above,
                                  dArea, nullptr);
}

void CChartPointDArray::GetMaxAreaAboveYValueAndAllPointsInAreaWithExtractEyeLinePoints(
    double dScaleX, double dScaleY, double dXMin, double dXMax, double dLevel, double& dArea,
    CChartPointDArray* pPoints) const
{
    plotvane::MaxAreaOverEyeLines(*this, dScaleX, dScaleY, dXMin, dXMax, dLevel, AreaSide::Above,
                                  dArea, pPoints);
}

void CChartPointDArray::GetMaxAreaBelowYValue(double dScaleX, double dScaleY, double dXMin,
                                              double dXMax, double dLevel, double& dArea) const
{
    plotvane::AreaLists lists;
    plotvane::MaxArea(*this, dScaleX, dScaleY, dXMin, dXMax, dLevel, AreaSide::Below, dArea,
                      nullptr, lists);
}

void CChartPointDArray::GetMaxAreaBelowYValueAndAllPointsInArea(double dScaleX, double dScaleY,
                                                                double dXMin, double dXMax,
                                                                double dLevel, double& dArea,
                                                                CChartPointDArray* pPoints) const
{
    plotvane::AreaLists lists;
    plotvane::MaxArea(*this, dScaleX, dScaleY, dXMin, dXMax, dLevel, AreaSide::Below, dArea,
                      pPoints, lists);
}

void CChartPointDArray::GetMaxAreaBelowYValueWithExtractEyeLinePoints(double dScaleX,
                                                                      double dScaleY, double dXMin,
                                                                      double dXMax, double dLevel,
                                                                      double& dArea) const
{
    plotvane::MaxAreaOverEyeLines(*this, dScaleX, dScaleY, dXMin, dXMax, dLevel, AreaSide::Below,
                                  dArea, nullptr);
}

void CChartPointDArray::GetMaxAreaBelowYValueAndAllPointsInAreaWithExtractEyeLinePoints(
    double dScaleX, double dScaleY, double dXMin, double dXMax, double dLevel, double& dArea,
    CChartPointDArray* pPoints) const
{
    plotvane::MaxAreaOverEyeLines(*this, dScaleX, dScaleY, dXMin, dXMax, dLevel, AreaSide::Below,
                                  dArea, pPoints);
}
