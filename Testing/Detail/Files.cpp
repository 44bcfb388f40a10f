#include "Testing/Detail/Files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace Orvane::Testing::Detail {

namespace {

[[noreturn]] void fail(const char* what, const std::filesystem::path& path, const std::string& why) {
    throw std::runtime_error(fmt::format("can't {} \"{}\": {}", what, path.string(), why));
}

} // namespace

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder, std::string_view extension) {
    std::vector<std::filesystem::path> files;
    try {
        if (!std::filesystem::exists(folder))
            return files;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            if (entry.path().extension() == extension)
                files.push_back(entry.path());
        std::sort(files.begin(), files.end());
        for (const std::filesystem::path& file : files)
            if (!std::filesystem::is_regular_file(file))
                fail("read", file, "it is no file");
    } catch (const std::filesystem::filesystem_error& error) {
        fail("read", error.path1(), error.code().message());
    }
    return files;
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file)
        fail("read", path, std::strerror(errno));
    return bytes;
}

void writeFile(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
        fail("write", path, std::strerror(errno));
}

} // namespace Orvane::Testing::Detail
