// Feeds arbitrary bytes to the CSV reader, as io::ReadCsv (x,y1,y2,...) and
// in the two layouts of plotvane-render (x,y and column pairs). Bad input
// must surface as ReadError or CsvError.
#include <plotvane/io/CsvReader.h>
#include <plotvane/io/SignalFile.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    try
    {
        const plotvane::io::SignalFile file = plotvane::io::ReadCsv(bytes, "fuzz.csv");
        for (const plotvane::io::Vector& v : file.plots.at(0).vectors)
        {
            if (v.size() != file.plots[0].vectors.front().size() || v.size() == 0)
                std::abort();
        }
    }
    catch (const plotvane::io::ReadError&)
    {
    }
    for (bool bPairs : {false, true})
    {
        plotvane::CsvReadOptions options;
        options.bColumnPairs = bPairs;
        try
        {
            const plotvane::CsvTable table = plotvane::ParseCsv(bytes, "fuzz.csv", options);
            for (const plotvane::CsvSeries& s : table.series)
            {
                if (s.x.size() != s.y.size())
                    std::abort();
            }
        }
        catch (const plotvane::CsvError&)
        {
        }
    }
    return 0;
}
