// "Did you mean" for names given on the command line or in a scenario: the
// closest known name when it is near enough to be a typo.
#ifndef UILAYER_SIM_SUGGEST_H
#define UILAYER_SIM_SUGGEST_H

#include <cstddef>
#include <string>
#include <vector>

namespace UilayerSim {

// Edit distance (insertions, deletions, substitutions) of two names.
size_t EditDistance(const std::string& a, const std::string& b);

// The known name closest to `name` when it differs only in case or by at most
// a quarter of its length in edits (at least one, at most three; case ignored,
// two swapped neighbours count as one edit); empty when none is that close or `name` is known.
std::string ClosestName(const std::string& name, const std::vector<std::string>& known);

// " (did you mean \"X\"?)" with the closest name, or empty.
std::string DidYouMean(const std::string& name, const std::vector<std::string>& known);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SUGGEST_H
