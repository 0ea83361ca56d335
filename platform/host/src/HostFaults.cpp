// The fault plan: per kind, a call counter and the one call (or every call)
// that fails. Shims call ShouldFail from whichever thread the library runs on.
#include "HostFaults.h"

#include <atomic>

namespace HostPlatform {

namespace {

constexpr uint64_t kNoCall = 0;
constexpr uint64_t kEveryCall = UINT64_MAX;

struct KindPlan {
    std::atomic<uint64_t> calls{0};
    std::atomic<uint64_t> failing{kNoCall};
};

std::array<KindPlan, kFaultKindCount> g_plans;
std::atomic<uint64_t> g_injected{0};

KindPlan& Plan(FaultKind kind) {
    return g_plans[static_cast<size_t>(kind) % kFaultKindCount];
}

}  // namespace

const char* FaultKindName(FaultKind kind) {
    static constexpr std::array<const char*, kFaultKindCount> kNames = {
        "ConfigNotConfigured", "ConfigBadValue", "ConfigCount",
        "PropertyRead",        "FileOpen",       "FileRead",
        "FileShortRead",       "LibraryOpen",    "SymbolLookup",
        "MetadataFind",        "MetadataUpdate", "MetadataAdd"};
    const auto index = static_cast<size_t>(kind);
    return index < kNames.size() ? kNames[index] : "?";
}

void FailNth(FaultKind kind, uint64_t n) {
    Plan(kind).failing = n;
}

void FailEvery(FaultKind kind) {
    Plan(kind).failing = kEveryCall;
}

void ClearFaults() {
    for (KindPlan& plan : g_plans) {
        plan.calls = 0;
        plan.failing = kNoCall;
    }
    g_injected = 0;
}

FaultCounts CallCounts() {
    FaultCounts counts = {};
    for (size_t i = 0; i < kFaultKindCount; ++i) {
        counts[i] = g_plans[i].calls;
    }
    return counts;
}

uint64_t FaultsInjected() {
    return g_injected;
}

bool ShouldFail(FaultKind kind) {
    KindPlan& plan = Plan(kind);
    const uint64_t call = ++plan.calls;
    const uint64_t failing = plan.failing;
    const bool fail = failing == kEveryCall || (failing != kNoCall && failing == call);
    if (fail) {
        ++g_injected;
    }
    return fail;
}

}  // namespace HostPlatform
