// Host-only fault plan for the platform calls the library makes: "fail the
// n-th call of kind K" or "fail every call of kind K". Nothing consults the
// plan unless the library's platform references are routed through the fault
// shims (the fault sweep build does this); every other build pays nothing.
#ifndef HOST_PLATFORM_HOST_FAULTS_H
#define HOST_PLATFORM_HOST_FAULTS_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace HostPlatform {

// What a failing call of each kind does.
enum class FaultKind : uint32_t {
    ConfigNotConfigured,  // a typed or string read: status 6, output untouched
    ConfigBadValue,       // a typed read: status 22, output untouched
    ConfigCount,          // a key, value or group count: 0
    PropertyRead,         // the property reads as unset: the default
    FileOpen,             // open or fopen: -1 / null with ENOENT
    FileRead,             // read: -1 with EIO; a formatted read: EOF with EIO
    FileShortRead,        // fewer bytes than the file holds (the first half)
    LibraryOpen,          // dlopen: null
    SymbolLookup,         // dlsym: null
    MetadataFind,         // find: not found
    MetadataUpdate,       // update: error, the entry unchanged
    MetadataAdd,          // add: error, as for a full buffer
};
constexpr size_t kFaultKindCount = static_cast<size_t>(FaultKind::MetadataAdd) + 1;

using FaultCounts = std::array<uint64_t, kFaultKindCount>;

// The kind's name as the sweep prints it ("ConfigNotConfigured" ...).
const char* FaultKindName(FaultKind kind);

// Plans the failure of the n-th call (1-based) of `kind` counted from the last
// ClearFaults. One planned call per kind; a new plan replaces the old one.
void FailNth(FaultKind kind, uint64_t n);
// Plans the failure of every call of `kind`.
void FailEvery(FaultKind kind);
// Forgets every plan and resets the call counts and the injected count.
void ClearFaults();
// Calls of each kind since the last ClearFaults (failed calls included).
FaultCounts CallCounts();
// Calls that were made to fail since the last ClearFaults.
uint64_t FaultsInjected();

// For the fault shims: counts one call of `kind` and tells whether the plan
// makes it fail.
bool ShouldFail(FaultKind kind);

}  // namespace HostPlatform

#endif  // HOST_PLATFORM_HOST_FAULTS_H
