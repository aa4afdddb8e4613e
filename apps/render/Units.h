// Numbers with SI prefixes and units as plotvane-render reads them from the
// command line and shows them in messages, and the units of axis names.
#pragma once

#include <string>

namespace plotvane
{

// Reads a number with an optional SI prefix and unit: "1.25n", "100p",
// "2.5ns", "3.3V", "10mV", "-0.2 V", "1e-9". unit is the option's unit ("s",
// "V", "Hz", "Ohm"); a bare number is worth dBareScale of it (1 for seconds,
// 1e-12 for an option in ps). Prefixes: f p n u m k M G T, "meg" for mega
// and "µ" for micro. The value comes back in the unit itself; bSuffix tells
// whether a prefix or the unit was written. False, with why, for anything
// else.
bool ParseQuantity(const std::string& text, const std::string& unit, double dBareScale,
                   double& value, bool& bSuffix, std::string& why);

// Engineering text for messages: 1.25e-9 with "s" gives "1.25 ns".
std::string FormatQuantity(double value, const std::string& unit);

// The power of ten, a multiple of 3 from -12 to 12, that shows dMaxAbs as a
// number from 0.5 up to 500; 0 for 0.
int EngineeringPower(double dMaxAbs);
// "p", "n", "u", "m", "", "k", "M", "G", "T" for the powers -12 to 12.
const char* PrefixText(int nPower);

// A unit as a header writes it: "ns" is the second scaled by 1e-9, "Hz"
// the hertz itself. Units it does not know come back whole with scale 1.
struct UnitName
{
    std::string base;
    double dScale = 1.0;
};
UnitName SplitUnit(const std::string& text);

// Splits "Time (s)" or "V(out) [V]" into the name and the unit in its last
// brackets; a name without a trailing bracketed unit keeps it all. An empty
// "()" is dropped.
void SplitNameAndUnit(const std::string& text, std::string& name, std::string& unit);

// The unit that a vector's name or kind implies: "time" or "t" is "s",
// "frequency" "Hz", "v(...)" or "voltage" "V", "i(...)" or "current" "A";
// empty when nothing does.
std::string GuessUnit(const std::string& name, const std::string& kind);

} // namespace plotvane
