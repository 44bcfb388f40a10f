#include "Host/TokenFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace OrvaneHost {

namespace {

constexpr std::size_t maxBytes = std::size_t{64} << 10;

[[noreturn]] void fail(const std::string& why) {
    throw std::runtime_error("can't read the token from its file: " + why + "; check --token-file");
}

// Opened without waiting for whoever writes into a pipe.
class TokenFile {
public:
    explicit TokenFile(const std::string& path) : descriptor_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {
        struct stat status {};
        if (descriptor_ < 0 || fstat(descriptor_, &status) != 0)
            fail(std::strerror(errno));
        isPipe_ = S_ISFIFO(status.st_mode);
        if (!isPipe_ && !S_ISREG(status.st_mode))
            fail("it is neither a file nor a pipe");
    }
    TokenFile(const TokenFile&) = delete;
    TokenFile& operator=(const TokenFile&) = delete;
    ~TokenFile() { close(descriptor_); }

    std::string readAll(std::chrono::steady_clock::time_point deadline) const {
        std::string text;
        for (;;) {
            std::array<char, 4096> bytes{};
            const ssize_t count = read(descriptor_, bytes.data(), bytes.size());
            if (count < 0 && errno != EAGAIN && errno != EINTR)
                fail(std::strerror(errno));
            // Until somebody writes into a pipe, it seems to have ended.
            if (count == 0 && !(isPipe_ && text.empty()))
                return text;
            text.append(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
            if (text.size() > maxBytes)
                fail("it is larger than 64 KiB");
            if (std::chrono::steady_clock::now() > deadline)
                fail("the pipe has not ended in time");
            if (count <= 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }

private:
    const int descriptor_;
    bool isPipe_ = false;
};

std::string withoutBlanks(const std::string& text) {
    constexpr const char* blanks = " \t\r\n";
    const std::size_t start = std::min(text.find_first_not_of(blanks), text.size());
    return text.substr(start, text.find_last_not_of(blanks) + 1 - start);
}

} // namespace

std::string readToken(const std::string& tokenFile, std::chrono::seconds timeout) {
    const char* const variable = std::getenv("ORVANE_TOKEN");
    std::string token = tokenFile.empty()
                            ? std::string(variable ? variable : "")
                            : withoutBlanks(TokenFile(tokenFile).readAll(std::chrono::steady_clock::now() + timeout));
    const auto isVisible = [](unsigned char byte) { return byte > 0x20 && byte < 0x7F; };
    if (!std::all_of(token.begin(), token.end(), isVisible) || (token.empty() && !tokenFile.empty()))
        throw std::runtime_error(
            "the token is not one word of visible ASCII characters; check ORVANE_TOKEN or --token-file");
    return token;
}

} // namespace OrvaneHost
