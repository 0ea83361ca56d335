#include "replay/Progress.h"

#include <cstdio>

namespace UilayerSim {

namespace {

// A replay shorter than this shows no line; a shown line changes at most
// this often.
constexpr std::chrono::milliseconds kFirstAfter{1000};
constexpr std::chrono::milliseconds kEvery{250};

}  // namespace

void Progress::Show(size_t session, size_t sessions, uint32_t frame) {
    const Clock::time_point now = Clock::now();
    if (now - m_start < kFirstAfter || (m_written && now - m_last < kEvery)) {
        return;
    }
    m_last = now;
    m_written = true;
    fprintf(stderr, "\ruilayer-sim: session %zu of %zu, frame %u\033[K", session + 1, sessions,
            frame);
    fflush(stderr);
}

Progress::~Progress() {
    if (m_written) {
        fprintf(stderr, "\r\033[K");
        fflush(stderr);
    }
}

}  // namespace UilayerSim
