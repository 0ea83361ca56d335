// Host stand-in of the platform's log.
#ifndef LOG_LOG_H
#define LOG_LOG_H

#ifdef __cplusplus
extern "C" {
#endif

typedef enum android_LogPriority {
    ANDROID_LOG_UNKNOWN = 0,
    ANDROID_LOG_DEFAULT,
    ANDROID_LOG_VERBOSE,
    ANDROID_LOG_DEBUG,
    ANDROID_LOG_INFO,
    ANDROID_LOG_WARN,
    ANDROID_LOG_ERROR,
    ANDROID_LOG_FATAL,
    ANDROID_LOG_SILENT
} android_LogPriority;

int __android_log_write(int prio, const char* tag, const char* text);

#ifdef __cplusplus
}
#endif

#endif  // LOG_LOG_H
