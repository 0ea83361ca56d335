// Parsed form of a host configuration text, shared by the parser and the store.
#ifndef HOST_CONFIGURATION_DATA_H
#define HOST_CONFIGURATION_DATA_H

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace HostPlatform {
namespace Internal {

struct ConfigurationKey {
    std::string name;
    std::vector<std::string> values;
};

// Keys in file order, with an index by name.
class ConfigurationGroup {
public:
    // Adds the key, or replaces the values of an existing key in its place.
    void Set(std::string name, std::vector<std::string> values);
    ConfigurationKey* Find(std::string_view name);
    const std::vector<ConfigurationKey>& Keys() const { return m_keys; }

private:
    std::vector<ConfigurationKey> m_keys;
    std::unordered_map<std::string, size_t> m_index;
};

class ConfigurationData {
public:
    // The group of that name, created at the end when new.
    ConfigurationGroup& Open(const std::string& name);
    ConfigurationGroup* Find(std::string_view name);

private:
    std::vector<ConfigurationGroup> m_groups;
    std::unordered_map<std::string, size_t> m_index;
};

// Parses `text`. Returns 0 and fills `data`, or returns the 1-based number of
// the first malformed line (and `data` is to be thrown away).
int ParseConfiguration(std::string_view text, ConfigurationData* data);

}  // namespace Internal
}  // namespace HostPlatform

#endif  // HOST_CONFIGURATION_DATA_H
