// The device root of one replay: a fresh temporary directory that holds the
// device files of the scenario and a link to the host sibling camera layer.
// The library looks its device paths up under it (UILAYER_DEVICE_ROOT).
#ifndef UILAYER_SIM_DEVICE_ROOT_H
#define UILAYER_SIM_DEVICE_ROOT_H

#include <string>
#include <vector>

namespace UilayerSim {

class DeviceRoot {
public:
    // Creates the directory under $TMPDIR (or /tmp) and links
    // odm/lib64/hw/camera.lumora.v2.so to the one under `siblingRoot`.
    // Throws std::runtime_error when that fails.
    explicit DeviceRoot(const std::string& siblingRoot);
    // Removes the directory and puts UILAYER_DEVICE_ROOT back as it was.
    ~DeviceRoot();
    DeviceRoot(const DeviceRoot&) = delete;
    DeviceRoot& operator=(const DeviceRoot&) = delete;

    const std::string& Path() const { return m_path; }
    // Writes `content` to the device path (absolute, as the library opens it),
    // creating its directories. Throws std::runtime_error on failure.
    void WriteFile(const std::string& devicePath, const std::string& content);
    // Points UILAYER_DEVICE_ROOT at this root.
    void Activate();

private:
    void MakeDirectories(const std::string& relative);
    void Remove();

    std::string m_path;
    std::vector<std::string> m_created;  // in creation order
    bool m_hadVariable = false;
    std::string m_oldVariable;
    bool m_active = false;
};

// What the replay is doing, for the message written when the library aborts
// the process; the handler also removes the device root.
void SetCurrentStep(const std::string& description);
void InstallAbortHandler();

}  // namespace UilayerSim

#endif  // UILAYER_SIM_DEVICE_ROOT_H
