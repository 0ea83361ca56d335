#include "core/Suggest.h"

#include <algorithm>
#include <cctype>

namespace UilayerSim {

namespace {

constexpr size_t kMaxSuggestionEdits = 3;

std::string Lower(const std::string& text) {
    std::string lower = text;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(tolower(c)); });
    return lower;
}

// Edit distance; with `swapIsOneEdit`, swapping two neighbours, the most
// common typo ("BLBO"), counts as one edit.
size_t Distance(const std::string& a, const std::string& b, bool swapIsOneEdit) {
    std::vector<std::vector<size_t>> d(a.size() + 1, std::vector<size_t>(b.size() + 1));
    for (size_t i = 0; i <= a.size(); ++i) {
        d[i][0] = i;
    }
    for (size_t j = 0; j <= b.size(); ++j) {
        d[0][j] = j;
    }
    for (size_t i = 1; i <= a.size(); ++i) {
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t cost = a[i - 1] == b[j - 1] ? 0 : 1;
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + cost});
            if (swapIsOneEdit && i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
            }
        }
    }
    return d[a.size()][b.size()];
}

}  // namespace

size_t EditDistance(const std::string& a, const std::string& b) {
    return Distance(a, b, false);
}

std::string ClosestName(const std::string& name, const std::vector<std::string>& known) {
    if (std::find(known.begin(), known.end(), name) != known.end()) {
        return std::string();
    }
    const std::string lower = Lower(name);
    const size_t limit = std::min(kMaxSuggestionEdits, std::max<size_t>(1, name.size() / 4));
    std::string best;
    size_t bestDistance = limit + 1;
    for (const std::string& candidate : known) {
        const size_t distance = Distance(lower, Lower(candidate), true);
        if (distance < bestDistance) {
            best = candidate;
            bestDistance = distance;
        }
    }
    return best;
}

std::string DidYouMean(const std::string& name, const std::vector<std::string>& known) {
    const std::string closest = ClosestName(name, known);
    return closest.empty() ? std::string() : " (did you mean \"" + closest + "\"?)";
}

}  // namespace UilayerSim
