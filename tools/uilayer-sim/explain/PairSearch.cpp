#include "explain/PairSearch.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "explain/Explain.h"
#include "explain/ShapeCandidates.h"

namespace UilayerSim {

namespace {

// Six kinds of pairs share the bound, taken in turn:
enum PairKind : size_t {
    kReadBit,        // a change that turns a bit the rules read, with another input
                     // (CapsSHDRType2 wants CapsSnapshotRaw12 and a row)
    kOneRow,         // two values of one configuration row or key (a row applies
                     // when several of its values match the session)
    kOneStream,      // two fields of one stream
    kTwoInputs,      // two kinds of input of one rule (a key that lists the
                     // operation mode and a stream's format)
    kOperationMode,  // the operation mode with another change
    kOther,          // any other two
    kPairKinds,
};

// The most bits a step may set for a change that flips one of them to count
// as getting the step part of the way.
constexpr size_t kFewStepBits = 8;

// What one candidate's own rerun showed, and what it changes.
struct _Facts {
    bool paired = false;
    bool active = false;           // its rerun changed some caps
    bool named = false;            // the rules' words name its value
    bool near = false;             // it flipped another bit the same steps set
    bool elsewhere = false;        // it flipped the bit on another camera
    std::set<int64_t> turned;      // cameras on which it turned a bit the rules read
    int64_t streamCamera = -1;     // the camera of the stream it changes
    std::vector<uint32_t> inputs;  // per rule of the bit, the kinds of input it changes
    std::string place;
};

// Where a change is made, for taking pairs of places in turn: every added
// stream is one place.
std::string Place(const _Change& change) {
    const bool added =
        change.kind == ChangeKind::Stream && change.streamField.empty() && !change.remove;
    return added ? "added stream"
                 : change.target + "/" + change.streamField + std::to_string(change.field);
}

// The camera a stream change is about, -1 for none or the logical one.
int64_t StreamCamera(const _Change& change, const SessionSetup& session) {
    std::string id = change.stream.physicalId;
    for (const StreamSetup& stream : session.streams) {
        id = change.streamField.empty() || stream.name != change.target ? id : stream.physicalId;
    }
    const bool number = !id.empty() && id.find_first_not_of("0123456789") == std::string::npos;
    return change.kind == ChangeKind::Stream && number && id.size() < 6 ? std::stoll(id) : -1;
}

class PairSearch {
public:
    explicit PairSearch(const _PairQuestion& question)
        : m_question(question),
          m_candidates(*question.candidates),
          m_rules(Lumora::RulesOf(question.bit)) {
        for (size_t at = question.baseline.find(" C"); at != std::string::npos;
             at = question.baseline.find(" C", at + 1)) {
            m_cameras.push_back(std::stoll(question.baseline.substr(at + 2)));
        }
        for (const Lumora::_CapabilityRule* rule : m_rules) {
            for (const Lumora::_CapabilityInput& input : Lumora::ParseInputs(*rule)) {
                if (input.kind == Lumora::kInputCaps) {
                    m_readBits.push_back(static_cast<uint32_t>(std::stoul(input.value)));
                }
            }
        }
        // The other bits the steps that set this one set: a change that flips
        // one of them got the step part of the way.
        std::set<std::string> steps;
        for (const Lumora::_CapabilityRule* rule : m_rules) {
            if (rule->effect == Lumora::kEffectSets && (rule->scope & Scope()) != 0) {
                steps.insert(rule->step);
            }
        }
        std::map<std::string, std::set<uint32_t>> bitsOf;
        for (size_t i = 0; i < Lumora::CapabilityRuleCount(); ++i) {
            const Lumora::_CapabilityRule& rule = Lumora::CapabilityRules()[i];
            if (rule.effect == Lumora::kEffectSets && steps.count(rule.step) != 0) {
                bitsOf[rule.step].insert(rule.bit);
            }
        }
        // A step that sets many bits (the stream roles) says little.
        for (const auto& step : bitsOf) {
            if (step.second.size() <= kFewStepBits) {
                m_stepBits.insert(step.second.begin(), step.second.end());
            }
        }
        m_stepBits.erase(question.bit);
        for (size_t i = 0; i < m_candidates.size(); ++i) {
            m_facts.push_back(FactsOf(i));
        }
    }

