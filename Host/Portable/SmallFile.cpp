#include "Host/SmallFile.h"

#include <cerrno>
#include <cstring>
#include <fmt/format.h>
#include <fstream>
#include <stdexcept>

namespace OrvaneHost {

std::string readSmallFile(const std::filesystem::path& path, std::size_t maxBytes, std::chrono::seconds) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        throw std::runtime_error(error ? error.message() : "it is not a file");
    std::ifstream file(path, std::ios::binary);
    std::string text(maxBytes + 1, '\0');
    if (!file.is_open())
        throw std::runtime_error(std::strerror(errno));
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (file.bad())
        throw std::runtime_error(std::strerror(errno));
    text.resize(static_cast<std::size_t>(file.gcount()));
    if (text.size() > maxBytes)
        throw std::runtime_error(fmt::format("it is larger than {} KiB", maxBytes >> 10));
    return text;
}

} // namespace OrvaneHost
