#pragma once

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