    std::vector<std::pair<size_t, size_t>> Pairs(size_t bound, bool* stopped) const {
        std::vector<size_t> paired;
        for (size_t i = 0; i < m_facts.size(); ++i) {
            if (m_facts[i].paired) {
                paired.push_back(i);
            }
        }
        // Every two paired changes of different places; those most likely to
        // set the bit first.
        std::vector<std::pair<std::tuple<bool, int, int>, std::pair<size_t, size_t>>> ranked;
        for (size_t a = 0; a < paired.size(); ++a) {
            for (size_t b = a + 1; b < paired.size(); ++b) {
                const _Change& first = m_candidates[paired[a]];
                const _Change& second = m_candidates[paired[b]];
                const bool sameValue = first.kind == second.kind && first.target == second.target &&
                                       first.field == second.field &&
                                       first.streamField == second.streamField;
                if (!sameValue) {
                    const std::pair<size_t, size_t> pair(paired[a], paired[b]);
                    ranked.emplace_back(Rank(pair), pair);
                }
            }
        }
        std::stable_sort(ranked.begin(), ranked.end(),
                         [](const auto& a, const auto& b) { return a.first > b.first; });
        std::vector<std::pair<size_t, size_t>> kinds[kPairKinds];
        for (const auto& each : ranked) {
            kinds[KindOf(each.second)].push_back(each.second);
        }
        for (size_t kind = kReadBit; kind <= kOperationMode; ++kind) {
            kinds[kind] = PlacesInTurn(kinds[kind], bound);
        }
        std::vector<std::pair<size_t, size_t>> pairs;
        for (size_t i = 0; pairs.size() <= bound && i < ranked.size(); ++i) {
            for (const auto& kind : kinds) {
                if (i < kind.size()) {
                    pairs.push_back(kind[i]);
                }
            }
        }
        *stopped = pairs.size() > bound;
        pairs.resize(std::min(pairs.size(), bound));
        return pairs;
    }

private:
    // The sets of caps the question is about.
    uint8_t Scope() const {
        return m_question.hasFrame ? (m_question.camera < 0 ? Lumora::kScopeRequestLogical
                                                            : Lumora::kScopeRequestPhysical)
                                   : (m_question.camera < 0 ? Lumora::kScopeSessionLogical
                                                            : Lumora::kScopeSessionPhysical);
    }

    bool TurnsReadBitOn(size_t i, int64_t camera) const {
        const std::string& probe = (*m_question.probes)[i];
        return std::any_of(m_readBits.begin(), m_readBits.end(), [&](uint32_t bit) {
            return BitOfProbe(probe, camera, bit) != BitOfProbe(m_question.baseline, camera, bit);
        });
    }

    _Facts FactsOf(size_t i) const {
        const _Change& change = m_candidates[i];
        const std::string& probe = (*m_question.probes)[i];
        _Facts facts;
        facts.active = probe != m_question.baseline;
        const std::string value = ChangeValue(change);
        const bool word =
            value.size() >= 4 || value.find_first_of("0123456789") == std::string::npos;
        facts.named = !value.empty() && word && m_question.words.find(value) != std::string::npos;
        for (const int64_t camera : m_cameras) {
            if (TurnsReadBitOn(i, camera)) {
                facts.turned.insert(camera);
            }
            for (const uint32_t bit : m_stepBits) {
                facts.near = facts.near || BitOfProbe(probe, camera, bit) !=
                                               BitOfProbe(m_question.baseline, camera, bit);
            }
            facts.elsewhere =
                facts.elsewhere || (camera != m_question.camera &&
                                    BitOfProbe(probe, camera, m_question.bit) !=
                                        BitOfProbe(m_question.baseline, camera, m_question.bit));
        }
        facts.streamCamera = StreamCamera(change, *m_question.session);
        facts.place = Place(change);
        const uint8_t scope = Scope();
        bool touches = false;
        for (const Lumora::_CapabilityRule* rule : m_rules) {
            facts.inputs.push_back(0);
            for (const Lumora::_CapabilityInput& input : Lumora::ParseInputs(*rule)) {
                if ((rule->scope & scope) != 0 && rule->effect == Lumora::kEffectSets &&
                    ChangeTouches(change, input)) {
                    facts.inputs.back() |= 1u << (input.kind % 32);
                    touches = true;
                }
            }
        }
        facts.paired = (touches && change.sessionValue) || !facts.turned.empty();
        return facts;
    }

