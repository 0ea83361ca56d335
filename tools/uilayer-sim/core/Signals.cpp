// The simulator's signal handlers (Signals.h, AbortHandler.h): interrupts, library aborts.
#include "core/Signals.h"

#include <HostFiles.h>
#include <HostKit/DeviceRoot.h>
#include <HostPlatform.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csetjmp>
#include <csignal>
#include <cstdint>
#include <cstring>

#include "core/AbortHandler.h"
#include "replay/Replay.h"

namespace UilayerSim {

namespace {

// Only what a signal handler may touch: a fixed buffer and a flag.
char g_cleanupPath[PATH_MAX];
volatile sig_atomic_t g_hasCleanupPath = 0;
struct sigaction g_previousAbort = {};
char g_currentStep[256] = "setting up";

// A device root is a few levels deep; deeper trees are not ours.
constexpr int kMaxDepth = 32;
// Passes over a directory until it is empty: entries removed while reading
// may make the kernel skip others.
constexpr int kMaxPasses = 8;

// The record getdents64 fills.
struct DirectoryEntry {
    uint64_t inode;
    int64_t offset;
    unsigned short length;
    unsigned char type;
    char name[1];
};

bool IsDotOrDotDot(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

// Removes everything inside the open directory with system calls alone
// (getdents64, unlinkat, openat), so that it is safe in a signal handler.
void RemoveEntries(int directory, int depth) {
    if (depth > kMaxDepth) {
        return;
    }
    alignas(8) char buffer[4096];
    for (int pass = 0; pass < kMaxPasses; ++pass) {
        bool removed = false;
        lseek(directory, 0, SEEK_SET);
        for (;;) {
            const long count = syscall(SYS_getdents64, directory, buffer, sizeof(buffer));
            if (count <= 0) {
                break;
            }
            for (long position = 0; position < count;) {
                const auto* entry = reinterpret_cast<const DirectoryEntry*>(buffer + position);
                position += entry->length;
                if (IsDotOrDotDot(entry->name)) {
                    continue;
                }
                if (unlinkat(directory, entry->name, 0) == 0) {
                    removed = true;
                    continue;
                }
                const int child =
                    openat(directory, entry->name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
                if (child >= 0) {
                    RemoveEntries(child, depth + 1);
                    close(child);
                    removed = unlinkat(directory, entry->name, AT_REMOVEDIR) == 0 || removed;
                }
            }
        }
        if (!removed) {
            return;
        }
    }
}

void OnInterrupt(int signalNumber) {
    // The signal raised again below is delivered when this handler returns:
    // leave errno as the interrupted code had it.
    const int savedErrno = errno;
    if (g_hasCleanupPath != 0) {
        const int directory = open(g_cleanupPath, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (directory >= 0) {
            RemoveEntries(directory, 0);
            close(directory);
            rmdir(g_cleanupPath);
        }
    }
    errno = savedErrno;
    signal(signalNumber, SIG_DFL);
    raise(signalNumber);
}

void WriteText(const std::string& text) {
    HostPlatform::WriteAll(STDERR_FILENO, text.data(), text.size());
}

void WriteText(const char* text) {
    HostPlatform::WriteAll(STDERR_FILENO, text, strlen(text));
}

void OnLibraryAbort(int) {
    WriteText("uilayer-sim: the library aborted the process during ");
    WriteText(g_currentStep);
    WriteText("\n");
    HostKit::DeviceRoot::RemoveNewest();
    signal(SIGABRT, SIG_DFL);
    raise(SIGABRT);
}

// The library aborts on purpose from its own code, not from inside the
// allocator, so reading its captured log here is sound in practice.
void OnAbort(int signalNumber) {
    for (const std::string& line : HostPlatform::TakeCameraLog()) {
        WriteText("uilayer-sim: log: " + MaskAddresses(line) + "\n");
    }
    if (g_previousAbort.sa_handler != SIG_DFL && g_previousAbort.sa_handler != SIG_IGN) {
        g_previousAbort.sa_handler(signalNumber);
    }
    signal(signalNumber, SIG_DFL);
    raise(signalNumber);
}

}  // namespace

void SetCurrentStep(const std::string& description) {
    const size_t length = std::min(description.size(), sizeof(g_currentStep) - 1);
    memcpy(g_currentStep, description.data(), length);
    g_currentStep[length] = '\0';
}

namespace {

sigjmp_buf g_abortJump;
volatile sig_atomic_t g_abortArmed = 0;

void OnGuardedAbort(int) {
    if (g_abortArmed != 0) {
        g_abortArmed = 0;
        siglongjmp(g_abortJump, 1);
    }
    signal(SIGABRT, SIG_DFL);
    raise(SIGABRT);
}

}  // namespace

bool RunUnlessAborted(const std::function<void()>& body) {
    struct sigaction action = {};
    struct sigaction previous = {};
    action.sa_handler = OnGuardedAbort;
    sigemptyset(&action.sa_mask);
    sigaction(SIGABRT, &action, &previous);
    if (sigsetjmp(g_abortJump, 1) == 0) {
        g_abortArmed = 1;
        body();
        g_abortArmed = 0;
        sigaction(SIGABRT, &previous, nullptr);
        return true;
    }
    sigaction(SIGABRT, &previous, nullptr);
    return false;
}

void InstallAbortHandler() {
    signal(SIGABRT, OnLibraryAbort);
}

void RegisterCleanupPath(const std::string& path) {
    g_hasCleanupPath = 0;
    if (path.empty() || path.size() >= sizeof(g_cleanupPath)) {
        return;
    }
    memcpy(g_cleanupPath, path.c_str(), path.size() + 1);
    g_hasCleanupPath = 1;
}

void InstallInterruptHandlers() {
    struct sigaction action = {};
    action.sa_handler = OnInterrupt;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

void InstallAbortLogWriter() {
    struct sigaction action = {};
    action.sa_handler = OnAbort;
    sigemptyset(&action.sa_mask);
    sigaction(SIGABRT, &action, &g_previousAbort);
}

}  // namespace UilayerSim
