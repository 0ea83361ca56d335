#include "ConfigurationReads.h"

#include <mutex>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace HostPlatform {
namespace Internal {

std::atomic<bool> g_recordConfigurationReads{false};

namespace {

struct ReadRecord {
    std::mutex mutex;
    std::vector<ConfigRead> reads;
    std::set<std::tuple<ConfigReadKind, std::string, std::string, const void*, uint32_t>> seen;
};

ReadRecord& TheRecord() {
    // Never destroyed, like the store it watches.
    static ReadRecord* record = new ReadRecord();
    return *record;
}

}  // namespace

void RecordConfigurationRead(ConfigReadKind kind, std::string_view group, std::string_view key,
                             const void* metadata, uint32_t tag) {
    ReadRecord& record = TheRecord();
    std::lock_guard<std::mutex> lock(record.mutex);
    if (record.seen.emplace(kind, std::string(group), std::string(key), metadata, tag).second) {
        record.reads.push_back(
            ConfigRead{kind, std::string(group), std::string(key), metadata, tag});
    }
}

}  // namespace Internal

void SetConfigurationReadRecording(bool on) {
    Internal::g_recordConfigurationReads.store(on, std::memory_order_relaxed);
}

std::vector<ConfigRead> TakeConfigurationReads() {
    Internal::ReadRecord& record = Internal::TheRecord();
    std::lock_guard<std::mutex> lock(record.mutex);
    record.seen.clear();
    return std::exchange(record.reads, {});
}

}  // namespace HostPlatform
