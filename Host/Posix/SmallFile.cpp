#include "Host/SmallFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <stdexcept>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace OrvaneHost {

namespace {

[[noreturn]] void fail(const std::string& why) {
    throw std::runtime_error(why);
}

// An open file or pipe. Opening a pipe does not wait for a writer.
class SmallFile {
public:
    explicit SmallFile(const std::filesystem::path& path)
        : descriptor_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {
        struct stat status {};
        if (descriptor_ < 0 || fstat(descriptor_, &status) != 0)
            fail(std::strerror(errno));
        isPipe_ = S_ISFIFO(status.st_mode);
        if (!isPipe_ && !S_ISREG(status.st_mode))
            fail("it is neither a file nor a pipe");
    }
    SmallFile(const SmallFile&) = delete;
    SmallFile& operator=(const SmallFile&) = delete;
    ~SmallFile() { close(descriptor_); }

    std::string readAll(std::size_t maxBytes, std::chrono::steady_clock::time_point deadline) const {
        std::string text;
        for (;;) {
            std::array<char, 4096> bytes{};
            const ssize_t count = read(descriptor_, bytes.data(), bytes.size());
            if (count < 0 && errno != EAGAIN && errno != EINTR)
                fail(std::strerror(errno));
            // Until a writer opens a pipe, reading from it reports its end.
            if (count == 0 && !(isPipe_ && text.empty()))
                return text;
            text.append(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
            if (text.size() > maxBytes)
                fail(fmt::format("it is larger than {} KiB", maxBytes >> 10));
            if (std::chrono::steady_clock::now() > deadline)
                fail("the pipe was not closed in time");
            if (count <= 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }

private:
    const int descriptor_;
    bool isPipe_ = false;
};

} // namespace

std::string readSmallFile(const std::filesystem::path& path, std::size_t maxBytes, std::chrono::seconds timeout) {
    return SmallFile(path).readAll(maxBytes, std::chrono::steady_clock::now() + timeout);
}

} // namespace OrvaneHost
