// The decimal exponent that _ecvt(value, 10, ...) reports: where the decimal
// point stands relative to the first of ten significant digits, after
// rounding to ten digits. 1234 gives 4, 0.05 gives -1, 9999999999.6 gives 11
// and 0.0 gives 0. All decade logic of the charts rests on it.
#pragma once

namespace plotvane
{
int dec(double value);
} // namespace plotvane
