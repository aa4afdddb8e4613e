#include "render/ChartInput.h"

#include "render/SignalInput.h"
#include "render/Units.h"
#include <plotvane/document/GLPlotvane_Environment.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/foundation/Exceptions.h>
#include <plotvane/foundation/MFCArchive.h>
#include <plotvane/foundation/MFCFile.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace plotvane
{

COLORREF CurveColor(int n, bool bLight)
{
    CGLPlotvane_Environment env;
    env.SetCurColorIndex(bLight ? 1 : 0);
    const CDWordArray* set = env.GetColorSet();
    const INT_PTR nCurves = set->GetSize() - 2;
    return COLORREF(set->GetAt(2 + INT_PTR(n) % nCurves));
}

COLORREF EyeCurveColor(EyeRole role, bool bLight)
{
    switch (role)
    {
    case EyeRole::Data:
        return CurveColor(4, bLight);
    case EyeRole::Strobe:
        return CurveColor(1, bLight);
    default:
        return CurveColor(2, bLight);
    }
}

int AddSeriesToChart(CPlotvane_Manager& mgr, const CsvSeries& series, COLORREF color)
{
    return AddSeriesToChart(mgr, series.name, series.x.data(), series.y.data(), series.x.size(),
                            color);
}

int AddSeriesToChart(CPlotvane_Manager& mgr, const std::string& name, const double* xs,
                     const double* ys, std::size_t n, COLORREF color)
{
    CPlotvane_InputData& data = mgr.m_InputData;
    const int index = data.AddNewDataSet();
    data.SetCurrentEditSet(index);
    for (std::size_t i = 0; i < n; ++i)
        data.AddData(xs[i], ys[i]);
    data.SetCurrentEditSetName(CString(name));
    data.SetGraphColor(CColor(color));
    data.AddDrawDataSetIndex(index);
    return index;
}

void ForEachDrawnSet(const CPlotvane_Manager& mgr,
                     const std::function<void(const CChartPointDArray&)>& f)
{
    const CPlotvane_InputData& data = mgr.m_InputData;
    const INT_PTR nSets = INT_PTR(data.GetDataSetSize());
    for (INT_PTR k = 0; k < data.m_DrawSet.GetSize(); ++k)
    {
        const int index = data.m_DrawSet.GetAt(k);
        if (index >= 0 && index < nSets)
            f(*data.GetChartPointDArray(index));
    }
}

void LoadChartFile(CPlotvane_Manager& mgr, const std::string& path)
{
    CFile file;
    CFileException fileError;
    if (!file.Open(path.c_str(), CFile::modeRead, &fileError))
        throw ChartInputError("cannot open chart '" + path + "': " + fileError.what());
    try
    {
        CArchive ar(&file, CArchive::load);
        ar.m_strFileName = path.c_str();
        try
        {
            mgr.Serialize(ar);
        }
        catch (const CArchiveException& e)
        {
            // The version 4 reader ends by writing to the loading archive;
            // everything that the file holds is in place by then.
            if (e.m_cause != CArchiveException::readOnly)
                throw;
        }
    }
    catch (const CArchiveException& e)
    {
        throw ChartInputError("cannot load chart '" + path +
                              (e.m_cause == CArchiveException::endOfFile
                                   ? "': the file ends early (not a chart archive?)"
                                   : "': " + std::string(e.what())));
    }
    catch (const CException& e)
    {
        throw ChartInputError("cannot load chart '" + path + "': " + e.what());
    }
}

void SaveChartFile(CPlotvane_Manager& mgr, const std::string& path)
{
    CFile file;
    CFileException fileError;
    if (!file.Open(path.c_str(), CFile::modeCreate | CFile::modeWrite, &fileError))
        throw ChartInputError("cannot write chart '" + path + "': " + fileError.what());
    try
    {
        CArchive ar(&file, CArchive::store);
        ar.m_strFileName = path.c_str();
        mgr.Serialize(ar);
        ar.Close();
        file.Close();
    }
    catch (const CException& e)
    {
        throw ChartInputError("cannot write chart '" + path + "': " + e.what());
    }
}

void ApplyScaleOptions(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    if (options.bLogX)
        mgr.m_nFrequencyScale = 1;
    if (options.bLogY)
    {
        mgr.m_bUseMagnitude = 1;
        mgr.m_nMagnitudeScale = 1;
    }
}

void ApplyAxisText(CPlotvane_Manager& mgr, const RenderOptions& options,
                   const std::string& defaultXName, const std::string& defaultYName)
{
    if (options.xName)
        mgr.SetAxisXName(CString(*options.xName));
    else if (!defaultXName.empty())
        mgr.SetAxisXName(CString(defaultXName));
    if (options.yName)
        mgr.SetAxisYName(CString(*options.yName));
    else if (!defaultYName.empty())
        mgr.SetAxisYName(CString(defaultYName));
    if (options.xUnit)
        mgr.SetUnitNameX(CString(*options.xUnit));
    if (options.yUnit)
        mgr.SetUnitNameY(CString(*options.yUnit));
}

namespace
{
// Puts the blocks of one file straight into new data sets, one per series,
// so that a file's numbers are never all held twice. The end state is that
// of AddSeriesToChart called for each series in turn.
class ChartSink : public CsvSink
{
public:
    explicit ChartSink(CPlotvane_Manager& mgr) : m_data(mgr.m_InputData) {}

    void Begin(const CsvTable& layout, std::size_t nLinesGuess) override
    {
        m_layout = layout;
        for (std::size_t k = 0; k < layout.series.size(); ++k)
        {
            const int index = m_data.AddNewDataSet();
            m_sets.push_back(index);
            // Room for the sample pointers up front: growing by doubling
            // would hold the old and new arrays at once.
            CChartPointDArray* set = m_data.GetChartPointDArray(index);
            set->SetSize(INT_PTR(nLinesGuess));
            set->SetSize(0);
        }
    }
    void Points(std::vector<CsvSeries>& block) override
    {
        for (std::size_t k = 0; k < block.size(); ++k)
        {
            const std::size_t n = block[k].x.size();
            if (n == 0)
                continue;
            m_data.SetCurrentEditSet(m_sets[k]);
            m_data.AddDataBlock(block[k].x.data(), block[k].y.data(), n);
        }
    }
    // Names, colours and the draw set, once every point is in.
    void Finish(bool bLight)
    {
        for (std::size_t k = 0; k < m_sets.size(); ++k)
        {
            m_data.SetCurrentEditSet(m_sets[k]);
            m_data.SetCurrentEditSetName(CString(m_layout.series[k].name));
            m_data.SetGraphColor(CColor(CurveColor(m_sets[k], bLight)));
            m_data.AddDrawDataSetIndex(m_sets[k]);
        }
    }
    const CsvTable& Layout() const { return m_layout; }
    std::size_t SetCount() const { return m_sets.size(); }

private:
    CPlotvane_InputData& m_data;
    CsvTable m_layout;
    std::vector<int> m_sets;
};
} // namespace

namespace
{

// One whole CSV file into new sets, streamed; answers its layout.
CsvTable AddCsvFile(CPlotvane_Manager& mgr, const std::string& path, const RenderOptions& options,
                    const ProgressFactory& progressFor)
{
    CsvReadOptions ro;
    ro.bColumnPairs = options.bPairs;
    if (progressFor)
        ro.progress = progressFor(path);
    ChartSink sink(mgr);
    // A file that fails part way leaves the chart as it found it.
    const int nXExponent = mgr.m_Attribute.m_XAxis.m_nMinExponent;
    const int nYExponent = mgr.m_Attribute.m_YAxis.m_nMinExponent;
    const INT_PTR nSets = INT_PTR(mgr.m_InputData.GetDataSetSize());
    try
    {
        ReadCsvFile(path, sink, ro);
    }
    catch (...)
    {
        while (INT_PTR(mgr.m_InputData.GetDataSetSize()) > nSets)
            mgr.m_InputData.DeleteDataSet(int(mgr.m_InputData.GetDataSetSize()) - 1);
        mgr.m_Attribute.m_XAxis.m_nMinExponent = nXExponent;
        mgr.m_Attribute.m_YAxis.m_nMinExponent = nYExponent;
        throw;
    }
    sink.Finish(options.bLight);
    return sink.Layout();
}

} // namespace

int AddCsvFiles(CPlotvane_Manager& mgr, const RenderOptions& options, std::string& headerX,
                std::string& headerY, const ProgressFactory& progressFor)
{
    int nAdded = 0;
    for (std::size_t f = 0; f < options.dataFiles.size(); ++f)
    {
        const CsvTable table = AddCsvFile(mgr, options.dataFiles[f], options, progressFor);
        if (f == 0 && table.bHeader)
        {
            headerX = table.xName;
            if (options.dataFiles.size() == 1 && table.series.size() == 1)
                headerY = table.series[0].name;
        }
        nAdded += int(table.series.size());
    }
    return nAdded;
}

namespace
{

// The name of a Y axis that shows several sets of one unit.
std::string QuantityName(const std::string& unit)
{
    const std::string base = SplitUnit(unit).base;
    if (base == "V")
        return "Voltage";
    if (base == "A")
        return "Current";
    if (base == "s")
        return "Time";
    if (base == "Hz")
        return "Frequency";
    return std::string();
}

AxisSource GuessedSource(const std::string& header)
{
    AxisSource s = AxisSourceOf(header);
    if (s.unit.empty())
        s.unit = GuessUnit(s.name, "");
    return s;
}

// The Y axis of several sets: the one set's own name, or the quantity that
// all of them share.
AxisSource CommonY(const std::vector<AxisSource>& ys)
{
    if (ys.size() == 1)
        return ys[0];
    for (const AxisSource& y : ys)
    {
        if (y.unit != ys[0].unit)
            return AxisSource();
    }
    if (ys.empty())
        return AxisSource();
    if (ys[0].name == "|Z|")
        return ys[0];
    return {QuantityName(ys[0].unit), ys[0].unit};
}

// Leaves out the samples that are not finite numbers; answers how many.
std::size_t KeepFinite(Signal& s)
{
    std::size_t nKept = 0;
    const std::size_t n = std::min(s.xs.size(), s.ys.size());
    for (std::size_t i = 0; i < n; ++i)
    {
        if (std::isfinite(s.xs[i]) && std::isfinite(s.ys[i]))
        {
            s.xs[nKept] = s.xs[i];
            s.ys[nKept] = s.ys[i];
            ++nKept;
        }
    }
    s.xs.resize(nKept);
    s.ys.resize(nKept);
    return n - nKept;
}

} // namespace

DataAxes AddDataFiles(CPlotvane_Manager& mgr, const RenderOptions& options,
                      const std::function<void(const std::string&)>& warn,
                      const ProgressFactory& progressFor)
{
    // Read what is not a whole CSV file first: an impedance curve sets the
    // log axes, which must be in place before any data arrive.
    SignalReader reader;
    std::vector<std::vector<Signal>> signals(options.dataFiles.size());
    DataAxes axes;
    for (std::size_t f = 0; f < options.dataFiles.size(); ++f)
    {
        if (IsWholeCsvFile(ParseSignalRef(options.dataFiles[f])))
            continue;
        signals[f] = reader.Read(options.dataFiles[f]);
        for (const Signal& s : signals[f])
            axes.bImpedance = axes.bImpedance || s.bImpedance;
    }
    if (axes.bImpedance)
    {
        mgr.m_nFrequencyScale = 1;
        mgr.m_bUseMagnitude = 1;
        mgr.m_nMagnitudeScale = 1;
    }

    std::vector<AxisSource> ys;
    for (std::size_t f = 0; f < options.dataFiles.size(); ++f)
    {
        const std::string& arg = options.dataFiles[f];
        if (IsWholeCsvFile(ParseSignalRef(arg)))
        {
            const CsvTable table = AddCsvFile(mgr, arg, options, progressFor);
            if (f == 0 && table.bHeader)
                axes.x = GuessedSource(table.xName);
            for (const CsvSeries& s : table.series)
                ys.push_back(table.bHeader ? GuessedSource(s.name) : AxisSource());
            continue;
        }
        for (Signal& s : signals[f])
        {
            if (const std::size_t nDropped = KeepFinite(s))
                warn("'" + arg + "': " + s.name + ": " + std::to_string(nDropped) +
                     " samples that are not finite numbers are left out");
            const int nSet = int(mgr.m_InputData.GetDataSetSize());
            AddSeriesToChart(mgr, s.name, s.xs.data(), s.ys.data(), s.xs.size(),
                             CurveColor(nSet, options.bLight));
            if (f == 0 && &s == &signals[f][0])
                axes.x = s.x;
            ys.push_back(s.y);
        }
    }
    axes.y = CommonY(ys);
    return axes;
}

namespace
{
// Every X above 0, but for the point at zero frequency that a frequency
// sweep may start with: the log fit moves that one to 1 Hz when the next
// point lies above it.
bool IsPositiveForLogX(const CChartPointDArray& set)
{
    const INT_PTR n = set.GetSize();
    CChartPointD* const* p = set.GetData();
    const INT_PTR first = n >= 2 && p[0]->X == 0.0 && p[1]->X > 1.0 ? 1 : 0;
    for (INT_PTR i = first; i < n; ++i)
    {
        if (!(p[i]->X > 0.0))
            return false;
    }
    return true;
}
} // namespace

void CheckChartData(CPlotvane_Manager& mgr, const std::function<void(const std::string&)>& warn)
{
    CPlotvane_InputData& data = mgr.m_InputData;
    const bool bLogX = mgr.m_nFrequencyScale == 1;
    const bool bLogY = mgr.m_bUseMagnitude != 0 && mgr.m_nMagnitudeScale == 1;
    const INT_PTR nSets = INT_PTR(data.GetDataSetSize());
    int nDrawable = 0;
    for (INT_PTR k = 0; k < data.m_DrawSet.GetSize(); ++k)
    {
        const int index = data.m_DrawSet.GetAt(k);
        CChartPointDArray* set =
            index >= 0 && index < nSets ? data.GetChartPointDArray(index) : nullptr;
        if (!set)
            continue;
        const std::string name = set->m_strName.str();
        if (set->GetSize() < 2)
        {
            warn("data set '" + name + "' has " + std::to_string(set->GetSize()) +
                 (set->GetSize() == 1 ? " point" : " points") + " and is not drawn");
            continue;
        }
        if (bLogX && !IsPositiveForLogX(*set))
            throw ChartInputError("data set '" + name +
                                  "' has X values at or below 0, which a "
                                  "logarithmic X axis cannot show");
        if (bLogY && set->GetMinY() <= 0.0)
            throw ChartInputError("data set '" + name +
                                  "' has Y values at or below 0, which a "
                                  "logarithmic Y axis cannot show");
        ++nDrawable;
    }
    if (nDrawable == 0)
        throw ChartInputError("nothing to draw: no data set with at least two points");
}

} // namespace plotvane
