// Host-only record of what the library reads: the groups and keys it asks the
// configuration store for, the system properties and the metadata entries it
// looks up, so that host tools know every input of a run.
#ifndef HOST_CONFIG_READS_H
#define HOST_CONFIG_READS_H

#include <cstdint>
#include <string>
#include <vector>

namespace HostPlatform {

enum class ConfigReadKind {
    Group,        // HasGroupConfiguration, GetKeyCount: `key` is empty
    Key,          // every read of one key; an indexed read forms "name[index]"
    IndexedKeys,  // GetLocaleKeyCount: `key` is the name of the "name[...]" keys
    Property,     // a property_get*: `group` is the property, `key` the default passed
    Metadata,     // a find_camera_metadata_*entry: `metadata` and `tag`
};

struct ConfigRead {
    ConfigReadKind kind = ConfigReadKind::Key;
    std::string group;
    std::string key;
    const void* metadata = nullptr;
    uint32_t tag = 0;
};

// Off by default; while off a read costs one flag test more.
void SetConfigurationReadRecording(bool on);
// The distinct reads since the last call, in the order of their first read;
// forgets them.
std::vector<ConfigRead> TakeConfigurationReads();

}  // namespace HostPlatform

#endif  // HOST_CONFIG_READS_H
