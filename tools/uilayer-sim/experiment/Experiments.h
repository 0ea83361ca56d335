// Experiments: the scenario replayed with changes, each answer read from the
// library itself. Some changes make the library abort the process by design
// (a bokeh session without the bokeh sensors), so experiments run in child
// processes: one child runs them in order; when it dies, the experiment it was
// running is marked aborted and a new child goes on with the next.
#ifndef UILAYER_SIM_EXPERIMENTS_H
#define UILAYER_SIM_EXPERIMENTS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "experiment/Change.h"
#include "replay/Replay.h"

namespace UilayerSim {

// The result of an experiment whose run aborted the process.
extern const char* const kAborted;

// Runs `run(0)` .. `run(count - 1)` in child processes and returns their
// results in order; a run that throws gives "error: " and the message.
std::vector<std::string> RunIsolated(size_t count, const std::function<std::string(size_t)>& run);
// Why a run of RunIsolated failed ("aborts in the library", or the error's
// message), or "" when it gave its result.
std::string RunFailure(const std::string& result);

// The scenario up to what a question about session `session` (and, when
// `hasFrame`, request `frame` of it) needs: the sessions before it whole, its
// configuration, and its steps up to the request of `frame`, which becomes a
// request of its own when a repeat covers it. Of each repeat before that
// request only the last `keptRepeats` requests are kept.
Scenario ScenarioUpTo(const Scenario& scenario, size_t session, bool hasFrame, uint32_t frame,
                      uint32_t keptRepeats = UINT32_MAX);

// Replays `base` with `changes` applied, with the log switches off.
_ReplayRecord ReplayWith(const Scenario& base, const std::vector<_Change>& changes, size_t session,
                         bool hasFrame, uint32_t frame, const std::string& siblingRoot);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_EXPERIMENTS_H
