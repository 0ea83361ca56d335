// A progress line on standard error for long replays: shown only when asked
// (standard error is a terminal) and once a replay has run for a second.
#ifndef UILAYER_SIM_PROGRESS_H
#define UILAYER_SIM_PROGRESS_H

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace UilayerSim {

class Progress {
public:
    explicit Progress(bool shown) : m_shown(shown), m_start(Clock::now()), m_last(m_start) {}
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Where the replay is; cheap when the line is not shown or not due.
    void Note(size_t session, size_t sessions, uint32_t frame) {
        if (m_shown) {
            Show(session, sessions, frame);
        }
    }

private:
    using Clock = std::chrono::steady_clock;
    void Show(size_t session, size_t sessions, uint32_t frame);

    bool m_shown;
    bool m_written = false;
    Clock::time_point m_start;
    Clock::time_point m_last;
};

}  // namespace UilayerSim

#endif  // UILAYER_SIM_PROGRESS_H
