// Host-only hooks of the platform stand-ins, for tests and host tools.
#ifndef HOST_PLATFORM_H
#define HOST_PLATFORM_H

#include <string>
#include <vector>

namespace HostPlatform {

// Replaces the configuration store with `text` (host file format). Returns 0,
// or the 1-based number of the first malformed line; a refused text leaves the
// store as it was.
int LoadConfiguration(const char* text);
// The same from a file; -1 when the file cannot be read.
int LoadConfigurationFile(const char* path);
// The values of a key of the loaded configuration, without recording a read;
// false when the key is absent.
bool PeekConfiguration(const std::string& group, const std::string& key,
                       std::vector<std::string>* values);
// Forgets every property set so far.
void ResetProperties();
// Sets the five logger switches.
void SetLogSwitches(bool error, bool warning, bool info, bool verbose, bool system);
// Texts written through __android_log_write since the last call, oldest first.
std::vector<std::string> TakeAndroidLog();
// For each OLog::LogSystem call since the last call: "<level> <message>".
std::vector<std::string> TakeCameraLog();

}  // namespace HostPlatform

#endif  // HOST_PLATFORM_H
