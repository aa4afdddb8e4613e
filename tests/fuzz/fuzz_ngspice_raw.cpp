// Feeds arbitrary bytes to the ngspice raw reader. Bad input must surface
// as ReadError, never as a crash, a read past the end or an allocation
// that the input cannot justify; what is read must hold together.
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
        const plotvane::io::SignalFile file = plotvane::io::ReadNgspiceRaw(bytes, "fuzz.raw");
        for (const plotvane::io::Plot& plot : file.plots)
        {
            for (const plotvane::io::Vector& v : plot.vectors)
            {
                if (v.size() != plot.vectors.front().size())
                    std::abort();
            }
        }
    }
    catch (const plotvane::io::ReadError&)
    {
    }
    return 0;
}
