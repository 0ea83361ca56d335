// Conversions of configuration values, the same for the host configuration
// store's typed reads and for the host tools that check or read the text. Each
// one takes the whole text or fails; nothing is written on failure.
#ifndef HOST_CONFIG_VALUES_H
#define HOST_CONFIG_VALUES_H

#include <cstdint>
#include <string>

namespace HostPlatform {

enum class NumberStatus {
    Ok,
    NotANumber,  // not an optional sign and decimal or 0x hexadecimal digits
    OutOfRange,  // a number, but outside what the read takes
};

// Optional sign, then decimal digits or 0x/0X and hexadecimal digits. Gives
// the sign and the magnitude; out of range past 64 bits of magnitude.
NumberStatus ParseIntegerMagnitude(const std::string& text, bool* negative, uint64_t* magnitude);
// -2147483648 .. 4294967295, wrapped to 32 bits: "-1" gives 0xFFFFFFFF.
NumberStatus ParseUInt32(const std::string& text, uint32_t* out);
// The same range, as the signed view of the 32 bits.
NumberStatus ParseInt32(const std::string& text, int32_t* out);
// INT64_MIN .. UINT64_MAX, wrapped to 64 bits.
NumberStatus ParseInt64(const std::string& text, int64_t* out);
// "true", "false" in any case, "1", "0".
bool ParseBoolean(const std::string& text, bool* out);
// A float as strtof reads it, the whole text.
bool ParseFloat(const std::string& text, float* out);

}  // namespace HostPlatform

#endif  // HOST_CONFIG_VALUES_H
