// Expected bytes of the document's records that several archive tests share.
#pragma once

#include "foundation/archive_bytes.h"

#include <string>

namespace plotvane_test
{
// A default text record: version 2, zero position, empty text, visible,
// white, 12 points, zero size.
inline Bytes DefaultText()
{
    return Bytes().I32(2).F64(0).F64(0).Str("").I32(1).I32(0xFFFFFF).I32(12).F64(0).F64(0);
}

// An axis from 0 to 100 with a grid interval of 1, not set by hand.
inline Bytes Axis(const std::string& name, int minExp, const std::string& unitName,
                  double unit = 1.0, int bUnitByHand = 0)
{
    Bytes b;
    b.I32(1).Str(name).F64(0.0).F64(100.0).I32(minExp).Str(unitName);
    return b.F64(1.0).I32(0).F64(unit).I32(bUnitByHand);
}
} // namespace plotvane_test
