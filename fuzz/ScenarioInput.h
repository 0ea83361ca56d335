// Reads a fuzz input as a scenario of the simulator: values lean on what the
// examples and the library's tables hold, and can still be any of their type.
#ifndef UILAYER_FUZZ_SCENARIO_INPUT_H
#define UILAYER_FUZZ_SCENARIO_INPUT_H

#include <fuzzer/FuzzedDataProvider.h>

#include <string>
#include <vector>

#include "core/Scenario.h"

namespace UilayerFuzz {

// The bundled example scenarios (*.yaml of the directories), and the values
// the decoder picks from: everything the examples hold.
struct Examples {
    explicit Examples(const std::vector<std::string>& directories);

    std::vector<UilayerSim::Scenario> scenarios;  // by file name
    std::vector<UilayerSim::SessionSetup> sessions;
    std::vector<UilayerSim::StreamSetup> streams;
    std::vector<UilayerSim::TagValue> tags;
    std::vector<UilayerSim::Step> steps;
    std::vector<std::pair<std::string, std::string>> properties;  // and those of no example
    std::vector<std::pair<std::string, std::string>> files;
    std::vector<std::string> texts;  // packages, activities and sensor names
    std::vector<uint32_t> numbers;   // operation modes, sizes and frames

    // The scenario of that name ("zoom-video"), or null.
    const UilayerSim::Scenario* Find(const std::string& name) const;
};

struct Input {
    UilayerSim::Scenario scenario;
    bool log = false;
};

// The whole input: the example named first (any other name picks one by
// number), then edits of everything in it.
Input ReadScenario(FuzzedDataProvider& data, const Examples& examples);
// Only steps: the first session of `fixed` runs the steps of the example named
// first, then step edits.
Input ReadSteps(FuzzedDataProvider& data, const Examples& examples,
                const UilayerSim::Scenario& fixed);

}  // namespace UilayerFuzz

#endif  // UILAYER_FUZZ_SCENARIO_INPUT_H
