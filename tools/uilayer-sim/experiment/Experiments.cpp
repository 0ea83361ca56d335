#include "experiment/Experiments.h"

#include <HostKit/DeviceRoot.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>

namespace UilayerSim {

const char* const kAborted = "aborted";

namespace {

// Processes that run experiments side by side, at most; fewer runs than this
// each are not worth another process.
constexpr size_t kMaxJobs = 4;
constexpr size_t kMinRunsPerJob = 32;

// A process that runs experiments makes one device root and reruns in it:
// making and removing a root costs more than a rerun of a session.
bool g_inChild = false;
std::unique_ptr<HostKit::DeviceRoot> g_childRoot;

void OnChildAbort(int) {
    HostKit::DeviceRoot::RemoveNewest();
    _exit(134);
}

// Results go one a line; a newline inside one travels as a record separator.
void RunChild(size_t first, size_t count, const std::function<std::string(size_t)>& run, int out) {
    signal(SIGABRT, OnChildAbort);
    g_inChild = true;
    const int null = open("/dev/null", O_WRONLY);
    if (null >= 0) {
        dup2(null, STDERR_FILENO);
    }
    FILE* pipe = fdopen(out, "w");
    for (size_t i = first; pipe != nullptr && i < count; ++i) {
        std::string result;
        try {
            result = run(i);
        } catch (const std::exception& error) {
            result = std::string("error: ") + error.what();
        }
        for (char& c : result) {
            c = c == '\n' ? '\x1e' : c;
        }
        fprintf(pipe, "%s\n", result.c_str());
        fflush(pipe);
    }
    g_childRoot.reset();
    _exit(0);
}

}  // namespace

namespace {

// Forks a child that runs `body` with the write end of a pipe; the read end
// comes back in `in`.
pid_t StartChild(const std::function<void(int)>& body, FILE** in) {
    int fds[2];
    if (pipe(fds) != 0) {
        throw std::runtime_error("cannot make a pipe for the experiments");
    }
    fflush(nullptr);
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("cannot start a process for the experiments");
    }
    if (child == 0) {
        close(fds[0]);
        body(fds[1]);
        _exit(0);
    }
    close(fds[1]);
    *in = fdopen(fds[0], "r");
    return child;
}

// The lines a child wrote, each a result, until it ended; then reaps it.
void ReadResults(FILE* in, pid_t child, std::vector<std::string>* results) {
    std::string line;
    for (int c = fgetc(in); c != EOF; c = fgetc(in)) {
        if (c != '\n') {
            line += static_cast<char>(c == '\x1e' ? '\n' : c);
            continue;
        }
        results->push_back(line);
        line.clear();
    }
    fclose(in);
    int status = 0;
    waitpid(child, &status, 0);
}

// Runs `first` .. `end - 1` in order, a new child after each abort.
std::vector<std::string> RunInOrder(size_t first, size_t end,
                                    const std::function<std::string(size_t)>& run) {
    std::vector<std::string> results;
    while (first + results.size() < end) {
        FILE* in = nullptr;
        const size_t from = first + results.size();
        const pid_t child = StartChild([&](int out) { RunChild(from, end, run, out); }, &in);
        ReadResults(in, child, &results);
        if (first + results.size() < end) {
            results.push_back(kAborted);  // the run the child died in
        }
    }
    return results;
}

void WriteResults(const std::vector<std::string>& results, int out) {
    FILE* pipe = fdopen(out, "w");
    for (std::string result : results) {
        std::replace(result.begin(), result.end(), '\n', '\x1e');
        fprintf(pipe, "%s\n", result.c_str());
    }
    fclose(pipe);
}

}  // namespace

std::vector<std::string> RunIsolated(size_t count, const std::function<std::string(size_t)>& run) {
    const long processors = sysconf(_SC_NPROCESSORS_ONLN);
    const size_t jobs = std::min<size_t>(
        {static_cast<size_t>(std::max(processors, 1L)), kMaxJobs, count / kMinRunsPerJob + 1});
    if (jobs <= 1) {
        return RunInOrder(0, count, run);
    }
    // Contiguous shares run side by side, each in order in its own process.
    std::vector<std::pair<pid_t, FILE*>> children;
    for (size_t job = 0; job < jobs; ++job) {
        const size_t begin = count * job / jobs;
        const size_t end = count * (job + 1) / jobs;
        FILE* in = nullptr;
        const pid_t child =
            StartChild([&](int out) { WriteResults(RunInOrder(begin, end, run), out); }, &in);
        children.emplace_back(child, in);
    }
    std::vector<std::string> results;
    for (const auto& child : children) {
        ReadResults(child.second, child.first, &results);
    }
    if (results.size() != count) {
        throw std::runtime_error("an experiment process ended early");
    }
    return results;
}

std::string RunFailure(const std::string& result) {
    const std::string error = "error: ";
    return result == kAborted                            ? "aborts in the library"
           : result.compare(0, error.size(), error) == 0 ? result.substr(error.size())
                                                         : "";
}

Scenario ScenarioUpTo(const Scenario& scenario, size_t session, bool hasFrame, uint32_t frame,
                      uint32_t keptRepeats) {
    Scenario out = scenario;
    out.sessions.resize(std::min(session + 1, out.sessions.size()));
    if (out.sessions.size() != session + 1) {
        return out;
    }
    std::vector<Step>& steps = out.sessions.back().steps;
    std::vector<Step> kept;
    for (size_t i = 0; hasFrame && i < steps.size(); ++i) {
        const Step& step = steps[i];
        if (step.kind == StepKind::Request && step.request.frame == frame) {
            kept.push_back(step);
            break;
        }
        const uint32_t first = step.request.frame;
        if (step.kind == StepKind::Repeat && frame >= first && frame - first < step.count) {
            if (frame > first) {
                kept.push_back(step);
                kept.back().count = std::min(frame - first, keptRepeats);
                kept.back().request.frame = frame - kept.back().count;
            }
            kept.push_back(step);
            kept.back().kind = StepKind::Request;
            kept.back().request.frame = frame;
            break;
        }
        kept.push_back(step);
        if (step.kind == StepKind::Repeat && step.count > keptRepeats) {
            kept.back().count = keptRepeats;
            kept.back().request.frame = first + step.count - keptRepeats;
        }
    }
    steps = kept;
    return out;
}

_ReplayRecord ReplayWith(const Scenario& base, const std::vector<_Change>& changes, size_t session,
                         bool hasFrame, uint32_t frame, const std::string& siblingRoot) {
    Scenario scenario = base;
    ApplyChanges(changes, session, hasFrame, frame, &scenario);
    ReplayOptions options;
    options.siblingRoot = siblingRoot;
    if (g_inChild && g_childRoot == nullptr) {
        g_childRoot = std::make_unique<HostKit::DeviceRoot>(siblingRoot, "uilayer-sim");
    }
    options.root = g_childRoot.get();
    return RecordReplay(scenario, options);
}

}  // namespace UilayerSim
