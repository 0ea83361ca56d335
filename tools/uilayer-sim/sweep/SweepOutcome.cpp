#include "sweep/SweepOutcome.h"

#include <sstream>

namespace UilayerSim {

namespace {

// The rest of `line` after the field name and one space.
std::string Rest(const std::string& line, const std::string& field) {
    return line.size() > field.size() + 1 ? line.substr(field.size() + 1) : std::string();
}

bool StartsWith(const std::string& line, const std::string& field) {
    return line.compare(0, field.size() + 1, field + " ") == 0;
}

}  // namespace

std::string EncodeOutcome(const CombinationOutcome& outcome) {
    std::ostringstream out;
    if (!outcome.setupError.empty()) {
        out << (outcome.mistake ? "mistake " : "error ") << outcome.setupError << "\n";
        return out.str();
    }
    out << "codes " << outcome.staticCode << " " << outcome.streamCode << "\n";
    for (const StreamOutcome& stream : outcome.streams) {
        out << "stream " << stream.role << " " << stream.cameraIndex << " "
            << (stream.listed ? 1 : 0) << "\n";
    }
    for (const std::string& cap : outcome.logicalCaps) {
        out << "cap " << cap << "\n";
    }
    out << "sensor " << outcome.sensorModeCode << " " << outcome.sensorModeIndex << "\n";
    if (outcome.hasPipeline) {
        out << "pipeline " << outcome.pipeline << "\n";
    }
    return out.str();
}

CombinationOutcome DecodeOutcome(const std::string& text) {
    CombinationOutcome outcome;
    bool hasCodes = false;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream fields(line);
        std::string field;
        fields >> field;
        if (StartsWith(line, "codes")) {
            hasCodes = static_cast<bool>(fields >> outcome.staticCode >> outcome.streamCode);
        } else if (StartsWith(line, "stream")) {
            StreamOutcome stream;
            int listed = 0;
            fields >> stream.role >> stream.cameraIndex >> listed;
            stream.listed = listed != 0;
            outcome.streams.push_back(stream);
        } else if (StartsWith(line, "cap")) {
            outcome.logicalCaps.push_back(Rest(line, "cap"));
        } else if (StartsWith(line, "sensor")) {
            fields >> outcome.sensorModeCode >> outcome.sensorModeIndex;
        } else if (StartsWith(line, "pipeline")) {
            outcome.hasPipeline = true;
            outcome.pipeline = Rest(line, "pipeline");
        } else if (StartsWith(line, "log")) {
            outcome.log.push_back(Rest(line, "log"));
        } else if (StartsWith(line, "error") || StartsWith(line, "mistake")) {
            outcome.mistake = StartsWith(line, "mistake");
            outcome.setupError = Rest(line, outcome.mistake ? "mistake" : "error");
        } else if (!line.empty()) {
            // The abort message of the tool's own handler, without the tool's name.
            const std::string tool = "uilayer-sim: ";
            const std::string text =
                line.compare(0, tool.size(), tool) == 0 ? line.substr(tool.size()) : line;
            outcome.message += (outcome.message.empty() ? "" : "; ") + text;
        }
    }
    const bool configured = hasCodes && outcome.staticCode == 0 && outcome.streamCode == 0;
    outcome.status = configured ? OutcomeStatus::Configured : OutcomeStatus::Failed;
    return outcome;
}

}  // namespace UilayerSim
