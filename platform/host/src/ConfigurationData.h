// The configuration text the store holds, with its groups and keys found by
// name.
#ifndef HOST_CONFIGURATION_DATA_H
#define HOST_CONFIGURATION_DATA_H

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <HostConfigText.h>

namespace HostPlatform {
namespace Internal {

class ConfigurationData {
public:
    ConfigurationData() = default;
    explicit ConfigurationData(ConfigText text);

    ConfigGroup* FindGroup(std::string_view name);
    ConfigKey* FindKey(std::string_view group, std::string_view key);

private:
    ConfigText m_text;
    std::unordered_map<std::string, size_t> m_groupIndex;
    // Per group: key name to its place in the group.
    std::vector<std::unordered_map<std::string, size_t>> m_keyIndex;
};

}  // namespace Internal
}  // namespace HostPlatform

#endif  // HOST_CONFIGURATION_DATA_H
