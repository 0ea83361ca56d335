// What the kit writes into metadata that the library defines: the vendor tag
// indexes of the records it builds, the layout of the AEC stage's records and
// the place of the MLFT switch. The kit does not include the library's private
// headers: the host bridge (bridge/LibraryFacts.cpp, the one host file compiled
// against them) gives these values and checks the AEC record against the
// library's, so each fact stays written once, in the library.
#ifndef HOSTKIT_LIBRARY_FACTS_H
#define HOSTKIT_LIBRARY_FACTS_H

#include <cstddef>
#include <cstdint>

namespace HostKit {

// One record of the exposure count list, as the AEC stage writes it.
struct AecRecord {
    int32_t cameraId;
    float aecValue1;
    float aecValue2;
    int32_t expCount;
    uint32_t extra;
};

struct _LibraryFacts {
    uint32_t cameraInfoTag;         // vendor tag index of the sibling's camera record
    uint32_t sensorModeListTag;     // of a request's sensor mode list
    uint32_t exposureCountListTag;  // of a result's AEC records
    uint32_t mlftParametersTag;     // of a result's MLFT parameter block
    size_t aecRecordCount;          // records the library reads of the list
    size_t mlftSwitchOffset;        // byte offset of the MLFT enable switch
};

const _LibraryFacts& LibraryFacts();

}  // namespace HostKit

#endif  // HOSTKIT_LIBRARY_FACTS_H
