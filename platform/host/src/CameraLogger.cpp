// Host camera logger: the level switches and a capture of every message.
//
// LogSystem records "<level> <message>" and does not look at the switches; the
// callers check them first. SwitchLogEnable only records its argument.
#include <stdarg.h>
#include <stdio.h>

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <OLog.h>
#include <HostPlatform.h>
#include <HostPlatformExtras.h>

#include "LogCapture.h"

int g_enableLogError = 1;
int g_enableLogWarning = 1;
int g_enableLogInfo = 1;
int g_enableLogVerbose = 1;
int g_enableSystemLog = 1;

namespace {

HostPlatform::Internal::LogCapture& CameraLog() {
    static auto* capture = new HostPlatform::Internal::LogCapture();
    return *capture;
}

struct SwitchCalls {
    std::mutex mutex;
    std::vector<int> calls;
};

SwitchCalls& Switches() {
    static auto* calls = new SwitchCalls();
    return *calls;
}

// printf-style formatting into a string; short messages need no allocation
// beyond the result.
std::string Format(const char* fmt, va_list args) {
    if (fmt == nullptr) {
        return std::string();
    }
    char buffer[512];
    va_list copy;
    va_copy(copy, args);
    const int length = vsnprintf(buffer, sizeof(buffer), fmt, copy);
    va_end(copy);
    if (length < 0) {
        return std::string();
    }
    if (static_cast<size_t>(length) < sizeof(buffer)) {
        return std::string(buffer, static_cast<size_t>(length));
    }
    std::string text(static_cast<size_t>(length) + 1, '\0');
    vsnprintf(&text[0], text.size(), fmt, args);
    text.resize(static_cast<size_t>(length));
    return text;
}

}  // namespace

namespace OLog {

void LogSystem(const char* prefix, const char* level, const char* tag, const char* file,
               const char* func, int line, const char* fmt, ...) {
    (void)prefix;
    (void)tag;
    (void)file;
    (void)func;
    (void)line;
    va_list args;
    va_start(args, fmt);
    std::string message = Format(fmt, args);
    va_end(args);
    CameraLog().Append((level != nullptr ? level : "") + (' ' + message));
}

void SwitchLogEnable(int enable) {
    SwitchCalls& switches = Switches();
    std::lock_guard<std::mutex> lock(switches.mutex);
    switches.calls.push_back(enable);
}

}  // namespace OLog

namespace HostPlatform {

void SetLogSwitches(bool error, bool warning, bool info, bool verbose, bool system) {
    g_enableLogError = error ? 1 : 0;
    g_enableLogWarning = warning ? 1 : 0;
    g_enableLogInfo = info ? 1 : 0;
    g_enableLogVerbose = verbose ? 1 : 0;
    g_enableSystemLog = system ? 1 : 0;
}

std::vector<std::string> TakeCameraLog() {
    return CameraLog().Take();
}

std::vector<int> TakeSwitchLogEnableCalls() {
    SwitchCalls& switches = Switches();
    std::lock_guard<std::mutex> lock(switches.mutex);
    return std::exchange(switches.calls, {});
}

}  // namespace HostPlatform
