// A host program built against the installed package: it measures a DDR eye
// through the plain API (no chart, no window), keeps the data set in a chart
// document, and round-trips that document through an in-memory archive.
#include <plotvane/plotvane.h>

#include <cstdio>

int main()
{
    plotvane::DdrEye eye = plotvane::GenerateDdrEye();
    CChartPointDArray& dq = *eye.pDQ;
    dq.SetEyeInformation(-1.0, 100.0, 100.0, 0.1, 0.1, 0);

    // Seeds stay where nothing could be measured.
    double setup = -1.0, hold = -1.0, setupMV = 0.0, holdMV = 0.0, vrefMV = 0.0, windowPS = 0.0,
           spreadPS = 0.0;
    dq.CheckSetupHoldMargin(eye.pDQS.get(), eye.pDQSBar.get(), setup, hold, setupMV, holdMV,
                            vrefMV, windowPS, spreadPS, 0.0, 0, 0);
    std::printf("example host: setup %.1f ps, hold %.1f ps at Vref %.0f mV\n", setup * 1e12,
                hold * 1e12, vrefMV);

    CPlotvane_Manager chart;
    CPlotvane_InputData& data = chart.m_InputData;
    const int index = data.AddNewDataSet();
    *data.GetChartPointDArray(index) = dq;
    data.AddDrawDataSetIndex(index);

    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        chart.Serialize(ar);
        ar.Close();
    }
    file.SeekToBegin();
    CPlotvane_Manager loaded;
    try
    {
        CArchive ar(&file, CArchive::load);
        loaded.Serialize(ar);
    }
    catch (const CArchiveException& e)
    {
        // A version-4 chart ends its load this way with everything in place.
        if (e.m_cause != CArchiveException::readOnly)
            throw;
    }
    const CChartPointDArray* back = loaded.m_InputData.GetChartPointDArray(0);
    const bool ok = setup > 0.0 && hold > 0.0 && back && *back == dq;
    std::printf("example host: chart of %llu bytes read back %s\n",
                (unsigned long long)file.GetLength(), ok ? "intact" : "DIFFERENT");
    return ok ? 0 : 1;
}
