// Two-channel logging: every message goes to the camera logger and, for errors
// always and for the other levels only when the system log switch is on, to the
// Android log as "<prefix>[LUMORA] <file>:<line> <func>() <message>\n".
//
// Each level's switch is tested before anything is formatted, so a log
// statement whose switch is off costs one load and one branch. Messages must be
// string literals (the Android line is assembled at compile time).
#ifndef LUMORA_LOG_H
#define LUMORA_LOG_H

#include <OLog.h>
#include <log/log.h>

namespace Lumora {

// Text after the last '/' of a source path.
constexpr const char* LogFileName(const char* path) {
    const char* name = path;
    for (const char* p = path; *p != '\0'; ++p) {
        if (*p == '/') {
            name = p + 1;
        }
    }
    return name;
}

// Whether [begin, end) holds exactly the text `word`.
constexpr bool LogTextIs(const char* begin, const char* end, const char* word) {
    for (; begin != end; ++begin, ++word) {
        if (*word == '\0' || *word != *begin) {
            return false;
        }
    }
    return *word == '\0';
}

// The source name a log line shows. Each class family logs under the name of
// its one source file, however its code is split over the files of its
// folder; the helpers of common/ serve the session side. Headers, and sources
// outside the library's folders, keep their own name.
constexpr const char* LogSourceName(const char* path) {
    const char* name = LogFileName(path);
    const char* end = name;
    while (*end != '\0') {
        ++end;
    }
    if (end - name >= 2 && end[-2] == '.' && end[-1] == 'h') {
        return name;
    }
    if (name - path < 2) {
        return name;
    }
    const char* folderEnd = name - 1;
    const char* folder = folderEnd;
    while (folder != path && folder[-1] != '/') {
        --folder;
    }
    if (LogTextIs(folder, folderEnd, "uiparser")) {
        return "UIParser.cpp";
    }
    if (LogTextIs(folder, folderEnd, "staticsupportcaps") ||
        LogTextIs(folder, folderEnd, "common")) {
        return "StaticSupportCapabilities.cpp";
    }
    if (LogTextIs(folder, folderEnd, "requestdesiredcaps")) {
        return "RequestDesiredCapabilities.cpp";
    }
    if (LogTextIs(folder, folderEnd, "resultappliedcaps")) {
        return "ResultAppliedCapabilities.cpp";
    }
    return name;
}

// Formats into a zero-filled 512-byte stack buffer (longer text is cut to 511
// characters) and writes it to the Android log with the tag "CamL".
void LogToAndroid(int priority, const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 2, 3)))
#endif
    ;

}  // namespace Lumora

#define LUMORA_LOG_TAG "[LUMORA]"

#define LUMORA_LOG_IMPL(enabled, toAndroid, priority, prefix, level, func, fmt, ...)               \
    do {                                                                                           \
        if (enabled) {                                                                             \
            OLog::LogSystem(prefix, level, LUMORA_LOG_TAG, ::Lumora::LogSourceName(__FILE__),      \
                            func, __LINE__, fmt, ##__VA_ARGS__);                                   \
            if (toAndroid) {                                                                       \
                ::Lumora::LogToAndroid(priority, prefix "%s %s:%d %s() " fmt "\n", LUMORA_LOG_TAG, \
                                       ::Lumora::LogSourceName(__FILE__), __LINE__, func,          \
                                       ##__VA_ARGS__);                                             \
            }                                                                                      \
        }                                                                                          \
    } while (0)

#define UI_LOGE(fmt, ...)                                                                     \
    LUMORA_LOG_IMPL(g_enableLogError, true, ANDROID_LOG_ERROR, "[ERROR]", "E", __func__, fmt, \
                    ##__VA_ARGS__)
#define UI_LOGW(fmt, ...)                                                                    \
    LUMORA_LOG_IMPL(g_enableLogWarning, g_enableSystemLog, ANDROID_LOG_WARN, "[ WARN]", "W", \
                    __func__, fmt, ##__VA_ARGS__)
#define UI_LOGI(fmt, ...)                                                                 \
    LUMORA_LOG_IMPL(g_enableLogInfo, g_enableSystemLog, ANDROID_LOG_INFO, "[ INFO]", "I", \
                    __func__, fmt, ##__VA_ARGS__)
#define UI_LOGV(fmt, ...)                                                                       \
    LUMORA_LOG_IMPL(g_enableLogVerbose, g_enableSystemLog, ANDROID_LOG_VERBOSE, "[ VERB]", "V", \
                    __func__, fmt, ##__VA_ARGS__)

// An info line written on behalf of the configuration step `func`, for helpers
// that do part of that step's work: the line names the step, not the helper.
#define UI_LOGI_IN(func, fmt, ...)                                                              \
    LUMORA_LOG_IMPL(g_enableLogInfo, g_enableSystemLog, ANDROID_LOG_INFO, "[ INFO]", "I", func, \
                    fmt, ##__VA_ARGS__)

#define UI_LOGE_IN(func, fmt, ...)                                                        \
    LUMORA_LOG_IMPL(g_enableLogError, true, ANDROID_LOG_ERROR, "[ERROR]", "E", func, fmt, \
                    ##__VA_ARGS__)

// True when a log line of that level would be written; for callers that must
// prepare arguments (for example a caps dump string) before logging.
#define UI_LOG_INFO_ON() (g_enableLogInfo != 0)
#define UI_LOG_VERBOSE_ON() (g_enableLogVerbose != 0)

#endif  // LUMORA_LOG_H
