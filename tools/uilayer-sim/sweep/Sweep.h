// The sweep: every guaranteed stream combination of the selected tables,
// configured against one camera of a device, each in a child process of its
// own so that a library abort ends only that combination.
#ifndef UILAYER_SIM_SWEEP_H
#define UILAYER_SIM_SWEEP_H

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/Report.h"
#include "core/Scenario.h"
#include "sweep/StreamCombinations.h"
#include "sweep/SweepOutcome.h"

namespace UilayerSim {

// A camera the device does not have, or one without a size to sweep.
class SweepInputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct SweepOptions {
    bool hasCamera = false;  // false: the first camera of the device
    uint32_t camera = 0;     // framework id
    uint32_t operationMode = 0;
    CombinationSelection selection;
    // The client and the session parameters of every combination.
    bool hasPackage = false;
    std::string package;
    std::vector<TagValue> params;
    std::vector<std::string> paramTexts;  // as given, for the report
    // Device root of the build tree that holds the host sibling camera layer.
    std::string siblingRoot;
};

struct SweepRow {
    StreamCombination combination;
    CombinationOutcome outcome;
};

struct SweepResult {
    std::string deviceName;
    std::string configName;
    uint32_t camera = 0;
    uint32_t operationMode = 0;
    CombinationSelection selection;
    bool hasPackage = false;
    std::string package;
    std::vector<std::string> params;
    SizeClasses sizes;
    std::vector<SweepRow> rows;
};

// Runs the sweep on `device` (its cameras, configuration, properties and
// files; its sessions are not used). Throws SweepInputError when the camera
// is not in the device or has no full array size, std::runtime_error when the
// device cannot be set up.
SweepResult RunSweep(const Scenario& device, const SweepOptions& options);

// The pixel array a sweep sizes its streams from: the camera's own, or that of
// the camera of its primary physical sensor (then of any physical sensor with
// one). {0, 0} when there is none.
StreamSize SweepArraySize(const Scenario& device, uint32_t camera);

// The report: the device, camera and sizes, one row per combination, and a
// summary of failed and aborted combinations and streams without a role.
ReportNode SweepReport(const SweepResult& result);

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SWEEP_H
