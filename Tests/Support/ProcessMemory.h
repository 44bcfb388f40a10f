#pragma once

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <string>

/// A memory field of this process's status, in bytes: what is resident ("VmRSS:"), of files ("RssFile:"), or
/// was at the peak ("VmHWM:").
inline std::size_t memoryInUse(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(field))
            return 1024 * std::stoul(line.substr(field.size()));
    return 0;
}

/// How much memory the process comes to use while this lives. Under a sanitizer, which keeps freed memory, there is
/// nothing to see.
class PeakMemory {
public:
    PeakMemory() { std::ofstream("/proc/self/clear_refs") << "5"; }

    /// Bytes at the peak beyond those at the start.
    std::size_t growth() const {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        return 0;
#else
        return std::max(memoryInUse("VmHWM:"), start_) - start_;
#endif
    }

private:
    const std::size_t start_ = memoryInUse("VmRSS:");
};
