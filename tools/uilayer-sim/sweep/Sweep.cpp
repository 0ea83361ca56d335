#include "sweep/Sweep.h"

#include <HostFiles.h>
#include <HostPlatform.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "core/AbortHandler.h"
#include "core/ScenarioReader.h"
#include "replay/Replay.h"

namespace UilayerSim {

namespace {

// Log lines of an aborted combination kept for its row.
constexpr size_t kAbortLogLines = 3;

// The child's end of its pipe, and the abort handler installed before ours.
int g_outcomeFd = -1;
void (*g_previousAbortHandler)(int) = SIG_DFL;

void WriteAll(int fd, const std::string& text) {
    HostPlatform::WriteAll(fd, text.data(), text.size());
}

// The library raises SIGABRT itself, from ordinary code outside any
// allocation, so the host log can still be read here. The replay's own
// handler then reports the step, removes the device root and dies.
void OnChildAbort(int signalNumber) {
    const std::vector<std::string> lines = HostPlatform::TakeCameraLog();
    const size_t first = lines.size() > kAbortLogLines ? lines.size() - kAbortLogLines : 0;
    for (size_t i = first; i < lines.size(); ++i) {
        WriteAll(g_outcomeFd, "log " + MaskAddresses(lines[i]) + "\n");
    }
    if (g_previousAbortHandler != SIG_DFL && g_previousAbortHandler != SIG_IGN &&
        g_previousAbortHandler != SIG_ERR) {
        g_previousAbortHandler(signalNumber);
    }
    signal(SIGABRT, SIG_DFL);
    raise(SIGABRT);
}

// One combination configured the way a replay configures a session (the same
// device root, camera table, configuration and properties), with a sensor mode
// query of the session caps; the codes, roles, caps and pipeline read back.
// The library's log is on, so that an abort handler can show the last lines.
// Throws std::runtime_error when the device cannot be set up.
CombinationOutcome ConfigureCombination(const Scenario& device, SessionSetup session,
                                        const std::string& siblingRoot) {
    Step sensorMode;
    sensorMode.kind = StepKind::SensorMode;
    sensorMode.camera = kLogicalCamera;
    sensorMode.capsSource = CapsSource::Session;
    session.steps = {sensorMode};
    Scenario scenario = device;
    scenario.sessions = {std::move(session)};

    ReplayOptions options;
    options.log = true;
    options.siblingRoot = siblingRoot;
    const _SessionRecord replayed = RecordReplay(scenario, options).sessions.at(0);
    if (!replayed.aborted.empty()) {
        // The replay survived the library's abort; the combination's process
        // ends as the library meant, with the last log lines on its pipe.
        const std::vector<std::string>& lines = replayed.configureLog;
        const size_t first = lines.size() > kAbortLogLines ? lines.size() - kAbortLogLines : 0;
        for (size_t i = first; i < lines.size(); ++i) {
            WriteAll(g_outcomeFd, "log " + lines[i] + "\n");
        }
        WriteAll(g_outcomeFd,
                 "uilayer-sim: the library aborted the process during " + replayed.aborted + "\n");
        signal(SIGABRT, SIG_DFL);
        raise(SIGABRT);
    }
    CombinationOutcome outcome;
    outcome.staticCode = replayed.staticCode;
    outcome.streamCode = replayed.streamCode;
    for (const _StreamRecord& stream : replayed.streams) {
        StreamOutcome entry;
        entry.role = StreamRoleName(stream.role);
        entry.cameraIndex = stream.cameraIndex;
        entry.listed = stream.listed;
        outcome.streams.push_back(entry);
    }
    for (uint32_t bit = 0; bit < Lumora::_CapsBitset::kBitCount; ++bit) {
        if (replayed.logicalCaps.test(bit)) {
            outcome.logicalCaps.push_back(CapabilityName(bit));
        }
    }
    outcome.hasPipeline = replayed.pipeline.has_value();
    outcome.pipeline = replayed.pipeline.value_or("");
    const _StepRecord& query = replayed.steps.at(0);
    outcome.sensorModeCode = query.returnCode;
    outcome.sensorModeIndex = query.sensorModeIndex;
    return outcome;
}

[[noreturn]] void RunChild(int fd, const Scenario& device, const SessionSetup& session,
                           const std::string& siblingRoot) {
    // The abort message of the replay's handler lands on the pipe too.
    dup2(fd, STDERR_FILENO);
    g_outcomeFd = fd;
    InstallAbortHandler();
    g_previousAbortHandler = signal(SIGABRT, OnChildAbort);
    CombinationOutcome outcome;
    try {
        outcome = ConfigureCombination(device, session, siblingRoot);
    } catch (const ScenarioError& error) {
        outcome.setupError = error.what();
        outcome.mistake = true;
    } catch (const std::exception& error) {
        outcome.setupError = error.what();
    }
    WriteAll(fd, EncodeOutcome(outcome));
    // Nothing of the parent's (buffers, exit handlers) runs twice.
    _exit(0);
}

std::string DescribeDeath(int status) {
    if (WIFSIGNALED(status)) {
        const int number = WTERMSIG(status);
        return std::string("killed by signal ") + std::to_string(number) + " (" +
               strsignal(number) + ")";
    }
    return "exited with status " + std::to_string(WEXITSTATUS(status));
}

CombinationOutcome RunIsolated(const Scenario& device, const SessionSetup& session,
                               const std::string& siblingRoot) {
    int fds[2];
    if (pipe(fds) != 0) {
        throw std::runtime_error(std::string("cannot create a pipe: ") + strerror(errno));
    }
    fflush(stdout);
    fflush(stderr);
    const pid_t child = fork();
    if (child < 0) {
        close(fds[0]);
        close(fds[1]);
        throw std::runtime_error(std::string("cannot fork: ") + strerror(errno));
    }
    if (child == 0) {
        close(fds[0]);
        RunChild(fds[1], device, session, siblingRoot);
    }
    close(fds[1]);
    std::string text;
    char buffer[4096];
    for (;;) {
        const ssize_t got = read(fds[0], buffer, sizeof(buffer));
        if (got > 0) {
            text.append(buffer, static_cast<size_t>(got));
        } else if (got == 0 || errno != EINTR) {
            break;
        }
    }
    close(fds[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    CombinationOutcome outcome = DecodeOutcome(text);
    if (outcome.mistake) {
        throw SweepInputError(outcome.setupError);
    }
    if (!outcome.setupError.empty()) {
        throw std::runtime_error(outcome.setupError);
    }
    const bool clean = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    if (!clean) {
        const bool aborted = WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
        outcome.status = aborted ? OutcomeStatus::Aborted : OutcomeStatus::Crashed;
        if (outcome.message.empty()) {
            outcome.message = DescribeDeath(status);
        }
    }
    return outcome;
}

}  // namespace

StreamSize SweepArraySize(const Scenario& device, uint32_t camera) {
    const CameraSetup* setup = device.Camera(camera);
    if (setup == nullptr) {
        return StreamSize{};
    }
    if (setup->fullArrayWidth != 0 && setup->fullArrayHeight != 0) {
        return StreamSize{setup->fullArrayWidth, setup->fullArrayHeight};
    }
    for (bool primary : {true, false}) {
        for (const PhysicalCameraSetup& physical : setup->physicalCameras) {
            const CameraSetup* sensor =
                physical.frameworkId >= 0
                    ? device.Camera(static_cast<uint32_t>(physical.frameworkId))
                    : nullptr;
            if ((physical.isPrimary != 0 || !primary) && sensor != nullptr && sensor != setup &&
                sensor->fullArrayWidth != 0 && sensor->fullArrayHeight != 0) {
                return StreamSize{sensor->fullArrayWidth, sensor->fullArrayHeight};
            }
        }
    }
    return StreamSize{};
}

SweepResult RunSweep(const Scenario& device, const SweepOptions& options) {
    SweepResult result;
    result.deviceName = device.name;
    result.configName = device.configName;
    result.camera = options.hasCamera ? options.camera : device.cameras.at(0).frameworkId;
    const CameraSetup* camera = device.Camera(result.camera);
    if (camera == nullptr) {
        throw SweepInputError("camera " + std::to_string(options.camera) + " is not in the device");
    }
    if (!camera->hasRecord) {
        throw SweepInputError("camera " + std::to_string(result.camera) +
                              " has no record (no_record: true): no sensor size to sweep with");
    }
    result.operationMode = options.operationMode;
    result.selection = options.selection;
    result.hasPackage = options.hasPackage;
    result.package = options.package;
    result.params = options.paramTexts;
    const StreamSize array = SweepArraySize(device, result.camera);
    if (array.width == 0 || array.height == 0) {
        throw SweepInputError("camera " + std::to_string(result.camera) +
                              " has no full_array, nor a physical camera with one");
    }
    result.sizes = SizesForArray(array.width, array.height);

    for (const StreamCombination& combination : GuaranteedCombinations(options.selection)) {
        SessionSetup session;
        session.name = CombinationLabel(combination);
        session.camera = result.camera;
        session.operationMode = options.operationMode;
        session.hasPackage = options.hasPackage;
        session.package = options.package;
        session.params = options.params;
        for (const StreamTarget& target : combination.streams) {
            session.streams.push_back(MakeStream(target, combination.table, result.sizes,
                                                 "s" + std::to_string(session.streams.size())));
        }
        result.rows.push_back({combination, RunIsolated(device, session, options.siblingRoot)});
    }
    return result;
}

}  // namespace UilayerSim
