#include "Host/FileReplacement.h"

#include <cerrno>
#include <fmt/format.h>
#include <fstream>
#include <random>
#include <system_error>

namespace OrvaneHost {

namespace {

void write(const std::filesystem::path& path, std::string_view content) {
    std::ofstream stream(path, std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    if (!stream)
        throw std::system_error(errno, std::generic_category());
}

// Removes a file that has not been renamed.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& target) : path_(target) {
        std::random_device random; // Nobody else may know the name: a link could be in its place.
        path_ += fmt::format(".{:08x}{:08x}", random(), random());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

} // namespace

void replaceFile(const std::filesystem::path& path, std::string_view content) {
    const std::filesystem::file_status status = std::filesystem::status(path);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        write(path, content);
        return;
    }
    const std::filesystem::path target = std::filesystem::weakly_canonical(path);
    const TemporaryFile temporary(target);
    write(temporary.path(), "");
    if (std::filesystem::exists(status))
        std::filesystem::permissions(temporary.path(), status.permissions());
    write(temporary.path(), content);
    std::filesystem::rename(temporary.path(), target);
}

} // namespace OrvaneHost
