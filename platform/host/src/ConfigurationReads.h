// The store's side of the read record: one relaxed flag test while it is off.
#ifndef HOST_CONFIGURATION_READS_H
#define HOST_CONFIGURATION_READS_H

#include <atomic>
#include <string_view>

#include <HostConfigReads.h>

namespace HostPlatform {
namespace Internal {

extern std::atomic<bool> g_recordConfigurationReads;

void RecordConfigurationRead(ConfigReadKind kind, std::string_view group, std::string_view key,
                             const void* metadata = nullptr, uint32_t tag = 0);

// `group` stays a C string so that nothing is measured while the record is off.
inline void NoteConfigurationRead(ConfigReadKind kind, const char* group, std::string_view key,
                                  const void* metadata = nullptr, uint32_t tag = 0) {
    if (g_recordConfigurationReads.load(std::memory_order_relaxed)) {
        RecordConfigurationRead(kind, group != nullptr ? group : "", key, metadata, tag);
    }
}

}  // namespace Internal
}  // namespace HostPlatform

#endif  // HOST_CONFIGURATION_READS_H
