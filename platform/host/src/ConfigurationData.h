// The configuration text the store holds, with its groups and keys found by
// name.
#ifndef HOST_CONFIGURATION_DATA_H
#define HOST_CONFIGURATION_DATA_H

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include <HostConfigText.h>

namespace HostPlatform {
namespace Internal {

class ConfigurationData {
public:
    ConfigurationData() = default;
    explicit ConfigurationData(ConfigText text) : m_text(std::move(text)) {
        for (ConfigGroup& group : m_text.groups) {
            m_groups.emplace(group.name, &group);
            for (ConfigKey& key : group.keys) {
                m_keys.emplace(KeyPath(group.name, key.name), &key);
            }
        }
    }
    // The index points into the text.
    ConfigurationData(const ConfigurationData&) = delete;
    ConfigurationData& operator=(const ConfigurationData&) = delete;

    ConfigGroup* FindGroup(std::string_view name) { return Find(m_groups, std::string(name)); }
    ConfigKey* FindKey(std::string_view group, std::string_view key) {
        return Find(m_keys, KeyPath(group, key));
    }

private:
    // "group\nkey": a line break ends a name in the text, so no two pairs meet.
    static std::string KeyPath(std::string_view group, std::string_view key) {
        return std::string(group).append(1, '\n').append(key);
    }
    template <typename T>
    static T* Find(const std::unordered_map<std::string, T*>& index, const std::string& name) {
        const auto found = index.find(name);
        return found != index.end() ? found->second : nullptr;
    }

    ConfigText m_text;
    std::unordered_map<std::string, ConfigGroup*> m_groups;
    std::unordered_map<std::string, ConfigKey*> m_keys;
};

}  // namespace Internal
}  // namespace HostPlatform

#endif  // HOST_CONFIGURATION_DATA_H
