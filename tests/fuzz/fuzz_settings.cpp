// Feeds arbitrary bytes to the settings reader as if they were "Chart.uis".
// Stream faults must surface as archive exceptions, never as crashes, hangs
// or allocations beyond what the input can hold.
#include <plotvane/document/GLPlotvane_Environment.h>

#include <plotvane/foundation/Exceptions.h>
#include <plotvane/foundation/MFCFile.h>

#include <cstddef>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // The memory file wraps the block without copying, so give it its own.
    std::vector<BYTE> bytes(data, data + size);
    CMemFile file(bytes.data(), UINT(bytes.size()));
    CGLPlotvane_Environment env;
    try
    {
        CArchive ar(&file, CArchive::load, 4096);
        env.Serialize(ar);
        ar.Close();
        // What was read must be usable.
        (void)env.GetColorSetCount();
        (void)env.GetColorSet();
    }
    catch (const CException&)
    {
    }
    return 0;
}
