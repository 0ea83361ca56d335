// The changes `explain` tries: for every input the library read while it
// configured the session (and ran the request), the values a user would try
// there, taken from the input's kind, the value shape of the library's key
// table and the values the session and the configuration already use.
#ifndef UILAYER_SIM_CANDIDATES_H
#define UILAYER_SIM_CANDIDATES_H

#include <HostConfigReads.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "CapabilityReference.h"
#include "experiment/Change.h"

namespace UilayerSim {

struct _Question {
    size_t session = 0;
    bool hasFrame = false;
    uint32_t frame = 0;
    // The operation mode the library configured (an override table may
    // rewrite the session's).
    uint32_t configuredMode = 0;
    // The conditions of the bit's rules, in the reference's words: the
    // values they name ("320x240") are worth trying.
    std::string words;
};

// `reads` as the experiments record them: a metadata read of a vendor tag has
// the key "vendor" and the vendor index as its tag.
// The single changes worth a rerun, without repeats: every value worth trying
// for the inputs of `focus` (the inputs of a bit's rules), the switches,
// removals and a few values for the others.
std::vector<_Change> CandidateChanges(const Scenario& scenario, const _Question& question,
                                      const std::vector<HostPlatform::ConfigRead>& reads,
                                      const std::vector<Lumora::_CapabilityInput>& focus);

// Whether `change` changes what `input` names (a key of the same table entry,
// the same property, tag, stream fact or operation mode).
bool ChangeTouches(const _Change& change, const Lumora::_CapabilityInput& input);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_CANDIDATES_H
