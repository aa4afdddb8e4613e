#include "render/TargetZ.h"

#include "render/ChartInput.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/document/TargetImp.h>

#include <cmath>
#include <memory>
#include <vector>

namespace plotvane
{
namespace
{

bool AllPositive(const std::vector<double>& v)
{
    for (double d : v)
    {
        if (!(d > 0.0))
            return false;
    }
    return true;
}

std::unique_ptr<CTargetImpWithinFreqRange> LimitOf(const CsvTable& table, const std::string& path)
{
    auto limit = std::make_unique<CTargetImpWithinFreqRange>();
    limit->m_strRefName = CString(FileStem(path));
    const CsvSeries& first = table.series[0];
    if (table.series.size() == 1)
    {
        limit->m_nLimitType = 1;
        for (std::size_t i = 0; i < first.x.size(); ++i)
        {
            if (i > 0 && !(first.x[i] > first.x[i - 1]))
                throw ChartInputError("'" + path + "': the frequencies must rise from line to line");
            CPointD p(first.x[i], first.y[i]);
            limit->m_pLimitLine1->Add(p);
        }
        if (!AllPositive(first.x) || !AllPositive(first.y))
            throw ChartInputError("'" + path + "': frequencies and impedances must be above 0");
        return limit;
    }
    // Steps: from, to and the impedance share the first column's lines.
    const CsvSeries& ohms = table.series[1];
    for (std::size_t i = 0; i < first.x.size(); ++i)
    {
        if (!(first.y[i] > first.x[i]) || !(ohms.y[i] > 0.0) || !(first.x[i] > 0.0))
            throw ChartInputError("'" + path + "': a step needs 0 < from < to and an impedance "
                                  "above 0 (line " + std::to_string(i + 1) + " of the data)");
        limit->m_pLimitPoints->Add(new CPoint3D(first.x[i], first.y[i], ohms.y[i]));
    }
    return limit;
}

// Distance in RGB from a COLORREF to (r, g, b).
double ColorDistance(COLORREF c, int r, int g, int b)
{
    const int dr = int(c & 0xFF) - r, dg = int((c >> 8) & 0xFF) - g, db = int((c >> 16) & 0xFF) - b;
    return std::sqrt(double(dr * dr + dg * dg + db * db));
}

// Recolours the drawn sets, in order, with the curve colours that stand
// clear of the limits' cyan and the marked point's yellow.
void ColoursApartFromLimits(CPlotvane_Manager& mgr, bool bLight)
{
    std::vector<COLORREF> colours;
    for (int n = 0; n < 20; ++n)
    {
        const COLORREF c = CurveColor(n, bLight);
        if (ColorDistance(c, 0, 255, 255) > 150.0 && ColorDistance(c, 255, 255, 0) > 150.0)
            colours.push_back(c);
    }
    CPlotvane_InputData& data = mgr.m_InputData;
    for (INT_PTR k = 0; k < data.m_DrawSet.GetSize() && !colours.empty(); ++k)
    {
        const int index = data.m_DrawSet.GetAt(k);
        if (index >= 0 && index < INT_PTR(data.GetDataSetSize()))
            data.GetChartPointDArray(index)->m_Color = CColor(colours[std::size_t(k) % colours.size()]);
    }
}

} // namespace

void AddTargetImpedance(CPlotvane_Manager& mgr, const std::string& path, bool bLight)
{
    CsvReadOptions ro;
    ro.bSharedX = true;
    const CsvTable table = ReadCsvFile(path, ro);
    if (table.series.empty() || table.series.size() > 2 || table.series[0].x.empty())
        throw ChartInputError("'" + path + "': expected Hz,Ohm points of a polyline or "
                              "from Hz,to Hz,Ohm steps");
    std::unique_ptr<CTargetImpWithinFreqRange> limit = LimitOf(table, path);
    const CPlotvane_InputData& data = mgr.m_InputData;
    for (INT_PTR k = 0; k < data.m_DrawSet.GetSize(); ++k)
        limit->AddDataIndex(data.m_DrawSet.GetAt(k));
    CTargetImpWithinFreqRangeArray limits;
    limits.Add(limit.release());
    mgr.m_InputData.SetTargetImpedanceData(&limits);
    ColoursApartFromLimits(mgr, bLight);
    mgr.m_bTargetImpedance = 1;
    mgr.m_nFreqDomainMode = 2;
    mgr.m_bUseMagnitude = 1;
}

} // namespace plotvane
