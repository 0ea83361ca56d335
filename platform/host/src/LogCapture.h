// Capture buffer shared by the two host log channels.
#ifndef HOST_LOG_CAPTURE_H
#define HOST_LOG_CAPTURE_H

#include <deque>
#include <mutex>
#include <string>
#include <vector>

namespace HostPlatform {
namespace Internal {

// Texts recorded oldest first. To keep a long run that never collects its logs
// from growing without bound, only the newest kMaxLines are kept.
class LogCapture {
public:
    static constexpr size_t kMaxLines = 65536;

    void Append(std::string line) {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_lines.size() >= kMaxLines) {
            m_lines.pop_front();
        }
        m_lines.push_back(std::move(line));
    }

    std::vector<std::string> Take() {
        std::lock_guard<std::mutex> lock(m_mutex);
        std::vector<std::string> lines(std::make_move_iterator(m_lines.begin()),
                                       std::make_move_iterator(m_lines.end()));
        m_lines.clear();
        return lines;
    }

private:
    std::mutex m_mutex;
    std::deque<std::string> m_lines;
};

}  // namespace Internal
}  // namespace HostPlatform

#endif  // HOST_LOG_CAPTURE_H
