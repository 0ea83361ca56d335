#include <HostFiles.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace HostPlatform {

namespace {

bool Fail(int fd, int error, std::string* reason) {
    if (fd >= 0) {
        close(fd);
    }
    if (reason != nullptr) {
        *reason = strerror(error);
    }
    return false;
}

}  // namespace

bool ReadWholeFile(const std::string& path, std::string* text, std::string* reason) {
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat info = {};
    if (fd < 0 || fstat(fd, &info) != 0) {
        return Fail(fd, errno, reason);
    }
    if (S_ISDIR(info.st_mode)) {
        return Fail(fd, EISDIR, reason);
    }
    text->clear();
    char buffer[65536];
    ssize_t count = 0;
    while ((count = read(fd, buffer, sizeof(buffer))) != 0) {
        if (count > 0) {
            text->append(buffer, static_cast<size_t>(count));
        } else if (errno != EINTR) {
            return Fail(fd, errno, reason);
        }
    }
    close(fd);
    return true;
}

bool WriteAll(int fd, const char* data, size_t size) {
    size_t done = 0;
    while (done < size) {
        const ssize_t written = write(fd, data + done, size - done);
        if (written <= 0) {
            return false;
        }
        done += static_cast<size_t>(written);
    }
    return true;
}

}  // namespace HostPlatform
