// Whole-file reads and writes for the host stand-ins and host tools.
#ifndef HOST_FILES_H
#define HOST_FILES_H

#include <cstddef>
#include <string>

namespace HostPlatform {

// Reads a whole file into `text`; false when it cannot be read, with the
// system's reason ("No such file or directory", "Is a directory") in `reason`
// when given.
bool ReadWholeFile(const std::string& path, std::string* text, std::string* reason = nullptr);

// Writes all `size` bytes to `fd`, again after a short write; false when a
// write fails. Safe in a signal handler.
bool WriteAll(int fd, const char* data, size_t size);

}  // namespace HostPlatform

#endif  // HOST_FILES_H
