// The candidate changes of a session's shape: its operation mode, its streams
// and its device files; CandidateChanges adds them to those of the inputs read.
#ifndef UILAYER_SIM_SHAPE_CANDIDATES_H
#define UILAYER_SIM_SHAPE_CANDIDATES_H

#include <HostConfigText.h>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "experiment/Change.h"

namespace UilayerSim {

// The frame sizes ("320x240") a text names, as width << 32 | height.
std::vector<int64_t> NamedSizes(const std::string& text);

class ShapeCandidates {
public:
    ShapeCandidates(const Scenario& scenario, const SessionSetup& session,
                    const HostPlatform::ConfigText& config, const std::set<uint32_t>& modes,
                    std::function<bool(const _Change&)> relevant,
                    std::function<void(const _Change&)> add, bool hasFrame,
                    const std::string& words = "")
        : m_scenario(scenario),
          m_session(session),
          m_config(config),
          m_operationModes(modes),
          Relevant(std::move(relevant)),
          Add(std::move(add)),
          m_hasFrame(hasFrame),
          m_namedSizes(NamedSizes(words)) {}

    // The operation modes the configuration names, the reference names
    // (`modes`) and the two plain ones.
    void OperationModeCandidates();
    // Each stream removed; for streams that the focus reads, every field
    // changed; streams added.
    void StreamCandidates();
    // Each device file removed.
    void FileCandidates();

private:
    void StreamField(const StreamSetup& stream, const char* field, int64_t value,
                     int64_t previous = 0);
    void RawCandidates(const CameraSetup& logical, const std::string& id);

    const Scenario& m_scenario;
    const SessionSetup& m_session;
    const HostPlatform::ConfigText& m_config;
    const std::set<uint32_t>& m_operationModes;
    std::function<bool(const _Change&)> Relevant;
    std::function<void(const _Change&)> Add;
    bool m_hasFrame;                    // a question about a request: its buffers change too
    std::vector<int64_t> m_namedSizes;  // width << 32 | height
};

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SHAPE_CANDIDATES_H
