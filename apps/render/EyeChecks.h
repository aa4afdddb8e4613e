// Checks of plotvane-render's eye inputs against each other before they are
// measured, for the mistakes that otherwise give a report of confident
// nonsense: a period in other units than the data's time, levels in other
// units than the data's volts, a waveform in time given as a folded eye.
// An error throws ChartInputError; a doubtful case goes to warn. Each
// message names the likely mistake and the way out.
#pragma once

#include "render/Options.h"

#include <functional>
#include <string>
#include <vector>

namespace plotvane
{

using WarnFn = std::function<void(const std::string&)>;

// The X samples of the data eye (in file order) against --period, --fold
// and --skip: a folded eye spans about one period; a waveform to fold rises
// in time and holds whole periods after --skip. Eye times are seconds.
void CheckEyeTiming(const std::vector<double>& xs, const RenderOptions& options,
                    const WarnFn& warn);

// The data eye's Y range against --setup-level, --hold-level and --vref,
// and the required times against the period. Eye levels are volts.
void CheckEyeLevels(double dMinY, double dMaxY, const RenderOptions& options, const WarnFn& warn);

} // namespace plotvane
