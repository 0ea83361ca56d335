#include "DeviceRoot.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "Signals.h"

namespace UilayerSim {

namespace {

constexpr const char* kSiblingRelativePath = "odm/lib64/hw/camera.lumora.v2.so";

// What the newest root created, for the abort handler.
std::vector<std::string>* g_abortCleanup = nullptr;

char g_currentStep[256] = "setting up";

// Removes the paths in reverse creation order with unlink and rmdir alone.
void RemovePaths(std::vector<std::string>* created) {
    for (auto it = created->rbegin(); it != created->rend(); ++it) {
        if (unlink(it->c_str()) != 0) {
            rmdir(it->c_str());
        }
    }
    created->clear();
}

void WriteAll(int fd, const char* text) {
    size_t length = strlen(text);
    while (length > 0) {
        const ssize_t written = write(fd, text, length);
        if (written <= 0) {
            return;
        }
        text += written;
        length -= static_cast<size_t>(written);
    }
}

void OnAbort(int) {
    WriteAll(STDERR_FILENO, "uilayer-sim: the library aborted the process during ");
    WriteAll(STDERR_FILENO, g_currentStep);
    WriteAll(STDERR_FILENO, "\n");
    if (g_abortCleanup != nullptr) {
        RemovePaths(g_abortCleanup);
    }
    signal(SIGABRT, SIG_DFL);
    raise(SIGABRT);
}

std::runtime_error SystemError(const std::string& what, const std::string& path) {
    return std::runtime_error(what + " " + path + ": " + strerror(errno));
}

}  // namespace

DeviceRoot::DeviceRoot(const std::string& siblingRoot) {
    const char* tmp = getenv("TMPDIR");
    std::string pattern =
        std::string(tmp != nullptr && *tmp != '\0' ? tmp : "/tmp") + "/uilayer-sim.XXXXXX";
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    if (mkdtemp(buffer.data()) == nullptr) {
        throw SystemError("cannot create the device root", pattern);
    }
    m_path = buffer.data();
    RegisterCleanupPath(m_path);
    m_created.push_back(m_path);
    g_abortCleanup = &m_created;

    const std::string sibling = siblingRoot + "/" + kSiblingRelativePath;
    if (access(sibling.c_str(), R_OK) != 0) {
        const std::runtime_error error =
            SystemError("the host sibling camera layer is missing:", sibling);
        Remove();
        throw error;
    }
    MakeDirectories("odm/lib64/hw");
    const std::string link = m_path + "/" + kSiblingRelativePath;
    if (symlink(sibling.c_str(), link.c_str()) != 0) {
        const std::runtime_error error = SystemError("cannot link", link);
        Remove();
        throw error;
    }
    m_created.push_back(link);
}

DeviceRoot::~DeviceRoot() {
    Remove();
}

void DeviceRoot::Remove() {
    if (m_active) {
        if (m_hadVariable) {
            setenv("UILAYER_DEVICE_ROOT", m_oldVariable.c_str(), 1);
        } else {
            unsetenv("UILAYER_DEVICE_ROOT");
        }
        m_active = false;
    }
    RemovePaths(&m_created);
    RegisterCleanupPath("");
    if (g_abortCleanup == &m_created) {
        g_abortCleanup = nullptr;
    }
}

void DeviceRoot::MakeDirectories(const std::string& relative) {
    size_t position = 0;
    while (position < relative.size()) {
        size_t slash = relative.find('/', position);
        if (slash == std::string::npos) {
            slash = relative.size();
        }
        const std::string directory = m_path + "/" + relative.substr(0, slash);
        if (mkdir(directory.c_str(), 0755) == 0) {
            m_created.push_back(directory);
        } else if (errno != EEXIST) {
            throw SystemError("cannot create", directory);
        }
        position = slash + 1;
    }
}

void DeviceRoot::WriteFile(const std::string& devicePath, const std::string& content) {
    const std::string relative = devicePath.substr(devicePath.find_first_not_of('/'));
    const size_t slash = relative.rfind('/');
    if (slash != std::string::npos) {
        MakeDirectories(relative.substr(0, slash));
    }
    const std::string path = m_path + "/" + relative;
    const bool existed = access(path.c_str(), F_OK) == 0;
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd < 0) {
        throw SystemError("cannot write", path);
    }
    if (!existed) {
        m_created.push_back(path);
    }
    size_t done = 0;
    while (done < content.size()) {
        const ssize_t written = write(fd, content.data() + done, content.size() - done);
        if (written <= 0) {
            close(fd);
            throw SystemError("cannot write", path);
        }
        done += static_cast<size_t>(written);
    }
    close(fd);
}

void DeviceRoot::Activate() {
    if (!m_active) {
        const char* old = getenv("UILAYER_DEVICE_ROOT");
        m_hadVariable = old != nullptr;
        m_oldVariable = old != nullptr ? old : "";
        m_active = true;
    }
    setenv("UILAYER_DEVICE_ROOT", m_path.c_str(), 1);
}

void SetCurrentStep(const std::string& description) {
    const size_t length = std::min(description.size(), sizeof(g_currentStep) - 1);
    memcpy(g_currentStep, description.data(), length);
    g_currentStep[length] = '\0';
}

void InstallAbortHandler() {
    signal(SIGABRT, OnAbort);
}

}  // namespace UilayerSim
