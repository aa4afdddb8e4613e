// Feeds arbitrary bytes to the Touchstone reader, under a name whose port
// count the first byte picks (or none, so that the reader guesses it).
// Bad input must surface as ReadError; what is read must convert.
#include <plotvane/io/SignalFile.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    static const char* const kNames[] = {"fuzz.s1p", "fuzz.s2p", "fuzz.s3p", "fuzz.s4p", "fuzz"};
    const std::string name = kNames[data[0] % 5];
    const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    try
    {
        const plotvane::io::TouchstoneData t = plotvane::io::ReadTouchstone(bytes, name);
        const std::size_t n = std::size_t(t.ports) * std::size_t(t.ports);
        if (t.data.size() != t.frequencyHz.size())
            std::abort();
        for (const auto& values : t.data)
        {
            if (values.size() != n)
                std::abort();
        }
        if (plotvane::io::InputImpedanceMagnitude(t).size() != t.data.size())
            std::abort();
        if (plotvane::io::ToSignalFile(t).plots.at(0).vectors.size() != n + 1)
            std::abort();
    }
    catch (const plotvane::io::ReadError&)
    {
    }
    return 0;
}
