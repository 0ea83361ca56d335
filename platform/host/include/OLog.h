// Host stand-in of the camera logger library.
#ifndef OLOG_H
#define OLOG_H

// Level switches owned by the logger; non-zero means on.
extern int g_enableLogError;
extern int g_enableLogWarning;
extern int g_enableLogInfo;
extern int g_enableLogVerbose;
extern int g_enableSystemLog;

namespace OLog {
void LogSystem(const char* prefix, const char* level, const char* tag, const char* file,
               const char* func, int line, const char* fmt, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 7, 8)))
#endif
    ;
void SwitchLogEnable(int enable);
}  // namespace OLog

#endif  // OLOG_H
