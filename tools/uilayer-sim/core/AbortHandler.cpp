#include "core/AbortHandler.h"

#include <HostFiles.h>
#include <HostKit/DeviceRoot.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>

namespace UilayerSim {

namespace {

char g_currentStep[256] = "setting up";

void WriteAll(int fd, const char* text) {
    HostPlatform::WriteAll(fd, text, strlen(text));
}

void OnAbort(int) {
    WriteAll(STDERR_FILENO, "uilayer-sim: the library aborted the process during ");
    WriteAll(STDERR_FILENO, g_currentStep);
    WriteAll(STDERR_FILENO, "\n");
    HostKit::DeviceRoot::RemoveNewest();
    signal(SIGABRT, SIG_DFL);
    raise(SIGABRT);
}

}  // namespace

void SetCurrentStep(const std::string& description) {
    const size_t length = std::min(description.size(), sizeof(g_currentStep) - 1);
    memcpy(g_currentStep, description.data(), length);
    g_currentStep[length] = '\0';
}

void InstallAbortHandler() {
    signal(SIGABRT, OnAbort);
}

}  // namespace UilayerSim
