// What one combination of a sweep came to, and its form on the pipe from the
// child process that configured it to the sweep.
#ifndef UILAYER_SIM_SWEEP_OUTCOME_H
#define UILAYER_SIM_SWEEP_OUTCOME_H

#include <cstdint>
#include <string>
#include <vector>

namespace UilayerSim {

enum class OutcomeStatus {
    Configured,  // both configuration calls returned 0
    Failed,      // a configuration call returned another code
    Aborted,     // the library aborted the process
    Crashed,     // the process died another way
};

struct StreamOutcome {
    std::string role;  // "None" when the library gave it none
    int64_t cameraIndex = -1;
    bool listed = false;  // in the stream list of some role
};

struct CombinationOutcome {
    OutcomeStatus status = OutcomeStatus::Crashed;
    int64_t staticCode = 0;
    int64_t streamCode = 0;
    std::vector<StreamOutcome> streams;  // in configuration order
    std::vector<std::string> logicalCaps;
    int64_t sensorModeCode = 0;
    int64_t sensorModeIndex = -1;
    bool hasPipeline = false;
    std::string pipeline;
    // Why an aborted or crashed child died, and its last log lines.
    std::string message;
    std::vector<std::string> log;
    // Set when the device could not be set up at all; `mistake` when that is
    // a mistake of the input (a vendor tag index the sibling does not have).
    std::string setupError;
    bool mistake = false;
};

// One line per field ("static 0", "stream Preview -1 1", "cap CapsX", ...);
// the child writes it, the parent reads it back.
std::string EncodeOutcome(const CombinationOutcome& outcome);
// Reads what a child left on its pipe: Configured or Failed by the return
// codes. Lines that are no field (the abort message) become the message; the
// caller, who saw how the child ended, sets Aborted or Crashed.
CombinationOutcome DecodeOutcome(const std::string& text);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SWEEP_OUTCOME_H
