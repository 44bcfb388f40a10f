#pragma once

#include <cstddef>
#include <fstream>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

/// While it lives, the process gets no more than `count` threads more: each asks for a stack of a gigabyte, and there
/// is room for so many.
class ScopedThreadScarcity {
public:
    explicit ScopedThreadScarcity(std::size_t count) {
        constexpr std::size_t gigabyte = std::size_t{1} << 30;
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        getrlimit(RLIMIT_AS, &before_);
        const rlimit scarce{pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + gigabyte * count + gigabyte / 2,
                            before_.rlim_max};
        pthread_attr_init(&attributes_);
        pthread_getattr_default_np(&attributes_);
        pthread_attr_getstacksize(&attributes_, &stackSize_);
        pthread_attr_setstacksize(&attributes_, gigabyte);
        pthread_setattr_default_np(&attributes_);
        setrlimit(RLIMIT_AS, &scarce);
    }
    ScopedThreadScarcity(const ScopedThreadScarcity&) = delete;
    ScopedThreadScarcity& operator=(const ScopedThreadScarcity&) = delete;
    ~ScopedThreadScarcity() {
        setrlimit(RLIMIT_AS, &before_);
        pthread_attr_setstacksize(&attributes_, stackSize_);
        pthread_setattr_default_np(&attributes_);
        pthread_attr_destroy(&attributes_);
    }

private:
    rlimit before_{};
    pthread_attr_t attributes_{};
    std::size_t stackSize_ = 0;
};
