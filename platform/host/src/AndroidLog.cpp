// Host platform log: records the text of every write for the tests.
//
// A write with a null text records nothing and returns -EINVAL; priority and
// tag are not kept.
#include <errno.h>

#include <log/log.h>
#include <HostPlatform.h>

#include "LogCapture.h"

namespace {

HostPlatform::Internal::LogCapture& AndroidLog() {
    static auto* capture = new HostPlatform::Internal::LogCapture();
    return *capture;
}

}  // namespace

extern "C" int __android_log_write(int prio, const char* tag, const char* text) {
    (void)prio;
    (void)tag;
    if (text == nullptr) {
        return -EINVAL;
    }
    AndroidLog().Append(text);
    return 1;
}

namespace HostPlatform {

std::vector<std::string> TakeAndroidLog() {
    return AndroidLog().Take();
}

}  // namespace HostPlatform
