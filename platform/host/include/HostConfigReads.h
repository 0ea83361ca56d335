// Host-only record of the groups and keys the library asks the configuration
// store for, so that host tools can check that they know every one of them.
#ifndef HOST_CONFIG_READS_H
#define HOST_CONFIG_READS_H

#include <string>
#include <vector>

namespace HostPlatform {

enum class ConfigReadKind {
    Group,        // HasGroupConfiguration, GetKeyCount: `key` is empty
    Key,          // every read of one key; an indexed read forms "name[index]"
    IndexedKeys,  // GetLocaleKeyCount: `key` is the name of the "name[...]" keys
};

struct ConfigRead {
    ConfigReadKind kind = ConfigReadKind::Key;
    std::string group;
    std::string key;
};

// Off by default; while off a read costs one flag test more.
void SetConfigurationReadRecording(bool on);
// The distinct reads since the last call, in the order of their first read;
// forgets them.
std::vector<ConfigRead> TakeConfigurationReads();

}  // namespace HostPlatform

#endif  // HOST_CONFIG_READS_H
