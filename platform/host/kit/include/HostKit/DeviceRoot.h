// A device root: a fresh temporary directory holding the device files of a
// run and a link to the host sibling camera layer. Host builds of the library
// look every absolute device path up under UILAYER_DEVICE_ROOT.
#ifndef HOSTKIT_DEVICE_ROOT_H
#define HOSTKIT_DEVICE_ROOT_H

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace HostKit {

// The build tree's device root, which holds the host sibling camera layer.
const char* DefaultSiblingRoot();

class DeviceRoot {
public:
    // Creates the directory `prefix`.XXXXXX under $TMPDIR (or /dev/shm when
    // it may be written, or /tmp) and links
    // odm/lib64/hw/camera.lumora.v2.so to the one under `siblingRoot`.
    // Throws std::runtime_error when that fails.
    explicit DeviceRoot(const std::string& siblingRoot = DefaultSiblingRoot(),
                        const std::string& prefix = "uilayer-root");
    // Removes the directory and puts UILAYER_DEVICE_ROOT back as it was.
    ~DeviceRoot();
    DeviceRoot(const DeviceRoot&) = delete;
    DeviceRoot& operator=(const DeviceRoot&) = delete;

    const std::string& Path() const { return m_path; }
    // Writes `content` to the device path (absolute, as the library opens it),
    // creating its directories. Throws std::runtime_error on failure.
    void WriteFile(const std::string& devicePath, const std::string& content);
    // Removes a file written before.
    void RemoveFile(const std::string& devicePath);
    // Removes every file written before that is not in `files` with the same
    // content; those that are stay and are not written again.
    void KeepOnly(const std::vector<std::pair<std::string, std::string>>& files);
    // Points UILAYER_DEVICE_ROOT at this root.
    void Activate();

    // Removes what the newest root created, with unlink and rmdir alone, so
    // that a SIGABRT handler may call it.
    static void RemoveNewest();

private:
    void MakeDirectories(const std::string& relative);
    void Remove();

    std::string m_path;
    std::vector<std::string> m_created;            // in creation order
    std::map<std::string, std::string> m_written;  // device path: content
    bool m_hadVariable = false;
    std::string m_oldVariable;
    bool m_active = false;
};

}  // namespace HostKit

#endif  // HOSTKIT_DEVICE_ROOT_H
