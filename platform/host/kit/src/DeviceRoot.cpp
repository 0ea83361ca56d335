#include "HostKit/DeviceRoot.h"

#include <HostFiles.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace HostKit {

namespace {

constexpr const char* kSiblingRelativePath = "odm/lib64/hw/camera.lumora.v2.so";
constexpr const char* kVariable = "UILAYER_DEVICE_ROOT";

// What the newest root created, for RemoveNewest.
std::vector<std::string>* g_newest = nullptr;

// Removes the paths in reverse creation order with unlink and rmdir alone.
void RemovePaths(std::vector<std::string>* created) {
    for (auto it = created->rbegin(); it != created->rend(); ++it) {
        if (unlink(it->c_str()) != 0) {
            rmdir(it->c_str());
        }
    }
    created->clear();
}

std::runtime_error SystemError(const std::string& what, const std::string& path) {
    return std::runtime_error(what + " " + path + ": " + strerror(errno));
}

std::string Relative(const std::string& devicePath) {
    const size_t start = devicePath.find_first_not_of('/');
    return start == std::string::npos ? std::string() : devicePath.substr(start);
}

}  // namespace

const char* DefaultSiblingRoot() {
    return UILAYER_HOST_KIT_SIBLING_ROOT;
}

DeviceRoot::DeviceRoot(const std::string& siblingRoot, const std::string& prefix) {
    // Roots are made and removed many times a second by experiments and
    // sweeps: a memory file system does that far faster than a disk.
    const char* tmp = getenv("TMPDIR");
    const char* base = tmp != nullptr && *tmp != '\0'         ? tmp
                       : access("/dev/shm", W_OK | X_OK) == 0 ? "/dev/shm"
                                                              : "/tmp";
    const std::string pattern = std::string(base) + "/" + prefix + ".XXXXXX";
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    if (mkdtemp(buffer.data()) == nullptr) {
        throw SystemError("cannot create the device root", pattern);
    }
    m_path = buffer.data();
    m_created.push_back(m_path);
    g_newest = &m_created;

    // What failed is said before Remove can change errno.
    const auto fail = [this](const std::runtime_error& error) {
        Remove();
        throw error;
    };
    const std::string sibling = siblingRoot + "/" + kSiblingRelativePath;
    if (access(sibling.c_str(), R_OK) != 0) {
        fail(SystemError("the host sibling camera layer is missing:", sibling));
    }
    MakeDirectories("odm/lib64/hw");
    const std::string link = m_path + "/" + kSiblingRelativePath;
    if (symlink(sibling.c_str(), link.c_str()) != 0) {
        fail(SystemError("cannot link", link));
    }
    m_created.push_back(link);
}

DeviceRoot::~DeviceRoot() {
    Remove();
}

void DeviceRoot::Remove() {
    if (m_active) {
        if (m_hadVariable) {
            setenv(kVariable, m_oldVariable.c_str(), 1);
        } else {
            unsetenv(kVariable);
        }
        m_active = false;
    }
    RemovePaths(&m_created);
    if (g_newest == &m_created) {
        g_newest = nullptr;
    }
}

void DeviceRoot::RemoveNewest() {
    if (g_newest != nullptr) {
        RemovePaths(g_newest);
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
    const auto written = m_written.find(devicePath);
    if (written != m_written.end() && written->second == content) {
        return;
    }
    const std::string relative = Relative(devicePath);
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
    m_written.erase(devicePath);
    if (!HostPlatform::WriteAll(fd, content.data(), content.size())) {
        close(fd);
        throw SystemError("cannot write", path);
    }
    close(fd);
    m_written[devicePath] = content;
}

void DeviceRoot::RemoveFile(const std::string& devicePath) {
    m_written.erase(devicePath);
    const std::string path = m_path + "/" + Relative(devicePath);
    if (unlink(path.c_str()) == 0) {
        m_created.erase(std::remove(m_created.begin(), m_created.end(), path), m_created.end());
    }
}

void DeviceRoot::KeepOnly(const std::vector<std::pair<std::string, std::string>>& files) {
    std::vector<std::string> stale;
    for (const auto& written : m_written) {
        const bool kept = std::any_of(files.begin(), files.end(), [&](const auto& file) {
            return file.first == written.first && file.second == written.second;
        });
        if (!kept) {
            stale.push_back(written.first);
        }
    }
    for (const std::string& devicePath : stale) {
        RemoveFile(devicePath);
    }
}

void DeviceRoot::Activate() {
    if (!m_active) {
        const char* old = getenv(kVariable);
        m_hadVariable = old != nullptr;
        m_oldVariable = old != nullptr ? old : "";
        m_active = true;
    }
    setenv(kVariable, m_path.c_str(), 1);
}

}  // namespace HostKit
