// A private TMPDIR for one test, so that counting what a test leaves behind
// is not disturbed by tests running in parallel.
#ifndef UILAYER_SIM_SCOPED_TEMP_DIR_H
#define UILAYER_SIM_SCOPED_TEMP_DIR_H

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace UilayerSim {

class ScopedTempDir {
public:
    ScopedTempDir() {
        const char* old = getenv("TMPDIR");
        m_old = old != nullptr ? std::make_unique<std::string>(old) : nullptr;
        char pattern[] = "/tmp/uilayer-sim-test.XXXXXX";
        if (mkdtemp(pattern) != nullptr) {
            m_path = pattern;
            setenv("TMPDIR", m_path.c_str(), 1);
        }
    }
    ~ScopedTempDir() {
        m_old ? setenv("TMPDIR", m_old->c_str(), 1) : unsetenv("TMPDIR");
        std::filesystem::remove(m_path);
    }
    ScopedTempDir(const ScopedTempDir&) = delete;
    ScopedTempDir& operator=(const ScopedTempDir&) = delete;

    const std::string& Path() const { return m_path; }

    // Names in the directory.
    std::vector<std::string> Entries() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

private:
    std::string m_path;
    std::unique_ptr<std::string> m_old;
};

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SCOPED_TEMP_DIR_H
