#include "ConfigurationData.h"

#include <utility>

namespace HostPlatform {
namespace Internal {

ConfigurationData::ConfigurationData(ConfigText text) : m_text(std::move(text)) {
    m_keyIndex.resize(m_text.groups.size());
    for (size_t g = 0; g < m_text.groups.size(); ++g) {
        const ConfigGroup& group = m_text.groups[g];
        m_groupIndex.emplace(group.name, g);
        for (size_t k = 0; k < group.keys.size(); ++k) {
            m_keyIndex[g].emplace(group.keys[k].name, k);
        }
    }
}

ConfigGroup* ConfigurationData::FindGroup(std::string_view name) {
    const auto found = m_groupIndex.find(std::string(name));
    return found != m_groupIndex.end() ? &m_text.groups[found->second] : nullptr;
}

ConfigKey* ConfigurationData::FindKey(std::string_view group, std::string_view key) {
    const auto foundGroup = m_groupIndex.find(std::string(group));
    if (foundGroup == m_groupIndex.end()) {
        return nullptr;
    }
    const std::unordered_map<std::string, size_t>& keys = m_keyIndex[foundGroup->second];
    const auto foundKey = keys.find(std::string(key));
    return foundKey != keys.end() ? &m_text.groups[foundGroup->second].keys[foundKey->second]
                                  : nullptr;
}

}  // namespace Internal
}  // namespace HostPlatform
