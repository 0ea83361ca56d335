// The written form of numbers in scenarios and configuration files, apart
// from their range: tells a number too large to convert from text that is no
// number at all.
#ifndef UILAYER_SIM_NUMBER_TEXT_H
#define UILAYER_SIM_NUMBER_TEXT_H

#include <cstdint>
#include <string>

namespace UilayerSim {

// An optional sign, then decimal digits or 0x and hexadecimal digits, of any
// length.
bool IsIntegerSyntax(const std::string& text);
// Such a number within the range of a signed 64-bit value.
bool ParseIntegerText(const std::string& text, int64_t* value);
// Whether a float's text names nan or inf (strtod's "nan", "-inf", "infinity"
// or YAML's ".nan", ".Inf"): readers refuse those as values.
bool NamesNonFinite(const std::string& text);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_NUMBER_TEXT_H
