// The written form of numbers in scenarios and configuration files, apart
// from their range: tells a number too large to convert from text that is no
// number at all.
#ifndef UILAYER_SIM_NUMBER_TEXT_H
#define UILAYER_SIM_NUMBER_TEXT_H

#include <string>

namespace UilayerSim {

// An optional sign, then decimal digits or 0x and hexadecimal digits, of any
// length.
bool IsIntegerSyntax(const std::string& text);
// Whether a float's text names nan or inf (strtod's "nan", "-inf", "infinity"
// or YAML's ".nan", ".Inf"): readers refuse those as values.
bool NamesNonFinite(const std::string& text);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_NUMBER_TEXT_H
