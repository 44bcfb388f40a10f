#include "Testing/Detail/Files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <system_error>

namespace Orvane::Testing::Detail {

namespace {

[[noreturn]] void fail(const char* what, const std::filesystem::path& path, const std::string& why) {
    throw std::runtime_error(fmt::format("can't {} {}: {}", what, shown(path), why));
}

} // namespace

std::string shown(const std::filesystem::path& path) {
    std::string text = path.string();
    std::replace_if(
        text.begin(), text.end(), [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; }, '?');
    return '"' + text + '"';
}

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder, std::string_view extension) {
    std::vector<std::filesystem::path> files;
    try {
        if (!std::filesystem::exists(folder))
            return files;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            if (entry.path().extension() == extension)
                files.push_back(entry.path());
    } catch (const std::filesystem::filesystem_error& error) {
        fail("read", folder, error.code().message());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string readFile(const std::filesystem::path& path) {
    std::error_code error;
    const bool isFile = std::filesystem::is_regular_file(path, error);
    if (!isFile)
        fail("read", path, error ? error.message() : "it is no file");
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file)
        fail("read", path, std::strerror(errno));
    return bytes;
}

bool createFile(const std::filesystem::path& path, std::string_view bytes) {
    std::FILE* const created = std::fopen(path.string().c_str(), "wbx");
    if (!created && errno == EEXIST)
        return false;
    if (!created)
        fail("write", path, std::strerror(errno));
    const bool isWritten = bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), created) == bytes.size();
    if (std::fclose(created) == 0 && isWritten)
        return true;
    const std::string why = std::strerror(errno);
    std::filesystem::remove(path);
    fail("write", path, why);
}

} // namespace Orvane::Testing::Detail
