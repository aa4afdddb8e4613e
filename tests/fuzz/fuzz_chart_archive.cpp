// Feeds arbitrary bytes to the chart reader as if they were a saved chart.
// Stream faults must surface as archive exceptions, never as crashes, hangs
// or allocations beyond what the input can hold, and whatever was loaded
// before a fault must stay usable.
#include <plotvane/document/Plotvane_Manager.h>

#include <plotvane/foundation/Exceptions.h>
#include <plotvane/foundation/MFCFile.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace
{
// A chart that loaded, fully or in part, is saved again and fitted, as a
// host does next.
void UseLoadedChart(CPlotvane_Manager& m)
{
    CMemFile out;
    CArchive ar(&out, CArchive::store);
    m.Serialize(ar);
    ar.Close();
    CPlotvane_InputData& d = m.m_InputData;
    d.FindMaxAndMin();
    d.FindMaxAndMin_Log();
    d.CalcMaxAndMin();
    double y = 0.0;
    CArrayD xs;
    d.GetYInterpolationValue(0, 0.0, y);
    d.GetXInterpolationValue(0, 0.0, xs);
    d.IsEnableDraw();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // The memory file wraps the block without copying, so give it its own.
    std::vector<BYTE> bytes(data, data + size);
    CMemFile file(bytes.data(), UINT(bytes.size()));
    CPlotvane_Manager chart;
    try
    {
        CArchive ar(&file, CArchive::load, 4096);
        chart.Serialize(ar);
    }
    catch (const CException&)
    {
    }
    try
    {
        UseLoadedChart(chart);
    }
    catch (const CException&)
    {
    }
    return 0;
}
