#pragma once

#include <cstddef>
#include <fstream>
#include <string>

/// Returns a memory field of this process's status, in bytes: the resident memory ("VmRSS:"), the
/// part of it that maps files ("RssFile:"), or the peak of the resident memory ("VmHWM:").
inline std::size_t memoryInUse(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(field))
            return 1024 * std::stoul(line.substr(field.size()));
    return 0;
}
