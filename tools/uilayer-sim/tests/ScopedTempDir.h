// A private TMPDIR for one test, so that counting what a test leaves behind
// is not disturbed by tests running in parallel.
#ifndef UILAYER_SIM_SCOPED_TEMP_DIR_H
#define UILAYER_SIM_SCOPED_TEMP_DIR_H

#include <dirent.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace UilayerSim {

class ScopedTempDir {
public:
    ScopedTempDir() {
        const char* old = getenv("TMPDIR");
        m_hadOld = old != nullptr;
        m_old = old != nullptr ? old : "";
        char pattern[] = "/tmp/uilayer-sim-test.XXXXXX";
        if (mkdtemp(pattern) != nullptr) {
            m_path = pattern;
            setenv("TMPDIR", m_path.c_str(), 1);
        }
    }
    ~ScopedTempDir() {
        if (m_hadOld) {
            setenv("TMPDIR", m_old.c_str(), 1);
        } else {
            unsetenv("TMPDIR");
        }
        if (!m_path.empty()) {
            rmdir(m_path.c_str());
        }
    }
    ScopedTempDir(const ScopedTempDir&) = delete;
    ScopedTempDir& operator=(const ScopedTempDir&) = delete;

    const std::string& Path() const { return m_path; }

    // Names in the directory, without "." and "..".
    std::vector<std::string> Entries() const {
        std::vector<std::string> names;
        DIR* dir = opendir(m_path.c_str());
        while (dir != nullptr) {
            const dirent* entry = readdir(dir);
            if (entry == nullptr) {
                break;
            }
            const std::string name = entry->d_name;
            if (name != "." && name != "..") {
                names.push_back(name);
            }
        }
        if (dir != nullptr) {
            closedir(dir);
        }
        return names;
    }

private:
    std::string m_path;
    bool m_hadOld = false;
    std::string m_old;
};

}  // namespace UilayerSim

#endif  // UILAYER_SIM_SCOPED_TEMP_DIR_H
