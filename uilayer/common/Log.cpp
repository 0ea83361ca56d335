#include "common/Log.h"

#include <cstdarg>
#include <cstdio>

namespace Lumora {

void LogToAndroid(int priority, const char* format, ...) {
    char buffer[512] = {};
    va_list args;
    va_start(args, format);
    vsnprintf(buffer, sizeof(buffer), format, args);
    va_end(args);
    __android_log_write(priority, "CamL", buffer);
}

}  // namespace Lumora
