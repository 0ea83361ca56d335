// Which pairs of candidate changes explain tries, and in which order, when no
// single change sets a clear bit.
#ifndef UILAYER_SIM_PAIR_SEARCH_H
#define UILAYER_SIM_PAIR_SEARCH_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "experiment/Change.h"

namespace UilayerSim {

// A question and the single reruns already made for it.
struct _PairQuestion {
    uint32_t bit = 0;
    int64_t camera = -1;  // -1: the logical camera
    bool hasFrame = false;
    const SessionSetup* session = nullptr;
    std::string words;     // the conditions of the bit's rules
    std::string baseline;  // the unchanged rerun's probe
    const std::vector<_Change>* candidates = nullptr;
    const std::vector<std::string>* probes = nullptr;  // one per candidate
};

// At most `bound` pairs of indices into the candidates, most promising first;
// `stopped` says whether more were left out.
std::vector<std::pair<size_t, size_t>> PairsToTry(const _PairQuestion& question, size_t bound,
                                                  bool* stopped);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_PAIR_SEARCH_H
