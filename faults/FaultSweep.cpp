// Fault sweep: replays each scenario once per platform call with that call
// failing, in child processes so that a crash, a sanitizer report or a leak
// names its fault; a clean replay after it must give the clean report exactly,
// as a transient fault leaves nothing behind.
#include <HostFaults.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <initializer_list>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "core/AbortHandler.h"
#include "IuiLayer.h"
#include "common/ConfigHelpers.h"
#include "common/Status.h"
#include "core/Report.h"
#include "replay/Replay.h"
#include "core/ScenarioReader.h"

namespace {

using UilayerSim::ReportNode;

// Status of the configuration store for a value that does not convert.
constexpr int kConfigBadValue = 22;

// What the operations return: their statuses; a sensor mode query also passes
// on the status of the configuration store when its key does not read.
constexpr std::initializer_list<int> kOperationCodes = {
    Lumora::kStatusOk, Lumora::kStatusUnsupported, Lumora::kStatusInvalidArgument};
constexpr std::initializer_list<int> kSensorModeCodes = {Lumora::kStatusOk, Lumora::kConfigNotFound,
                                                         kConfigBadValue};

bool Documented(const std::string& code, std::initializer_list<int> codes) {
    return std::any_of(codes.begin(), codes.end(),
                       [&](int known) { return code == std::to_string(known); });
}

// The first return code that the library does not document for the call that
// gave it, as "where: code"; "" when all are.
std::string FindUndocumented(const ReportNode& node, const std::string& where) {
    if (node.GetKind() == ReportNode::Kind::List) {
        for (size_t i = 0; i < node.Items().size(); ++i) {
            std::string found =
                FindUndocumented(node.Items()[i], where + "[" + std::to_string(i) + "]");
            if (!found.empty()) {
                return found;
            }
        }
        return "";
    }
    if (node.GetKind() != ReportNode::Kind::Map) {
        return "";
    }
    const ReportNode* query = node.Find("query");
    const bool sensorMode = query != nullptr && query->Scalar() == "sensor mode";
    const std::initializer_list<int> codes = sensorMode ? kSensorModeCodes : kOperationCodes;
    for (const auto& entry : node.Entries()) {
        const std::string path = where + "/" + entry.first;
        const bool code = entry.first == "return code" ||
                          entry.first == "ParseStaticCapabilities" ||
                          entry.first == "ParseStreamCapabilities";
        if (code && !Documented(entry.second.Scalar(), codes)) {
            return path + ": " + entry.second.Scalar();
        }
        if (entry.first == "return codes") {
            for (const auto& count : entry.second.Entries()) {
                if (!Documented(count.first, codes)) {
                    return path + ": " + count.first;
                }
            }
            continue;
        }
        std::string found = FindUndocumented(entry.second, path);
        if (!found.empty()) {
            return found;
        }
    }
    return "";
}

// The report without its "log" entries: the decisions alone.
ReportNode Decisions(const ReportNode& report) {
    if (report.GetKind() == ReportNode::Kind::List) {
        ReportNode list = report.IsInline() ? ReportNode::InlineList() : ReportNode::List();
        for (const ReportNode& item : report.Items()) {
            list.Push(Decisions(item));
        }
        return list;
    }
    if (report.GetKind() != ReportNode::Kind::Map) {
        return report;
    }
    ReportNode map = ReportNode::Map();
    for (const auto& entry : report.Entries()) {
        if (entry.first != "log") {
            map.Add(entry.first, Decisions(entry.second));
        }
    }
    return map;
}

using HostPlatform::FaultKind;
using HostPlatform::kFaultKindCount;

constexpr uint64_t kDefaultLimit = 200;
// Children running at once: the cores of the machines this runs on.
constexpr size_t kDefaultJobs = 2;
// Each job is a forked child: more than this would only thrash the machine.
constexpr uint64_t kMaxJobs = 64;

// What one faulty replay showed; written by the child to its pipe.
// A plain record, cleared whole (padding included) before it is filled.
struct RunResult {
    uint64_t n;
    bool injected;           // the planned call happened and failed
    bool setupRefused;       // the simulator could not build the device
    bool changed;            // the faulty replay's decisions differ
    bool carriedOver;        // the clean replay after it differs
    char undocumented[160];  // first undocumented return code, if any
};

struct Replayed {
    bool ok = false;
    std::string text;       // whole report, log lines included
    std::string decisions;  // the report without log lines
    std::string undocumented;
};

struct Tally {
    uint64_t runs = 0, changed = 0, setupRefused = 0, skipped = 0, failures = 0;
};

// Whether replays interleave the library's log lines. Off for runs whose
// addresses the report cannot mask (valgrind places the heap low).
bool g_log = true;

Replayed ReplayOnce(const UilayerSim::Scenario& scenario) {
    UilayerSim::ReplayOptions options;
    options.log = g_log;
    options.siblingRoot = UILAYER_SIM_SIBLING_ROOT;
    Replayed replayed;
    try {
        const UilayerSim::ReportNode report = UilayerSim::Replay(scenario, options);
        replayed.ok = true;
        replayed.text = UilayerSim::RenderText(report);
        replayed.decisions = UilayerSim::RenderText(Decisions(report));
        replayed.undocumented = FindUndocumented(report, "");
    } catch (const std::exception& error) {
        replayed.text = error.what();
    }
    return replayed;
}

// The calls of a kind to fail: all of them, or `limit` spread evenly.
std::vector<uint64_t> CallsToFail(uint64_t count, uint64_t limit) {
    if (limit == 1 && count > 1) {
        return {count};  // the last call, which the even spread always includes
    }
    const bool all = limit == 0 || count <= limit;
    std::vector<uint64_t> calls;
    for (uint64_t i = 0; i < (all ? count : limit); ++i) {
        calls.push_back(all ? i + 1 : 1 + i * (count - 1) / (limit - 1));
    }
    return calls;
}

RunResult RunOne(const UilayerSim::Scenario& scenario, const Replayed& clean, FaultKind kind,
                 uint64_t n) {
    // As in a fresh HAL process: nothing resolved the sibling's lookup yet.
    GetVendorTagId = nullptr;
    HostPlatform::ClearFaults();
    HostPlatform::FailNth(kind, n);
    const Replayed faulty = ReplayOnce(scenario);
    RunResult result;
    memset(&result, 0, sizeof(result));
    result.n = n;
    result.injected = HostPlatform::FaultsInjected() == 1;
    HostPlatform::ClearFaults();
    const Replayed after = ReplayOnce(scenario);
    result.setupRefused = !faulty.ok;
    result.changed = !faulty.ok || faulty.decisions != clean.decisions;
    result.carriedOver = after.text != clean.text;
    snprintf(result.undocumented, sizeof(result.undocumented), "%s", faulty.undocumented.c_str());
    return result;
}

// A child running faults one after the other, reporting each into its pipe.
struct Batch {
    pid_t pid = -1;
    int fd = -1;
    std::vector<uint64_t> calls;
};

Batch StartBatch(const UilayerSim::Scenario& scenario, const Replayed& clean, FaultKind kind,
                 std::vector<uint64_t> calls) {
    Batch batch;
    batch.calls = std::move(calls);
    int fds[2];
    if (pipe(fds) != 0) {
        return batch;
    }
    fflush(stdout);
    fflush(stderr);
    batch.pid = fork();
    if (batch.pid == 0) {
        close(fds[0]);
        for (uint64_t n : batch.calls) {
            const RunResult result = RunOne(scenario, clean, kind, n);
            if (write(fds[1], &result, sizeof(result)) != static_cast<ssize_t>(sizeof(result))) {
                _exit(EXIT_FAILURE);
            }
        }
        close(fds[1]);
        // A normal exit, so that the leak check of a sanitizer build runs.
        exit(EXIT_SUCCESS);
    }
    close(fds[1]);
    batch.fd = fds[0];
    return batch;
}

// Collects what a batch reported. Returns true when its child exited cleanly
// (no crash, sanitizer report or leak) after reporting every run.
bool FinishBatch(const Batch& batch, std::vector<RunResult>* results) {
    results->clear();
    RunResult result;
    while (batch.pid > 0 &&
           read(batch.fd, &result, sizeof(result)) == static_cast<ssize_t>(sizeof(result))) {
        results->push_back(result);
    }
    if (batch.fd >= 0) {
        close(batch.fd);
    }
    int status = 0;
    if (batch.pid < 0 || waitpid(batch.pid, &status, 0) != batch.pid) {
        return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 && results->size() == batch.calls.size();
}

// Counts one run and reports each check it failed.
void Account(const std::string& label, const RunResult& result, bool verbose, Tally* tally) {
    ++tally->runs;
    tally->changed += result.changed ? 1 : 0;
    tally->setupRefused += result.setupRefused ? 1 : 0;
    const std::pair<bool, std::string> failed[] = {
        {!result.injected, "the call was not reached (the replay is not deterministic)"},
        {result.undocumented[0] != '\0',
         std::string("undocumented return code at ") + result.undocumented},
        {result.carriedOver, "the next clean replay differs from a clean run"}};
    bool ok = true;
    for (const auto& check : failed) {
        if (check.first) {
            fprintf(stderr, "FAIL %s: %s\n", label.c_str(), check.second.c_str());
            ok = false;
        }
    }
    if (verbose && result.changed) {
        printf("  changed: %s%s\n", label.c_str(),
               result.setupRefused ? " (the simulator could not set the device up)" : "");
    }
    tally->failures += ok ? 0 : 1;
}

// Runs every fault of a kind, split over `jobs` children running at once.
// When a child does not exit cleanly, each of its faults runs again in a child
// of its own so that the crash, sanitizer report or leak names its fault.
void RunKind(const UilayerSim::Scenario& scenario, const Replayed& clean, FaultKind kind,
             const std::vector<uint64_t>& calls, size_t jobs, bool verbose, Tally* tally) {
    const std::string prefix = scenario.name + " " + HostPlatform::FaultKindName(kind) + " #";
    const size_t parts = std::max<size_t>(1, std::min(jobs, calls.size()));
    std::vector<Batch> batches;
    for (size_t part = 0; part < parts && !calls.empty(); ++part) {
        batches.push_back(
            StartBatch(scenario, clean, kind,
                       std::vector<uint64_t>(calls.begin() + part * calls.size() / parts,
                                             calls.begin() + (part + 1) * calls.size() / parts)));
    }
    std::vector<RunResult> results;
    for (const Batch& batch : batches) {
        if (FinishBatch(batch, &results)) {
            for (const RunResult& result : results) {
                Account(prefix + std::to_string(result.n), result, verbose, tally);
            }
            continue;
        }
        for (uint64_t n : batch.calls) {
            if (FinishBatch(StartBatch(scenario, clean, kind, {n}), &results)) {
                Account(prefix + std::to_string(n), results.front(), verbose, tally);
                continue;
            }
            ++tally->runs;
            ++tally->failures;
            fprintf(stderr,
                    "FAIL %s%" PRIu64 ": the replay crashed or failed a sanitizer or leak check\n",
                    prefix.c_str(), n);
        }
    }
}

std::vector<std::string> BundledScenarios() {
    std::vector<std::string> paths;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(UILAYER_SIM_EXAMPLES_DIR, error)) {
        if (entry.path().extension() == ".yaml") {
            paths.push_back(entry.path().string());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

// Repeated requests beyond this many meet the same calls again, each as the
// first ones did; the last ones are kept.
constexpr uint32_t kMaxRepeat = 64;

// Sweeps one scenario; adds its figures to `total` and per kind to `perKind`.
void SweepScenario(const std::string& path, uint64_t limit, size_t jobs, bool verbose, Tally* total,
                   std::vector<Tally>* perKind) {
    UilayerSim::Scenario scenario = UilayerSim::ReadScenarioFile(path);
    for (UilayerSim::SessionSetup& session : scenario.sessions) {
        for (UilayerSim::Step& step : session.steps) {
            if (step.count > kMaxRepeat) {
                // The last requests stay, so later steps find their frames.
                step.request.frame += step.count - kMaxRepeat;
                step.count = kMaxRepeat;
            }
        }
    }
    HostPlatform::ClearFaults();
    const Replayed clean = ReplayOnce(scenario);
    const HostPlatform::FaultCounts counts = HostPlatform::CallCounts();
    const Replayed again = ReplayOnce(scenario);
    if (!clean.ok || again.text != clean.text || !clean.undocumented.empty()) {
        fprintf(stderr, "FAIL %s: the clean replay %s\n", scenario.name.c_str(),
                !clean.ok ? clean.text.c_str() : "is not repeatable or returns undocumented codes");
        ++total->failures;
        return;
    }
    printf("%s calls:", scenario.name.c_str());
    for (size_t k = 0; k < kFaultKindCount; ++k) {
        printf(" %s %" PRIu64, HostPlatform::FaultKindName(static_cast<FaultKind>(k)), counts[k]);
    }
    printf("\n");
    for (size_t k = 0; k < kFaultKindCount; ++k) {
        const std::vector<uint64_t> calls = CallsToFail(counts[k], limit);
        Tally& tally = (*perKind)[k];
        tally.skipped += counts[k] - calls.size();
        RunKind(scenario, clean, static_cast<FaultKind>(k), calls, jobs, verbose, &tally);
    }
}

constexpr const char* kUsage =
    "usage: uilayer_fault_sweep [--limit N] [--jobs N] [--no-log] [--verbose] [SCENARIO.yaml ...]\n"
    "       uilayer_fault_sweep --fail KIND N SCENARIO.yaml\n"
    "\n"
    "Replays each scenario (every bundled one when none is named) once per platform\n"
    "call, with that call failing, and checks that the library survives it, returns\n"
    "only documented codes and leaves nothing behind. --fail replays one scenario with\n"
    "the N-th call of KIND failing and prints its report.\n"
    "\n"
    "  --limit N   faults per scenario and kind, spread evenly (0: every call; default 200)\n"
    "  --jobs N    children at once (default 2)\n"
    "  --no-log    replays without the library's log lines\n"
    "  --verbose   a line for every fault\n";

// A wrong command line: the reason and the usage on standard error, status 2.
int UsageError(const std::string& reason) {
    fprintf(stderr, "uilayer_fault_sweep: %s\n%s", reason.c_str(), kUsage);
    return 2;
}

// A whole decimal number from 1 up (0 too when `zeroAllowed`).
bool ParseCount(const char* text, bool zeroAllowed, uint64_t* value) {
    if (*text < '0' || *text > '9') {
        return false;
    }
    char* end = nullptr;
    errno = 0;
    *value = strtoull(text, &end, 10);
    return errno == 0 && *end == '\0' && (zeroAllowed || *value > 0);
}

int ShowFault(const char* kindName, const char* n, const char* path) {
    size_t k = kFaultKindCount;
    std::string kinds;
    for (size_t i = 0; i < kFaultKindCount; ++i) {
        const char* name = HostPlatform::FaultKindName(static_cast<FaultKind>(i));
        kinds += std::string(i ? ", " : "") + name;
        k = strcmp(kindName, name) == 0 ? i : k;
    }
    if (k == kFaultKindCount) {
        return UsageError(std::string("no fault kind '") + kindName + "' (kinds: " + kinds + ")");
    }
    uint64_t call = 0;
    if (!ParseCount(n, false, &call)) {
        return UsageError(std::string("--fail: N must be a call number from 1 up, not '") + n +
                          "'");
    }
    const auto kind = static_cast<FaultKind>(k);
    UilayerSim::Scenario scenario;
    try {
        scenario = UilayerSim::ReadScenarioFile(path);
    } catch (const std::exception& error) {
        fprintf(stderr, "uilayer_fault_sweep: %s\n", error.what());
        return 2;
    }
    HostPlatform::FailNth(kind, call);
    const Replayed faulty = ReplayOnce(scenario);
    printf("%s", faulty.text.c_str());
    if (HostPlatform::FaultsInjected() == 0) {
        fprintf(stderr,
                "uilayer_fault_sweep: the replay made fewer than %" PRIu64
                " %s calls: no fault was injected\n",
                call, kindName);
        return EXIT_FAILURE;
    }
    return faulty.ok ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
    uint64_t limit = kDefaultLimit;
    uint64_t jobs = kDefaultJobs;
    bool verbose = false;
    std::vector<std::string> paths;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            printf("%s", kUsage);
            return EXIT_SUCCESS;
        }
        if (arg == "--version") {
            printf("uilayer_fault_sweep %s\n", UILAYER_SIM_VERSION);
            return EXIT_SUCCESS;
        }
    }
    if (argc > 1 && strcmp(argv[1], "--fail") == 0) {
        if (argc != 5) {
            return UsageError("--fail takes KIND N SCENARIO.yaml");
        }
        UilayerSim::InstallAbortHandler();
        return ShowFault(argv[2], argv[3], argv[4]);
    }
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--limit" || arg == "--jobs") {
            uint64_t* value = arg == "--limit" ? &limit : &jobs;
            if (i + 1 == argc || !ParseCount(argv[i + 1], arg == "--limit", value) ||
                (value == &jobs && jobs > kMaxJobs)) {
                return UsageError(arg + " takes a whole number" +
                                  (arg == "--limit" ? " (0 for every call)" : " from 1 to 64"));
            }
            ++i;
        } else if (arg == "--no-log") {
            g_log = false;
        } else if (arg == "--verbose") {
            verbose = true;
        } else if (arg == "--fail") {
            return UsageError("--fail comes first and alone: --fail KIND N SCENARIO.yaml");
        } else if (arg.size() > 1 && arg[0] == '-') {
            return UsageError("unknown option '" + arg + "'");
        } else {
            paths.push_back(arg);
        }
    }
    if (paths.empty()) {
        paths = BundledScenarios();
    }
    UilayerSim::InstallAbortHandler();
    const auto start = std::chrono::steady_clock::now();
    Tally total;  // scenario failures; the runs are added per kind below
    std::vector<Tally> perKind(kFaultKindCount);
    for (const std::string& path : paths) {
        try {
            SweepScenario(path, limit, static_cast<size_t>(jobs), verbose, &total, &perKind);
        } catch (const std::exception& error) {
            fprintf(stderr, "FAIL %s: %s\n", path.c_str(), error.what());
            ++total.failures;
        }
    }
    printf("%-20s %9s %9s %9s %9s\n", "kind", "injected", "changed", "left out", "failed");
    uint64_t runFailures = 0;
    for (size_t k = 0; k < kFaultKindCount; ++k) {
        const Tally& tally = perKind[k];
        printf("%-20s %9" PRIu64 " %9" PRIu64 " %9" PRIu64 " %9" PRIu64 "\n",
               HostPlatform::FaultKindName(static_cast<FaultKind>(k)), tally.runs, tally.changed,
               tally.skipped, tally.failures);
        total.runs += tally.runs;
        runFailures += tally.failures;
        total.changed += tally.changed;
        total.setupRefused += tally.setupRefused;
        total.skipped += tally.skipped;
        total.failures += tally.failures;
    }
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    printf("%" PRIu64 " faults injected over %zu scenarios in %.1f s; %" PRIu64
           " changed the faulty session's report (%" PRIu64
           " of them before the device could be set up); %" PRIu64 " calls left out by the limit\n",
           total.runs, paths.size(), seconds, total.changed, total.setupRefused, total.skipped);
    printf("%" PRIu64 " passed, %" PRIu64 " failed\n", total.runs - runFailures, total.failures);
    return total.failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