    // A change that turns a read bit on one camera goes first with the
    // changes of that camera's streams; so does a change that set the bit on
    // another camera with the other values of its row (a row that applies,
    // for the wrong cameras).
    bool SameCamera(const std::pair<size_t, size_t>& pair) const {
        const _Facts& a = m_facts[pair.first];
        const _Facts& b = m_facts[pair.second];
        const _Change& first = m_candidates[pair.first];
        const _Change& second = m_candidates[pair.second];
        const bool oneRow = first.kind == ChangeKind::Config && first.target == second.target &&
                            first.base == second.base && first.field != second.field;
        return (a.streamCamera >= 0 && b.turned.count(a.streamCamera) != 0) ||
               (b.streamCamera >= 0 && a.turned.count(b.streamCamera) != 0) ||
               (oneRow && (a.elsewhere || b.elsewhere));
    }

    // Such pairs first, then values the rules' words name (YCBCR_P010, RAW12,
    // an operation mode) and changes that got the bit's steps part of the
    // way, then changes that each changed some caps alone.
    std::tuple<bool, int, int> Rank(const std::pair<size_t, size_t>& pair) const {
        const _Facts& a = m_facts[pair.first];
        const _Facts& b = m_facts[pair.second];
        return std::make_tuple(SameCamera(pair), a.named + b.named + a.near + b.near,
                               a.active + b.active);
    }

    // Two changes of different inputs of one rule: a stream and the key that
    // lists the operation mode for it, a client and the row that admits it.
    bool CrossInputs(const std::pair<size_t, size_t>& pair) const {
        const std::vector<uint32_t>& a = m_facts[pair.first].inputs;
        const std::vector<uint32_t>& b = m_facts[pair.second].inputs;
        for (size_t r = 0; r < a.size() && r < b.size(); ++r) {
            if (a[r] != 0 && b[r] != 0 && a[r] != b[r]) {
                return true;
            }
        }
        return false;
    }

    PairKind KindOf(const std::pair<size_t, size_t>& pair) const {
        const _Change& first = m_candidates[pair.first];
        const _Change& second = m_candidates[pair.second];
        if (m_facts[pair.first].turned.empty() != m_facts[pair.second].turned.empty()) {
            return kReadBit;
        }
        if (first.target == second.target) {
            return first.kind == ChangeKind::Config ? kOneRow : kOneStream;
        }
        if (first.target == kOperationModeTarget || second.target == kOperationModeTarget) {
            return kOperationMode;
        }
        return CrossInputs(pair) ? kTwoInputs : kOther;
    }

    // Each pair of places in turn (format with use case, a key with a
    // format, the mode with a size); within a place every value of either
    // side early: pairs in order of the later of their two values' turns.
    std::vector<std::pair<size_t, size_t>> PlacesInTurn(
        const std::vector<std::pair<size_t, size_t>>& pairs, size_t bound) const {
        // Pairs of one camera come first, as ranked; then the places in turn.
        std::vector<std::pair<size_t, size_t>> out;
        std::map<std::string, std::vector<std::pair<size_t, size_t>>> places;
        for (const auto& pair : pairs) {
            if (SameCamera(pair)) {
                out.push_back(pair);
                continue;
            }
            const std::string& one = m_facts[pair.first].place;
            const std::string& two = m_facts[pair.second].place;
            places[std::min(one, two) + "|" + std::max(one, two)].push_back(pair);
        }
        for (auto& place : places) {
            std::map<size_t, size_t> turn;
            for (const auto& pair : place.second) {
                turn.emplace(pair.first, turn.size());
                turn.emplace(pair.second, turn.size());
            }
            std::vector<std::pair<size_t, std::pair<size_t, size_t>>> shells;
            for (const auto& pair : place.second) {
                shells.push_back({std::max(turn[pair.first], turn[pair.second]), pair});
            }
            std::stable_sort(shells.begin(), shells.end(),
                             [](const auto& a, const auto& b) { return a.first < b.first; });
            for (size_t i = 0; i < shells.size(); ++i) {
                place.second[i] = shells[i].second;
            }
        }
        for (size_t i = 0; out.size() < bound; ++i) {
            const size_t before = out.size();
            for (const auto& place : places) {
                if (i < place.second.size()) {
                    out.push_back(place.second[i]);
                }
            }
            if (out.size() == before) {
                break;
            }
        }
        return out;
    }

    const _PairQuestion& m_question;
    const std::vector<_Change>& m_candidates;
    const std::vector<const Lumora::_CapabilityRule*> m_rules;
    std::vector<int64_t> m_cameras = {-1};
    std::vector<uint32_t> m_readBits;
    std::set<uint32_t> m_stepBits;
    std::vector<_Facts> m_facts;
};

}  // namespace

std::vector<std::pair<size_t, size_t>> PairsToTry(const _PairQuestion& question, size_t bound,
                                                  bool* stopped) {
    return PairSearch(question).Pairs(bound, stopped);
}

}  // namespace UilayerSim
