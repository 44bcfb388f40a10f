#include "Testing/Detail/Files.h"

#include <algorithm>
#include <boost/beast/core/file.hpp>
#include <boost/system/system_category.hpp>
#include <cerrno>
#include <cstring>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace Orvane::Testing::Detail {

namespace {

std::string textOf(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

// Returns the message in UTF-8; for system errors, only Boost guarantees that.
std::string messageOf(const std::error_code& error) {
    return error.category() == std::system_category() ? boost::system::system_category().message(error.value())
                                                      : error.message();
}

[[noreturn]] void fail(const char* what, const std::filesystem::path& path, const std::string& why) {
    throw std::runtime_error(fmt::format("can't {} {}: {}", what, shown(path), why));
}

} // namespace

std::string shown(const std::filesystem::path& path) {
    std::string text = textOf(path);
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
        fail("read", folder, messageOf(error.code()));
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string readFile(const std::filesystem::path& path) {
    std::error_code error;
    const bool isFile = std::filesystem::is_regular_file(path, error);
    if (!isFile)
        fail("read", path, error ? messageOf(error) : "it is not a regular file");
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file)
        fail("read", path, std::strerror(errno));
    return bytes;
}

bool createFile(const std::filesystem::path& path, std::string_view bytes) {
    using boost::system::error_code;
    boost::beast::file file;
    error_code error;
    file.open(textOf(path).c_str(), boost::beast::file_mode::write_new, error);
    if (error == boost::system::errc::file_exists)
        return false;
    if (error)
        fail("write", path, error.message());
    file.write(bytes.data(), bytes.size(), error);
    error_code closingError;
    file.close(closingError);
    if (!error && !closingError)
        return true;
    std::filesystem::remove(path);
    fail("write", path, (error ? error : closingError).message());
}

} // namespace Orvane::Testing::Detail
